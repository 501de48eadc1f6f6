#pragma once
// The picture tools of one window: from the active pane's selection to the engine. Each action
// takes the window, acts on the selected pictures and goes through FileOperations::shared() with
// the window's undo stack (one job, one undo step), or — for the clipboard and text recognition,
// which change no file — through runInBackground, reporting through the window's messages.
//
// The predicates are cheap (by name only: they run whenever a menu or the palette shows); the
// actions check each file again with isPicture() before handing it on. Commands that make or
// change files also need a selection outside the Trash.
//
// What asks the window: requestResize() emits WindowState::imageResizeRequested with the pictures;
// the window's Resize dialog answers with resize(). Recognized text goes on the clipboard and
// into a toast whose "Show" emits WindowState::textSheetRequested to show it whole.

#include "images/ImageConvert.h"
#include "images/ImageTurn.h"
#include "state/WindowState.h"

namespace orwick::imageActions {

// Why an image command is dimmed.
inline constexpr const char* kSelectPictures = "Select pictures";
inline constexpr const char* kSelectPicture = "Select a picture";
inline constexpr const char* kSelectPicturesOrPdfs = "Select pictures or PDFs";

// By name: a picture Qt can read here.
bool isPictureName(const FilePath& file);
bool isPdfName(const FilePath& file);

// --- Predicates over the window
bool canCopyImage(const WindowState& window);       // exactly one picture selected
bool canReadText(const WindowState& window);        // every selected item is a picture
bool canChangePictures(const WindowState& window);  // every selected item is a picture, not in the Trash
bool canCombine(const WindowState& window);         // every selected item is a picture or a PDF, not in the Trash

// The selected pictures, in shown order (by name).
QList<FilePath> selectedPictures(const WindowState& window);

// --- Actions; each does nothing when its predicate fails
// A new file beside each picture in `format` ("webp"), named by the engine's free-name rule.
void convert(WindowState& window, const QByteArray& format);
// Asks the window for the resize options (imageResizeRequested).
void requestResize(WindowState& window);
// Where resized pictures go.
enum class Placement { beside, replace };
// Resizes `pictures` by `options` (format empty: each keeps its own), beside the originals or
// replacing them in place; one undo step either way.
void resize(WindowState& window, const QList<FilePath>& pictures, const ConvertOptions& options, Placement placement);
// Turns or mirrors the selected pictures in place (ImageTurn), one undo step for them all.
void turn(WindowState& window, PictureTurn turn);
void makeImageSets(WindowState& window);
void removeLocation(WindowState& window);
void removeMetadata(WindowState& window);
// Recognizes the text of the selected pictures in the background, in `language` (a Tesseract
// code; empty: the first installed, English when it is); the text goes on the clipboard and a
// toast offers to show it whole. A newer run cancels an older one in the same window.
void copyText(WindowState& window, const QString& language = {});
// The selected pictures and PDFs, in shown order, as one PDF in the folder of the first.
void combineIntoPdf(WindowState& window);
// The file name the combined PDF asks for: the one item's name, else its folder's.
QString combinedPdfName(const QList<FilePath>& items);
// The picture's pixels on the clipboard (image/png), read in the background.
void copyImage(WindowState& window);

} // namespace orwick::imageActions
