#include "terminal/ShellText.h"

#include <algorithm>

namespace orwick::shellText {

std::optional<QByteArray> quoted(const FilePath& path)
{
    const QByteArray& bytes = path.native();
    if (bytes.isEmpty() || std::any_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x20 || uchar(c) == 0x7f; }))
        return std::nullopt;
    QByteArray out = "'";
    for (char c : bytes) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    out += '\'';
    return out;
}

std::optional<QByteArray> changeDirectory(const FilePath& folder)
{
    auto path = quoted(folder);
    if (!path)
        return std::nullopt;
    return QByteArray("cd -- ") + *path + '\r';
}

QByteArray quotedPaths(const QList<FilePath>& paths)
{
    QByteArray out;
    for (const FilePath& path : paths)
        if (auto text = quoted(path))
            out += *text + ' ';
    return out;
}

} // namespace orwick::shellText
