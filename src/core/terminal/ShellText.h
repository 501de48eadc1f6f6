#pragma once
// ShellText: what the terminal panel types into a shell on the user's behalf — a change of
// folder, and the paths of files dropped on it — quoted so that any name arrives as it is.
//
// Single quotes protect everything but a single quote, which is written as '\'' . A path that
// holds a control character (a newline, an escape) is never typed: the shell's line editor would
// act on it before the quote closed.

#include "base/FilePath.h"

#include <QByteArray>
#include <QList>
#include <optional>

namespace orwick::shellText {

// 'PATH' with single quotes escaped; nothing for a path holding a control character.
std::optional<QByteArray> quoted(const FilePath& path);
// cd -- 'PATH' followed by Return; nothing when the path can't be typed safely.
std::optional<QByteArray> changeDirectory(const FilePath& folder);
// The paths, each quoted, separated and followed by a space; paths that can't be typed are left out.
QByteArray quotedPaths(const QList<FilePath>& paths);

} // namespace orwick::shellText
