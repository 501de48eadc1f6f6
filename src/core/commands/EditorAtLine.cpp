#include "commands/EditorAtLine.h"

#include <algorithm>

namespace orwick {

QStringList editorArgumentsAtLine(const QString& editorId, const FilePath& file, qint64 line)
{
    const QString path = file.text();
    const QString number = QString::number(std::max<qint64>(line, 1));
    static const QStringList gotoEditors{"code", "codium", "cursor", "code-insiders", "windsurf"};
    static const QStringList colonEditors{"zed", "zeditor", "subl"};
    if (gotoEditors.contains(editorId))
        return {QStringLiteral("--goto"), path + QLatin1Char(':') + number};
    if (colonEditors.contains(editorId))
        return {path + QLatin1Char(':') + number};
    if (editorId == QLatin1String("kate"))
        return {QStringLiteral("--line"), number, path};
    return {QLatin1Char('+') + number, path};
}

} // namespace orwick
