#pragma once
// How each code editor is told to open a file at a line: VS Code and its kin take
// "--goto FILE:LINE", Zed and Sublime Text "FILE:LINE", Kate "--line LINE FILE", and the rest
// (vim, nano, emacs, gedit, …) the old "+LINE FILE".

#include "base/FilePath.h"

#include <QStringList>

namespace orwick {

// The arguments for the editor whose command name is `editorId` ("code", "vim").
QStringList editorArgumentsAtLine(const QString& editorId, const FilePath& file, qint64 line);

} // namespace orwick
