#pragma once
// The colours and metrics every widget draws with, read from the theme the ThemeStore resolved
// for the appearance shown. Widgets never hard-code a colour: they ask here when they paint, or
// take a palette role (dim text is QPalette::PlaceholderText, the accent QPalette::Highlight) so
// that a new theme reaches them through the application palette. ThemeApplier.h puts the theme
// into the application (palette, font, style sheet) and says when it changes.

#include "files/FileCategory.h"

#include <QColor>
#include <QStringList>
#include <optional>

namespace orwick::theme {

// Any colour of the theme by its key ("sidebar", "borderStrong", "category.image", "keyword"…).
QColor color(const QString& key);
// Bumped by every change of the theme: caches of drawn icons compare it.
int revision();

QColor categoryTint(FileCategory category);
QColor accent();
QColor text();
QColor dimText();     // subtitles, status line, ignored rows
QColor faintText();   // placeholders, disabled rows
QColor background();  // the file list's
QColor sidebar();
QColor elevated();    // cards, popups, the palette
QColor hover();
QColor selectionUnfocused();
QColor strongSeparator();
QColor accentFill();  // a soft accent tint: marks, badges
QColor onAccent();    // text on a plain accent fill (white, or dark on a light accent)
QColor selection();   // selected rows' background
QColor cursorRing();  // the keyboard caret's outline
QColor separator();
QColor warning();     // orange: "has changes" dots, cautions
QColor positive();    // green: added and untracked files
QColor negative();    // red: deleted and conflicted files, failures
QColor informative(); // blue: renamed files
QColor toastBackground();
QColor toastText();
bool isDark();

// The colours a select or list option can carry, by the index kept in the folder's settings;
// an index out of range, or none, is the plain chip colour.
QStringList optionColorNames();
QColor optionColor(std::optional<int> index);
QColor chipText(const QColor& background);

int rowHeight();    // the theme's, at least the text's height with room around it
int cornerRadius();
qreal fontPixelSize();

} // namespace orwick::theme
