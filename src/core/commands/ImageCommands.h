#pragma once
// The image family of the command catalogue, one command per picture operation:
//   "image.convert." + format   "Image: Convert to PNG"   (only the formats Qt can write here:
//                               writableImageFormats(); a new file beside each picture)
//   "image.resize"              "Image: Resize…"          (asks for the size, beside or in place)
//   "image.rotate.left", "image.rotate.right", "image.flip.horizontal", "image.flip.vertical"
//                               "Image: Rotate Left"…     (each picture turned in place, a JPEG
//                               without loss: ImageTurn)
//   "image.text." + code        "Image: Copy Text in German" (each installed text recognition
//                               language after the first, which Copy Text from Image uses)
// Each is enabled when every selected item is a picture (outside the Trash for those that make
// or change files), and says "Select pictures" when dimmed. Rebuilt on each call: languages
// may be installed while Orwick runs. The fixed picture commands (Copy Image, Make Image Sets, Remove
// Location, Copy Text from Image, Combine into PDF…) live with the other fixed commands.

#include "commands/AppCommand.h"
#include "images/ImageTurn.h"

#include <QList>

namespace orwick::ImageCommands {

inline constexpr QLatin1StringView kConvertPrefix("image.convert.");
inline constexpr QLatin1StringView kResizeId("image.resize");
inline constexpr QLatin1StringView kTextPrefix("image.text.");
inline constexpr QLatin1StringView kRotateLeftId("image.rotate.left");
inline constexpr QLatin1StringView kRotateRightId("image.rotate.right");
inline constexpr QLatin1StringView kFlipHorizontalId("image.flip.horizontal");
inline constexpr QLatin1StringView kFlipVerticalId("image.flip.vertical");

// The command of a turn: kRotateLeftId…
QString turnId(PictureTurn turn);

// A Tesseract language code as people name it: "deu" → "German", "chi_sim" → "Chinese (chi_sim)";
// the code itself when Qt doesn't know it.
QString languageName(const QString& code);

QList<AppCommand> family();

} // namespace orwick::ImageCommands
