#pragma once
// The image family of the command catalogue, one command per picture operation:
//   "image.convert." + format   "Image: Convert to PNG"   (only the formats Qt can write here:
//                               writableImageFormats(); a new file beside each picture)
//   "image.resize"              "Image: Resize…"          (asks for the size, beside or in place)
// Each is enabled when every selected item is a picture outside the Trash, and says
// "Select pictures" when dimmed. The fixed picture commands (Copy Image, Make Image Sets, Remove
// Location, Copy Text from Image, Combine into PDF…) live with the other fixed commands.

#include "commands/AppCommand.h"

#include <QList>

namespace orwick::ImageCommands {

inline constexpr QLatin1StringView kConvertPrefix("image.convert.");
inline constexpr QLatin1StringView kResizeId("image.resize");

QList<AppCommand> family();

} // namespace orwick::ImageCommands
