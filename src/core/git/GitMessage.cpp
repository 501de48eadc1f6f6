#include "git/GitMessage.h"

#include <QRegularExpression>
#include <cstring>

namespace orwick {

namespace {

bool isComplaint(QStringView line)
{
    return line.startsWith(QLatin1StringView("fatal:")) || line.startsWith(QLatin1StringView("error:"));
}

// A line of GIT_TRACE output: "12:34:56.789012 git.c:460  trace: built-in: git status".
bool isTrace(QStringView line)
{
    static const QRegularExpression pattern(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d+ +\\S+:\\d+ +trace"));
    return pattern.match(line).hasMatch();
}

} // namespace

QString tidyGitLine(QStringView line)
{
    QStringView text = line.trimmed();
    for (const char* prefix : {"fatal:", "error:", "warning:"}) {
        if (text.startsWith(QLatin1StringView(prefix))) {
            text = text.sliced(qsizetype(strlen(prefix))).trimmed();
            break;
        }
    }
    QString sentence = text.toString();
    if (sentence.isEmpty())
        return sentence;
    sentence[0] = sentence[0].toUpper();
    if (!sentence.endsWith(u'.') && !sentence.endsWith(u'!') && !sentence.endsWith(u'?'))
        sentence += u'.';
    return sentence;
}

QString gitFailureMessage(const GitOutput& result)
{
    const QList<QStringView> lines = QStringView(result.errors).split(u'\n', Qt::SkipEmptyParts);
    QStringView chosen;
    for (QStringView line : lines) {
        if (isComplaint(line.trimmed())) {
            chosen = line;
            break;
        }
    }
    if (chosen.isEmpty()) {
        for (QStringView line : lines) {
            if (!line.trimmed().isEmpty() && !isTrace(line)) {
                chosen = line;
                break;
            }
        }
    }
    const QString sentence = tidyGitLine(chosen);
    if (!sentence.isEmpty())
        return sentence;
    return QStringLiteral("Git stopped with exit status %1.").arg(result.status);
}

QString tidyGitOutput(QStringView output)
{
    QStringList kept;
    for (QStringView line : output.split(u'\n')) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1StringView("hint:")))
            continue;
        for (const char* prefix : {"error: ", "fatal: "}) {
            if (line.startsWith(QLatin1StringView(prefix))) {
                line = line.sliced(qsizetype(strlen(prefix))).trimmed();
                break;
            }
        }
        if (!line.isEmpty())
            kept.append(line.toString());
    }
    if (kept.isEmpty())
        return QStringLiteral("git didn't say why.");
    return kept.join(u'\n');
}

QString tidyGitOutput(const GitOutput& result)
{
    if (result.output.isEmpty())
        return tidyGitOutput(result.errors);
    return tidyGitOutput(QString(result.errors + u'\n' + result.output));
}

} // namespace orwick
