#include "notes/NoteParser.h"

#include "notes/NoteFile.h"
#include "notes/TaskDates.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QUrl>

namespace orwick {

namespace {

const QRegularExpression& taskPattern()
{
    static const QRegularExpression pattern(QStringLiteral("^\\s*[-*+]\\s+\\[([ xX])\\]\\s+(.*)$"));
    return pattern;
}

const QRegularExpression& linkPattern()
{
    static const QRegularExpression pattern(QStringLiteral("\\]\\(\\s*<?([^)>\\n]+?)>?\\s*\\)"));
    return pattern;
}

const QRegularExpression& wikiPattern()
{
    static const QRegularExpression pattern(QStringLiteral("\\[\\[([^\\]|#\\n]+)"));
    return pattern;
}

QStringList captures(const QRegularExpression& pattern, QStringView text)
{
    QStringList found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.append(it.next().captured(1));
    return found;
}

// A link target as a local path: no scheme (or file:), no fragment, percent-decoded.
std::optional<FilePath> localTarget(const FilePath& folder, const QString& target)
{
    QString path = target.trimmed();
    if (const qsizetype hash = path.indexOf(u'#'); hash >= 0)
        path.truncate(hash);
    if (path.isEmpty())
        return std::nullopt;
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    if (path.startsWith(QStringLiteral("file:")))
        return FilePath::fromUrl(QUrl(path));
    if (scheme.match(path).hasMatch())
        return std::nullopt;
    const QByteArray bytes = QByteArray::fromPercentEncoding(path.toUtf8());
    if (bytes.startsWith('/'))
        return FilePath::fromNative(bytes);
    return FilePath::fromNative(folder.native() + '/' + bytes);
}

} // namespace

NoteParser NoteParser::parse(const FilePath& note, const QString& text)
{
    NoteParser result{note, {}, {}, {}};
    const FilePath folder = note.parent();
    int number = 0;
    for (QStringView line : QStringView(text).split(u'\n')) {
        ++number;
        if (line.endsWith(u'\r'))
            line.chop(1);
        for (const QString& target : captures(linkPattern(), line))
            if (const auto path = localTarget(folder, target))
                result.linkedPaths.insert(*path);
        const QStringList wiki = captures(wikiPattern(), line);
        result.wikiNames.append(wiki);
        const auto match = taskPattern().match(line);
        if (!match.hasMatch())
            continue;
        const QString taskText = match.captured(2);
        QStringList mentions;
        for (const QString& name : captures(wikiPattern(), taskText))
            mentions.append(name.trimmed());
        for (const QString& target : captures(linkPattern(), taskText))
            mentions.append(target.trimmed());
        result.tasks.append(NoteTask{note, number, taskText, match.captured(1) != u" ", mentions});
    }
    return result;
}

Result<NoteParser> NoteParser::read(const FilePath& note)
{
    const auto read = notefile::readNoteText(note);
    if (!read)
        return failure(read.error());
    return parse(note, read->text);
}

Result<QByteArray> toggleTaskInBytes(const QByteArray& noteBytes, int line, QDate today, const FilePath& note)
{
    static const QByteArray byteOrderMark("\xEF\xBB\xBF");
    const bool hasMark = noteBytes.startsWith(byteOrderMark);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(QByteArrayView(noteBytes).sliced(hasMark ? byteOrderMark.size() : 0));
    if (decoder.hasError())
        return failure(notefile::notUtf8Message(note));
    QStringList lines = text.split(u'\n');
    if (line < 1 || line > lines.size())
        return failure(QStringLiteral("That task is no longer in “%1”.").arg(note.fileName()));
    QString current = lines[line - 1];
    const bool crlf = current.endsWith(u'\r');
    if (crlf)
        current.chop(1);
    const auto toggled = TaskDates::toggle(current, today);
    if (!toggled)
        return failure(QStringLiteral("That task is no longer in “%1”.").arg(note.fileName()));
    lines.removeAt(line - 1);
    for (qsizetype i = toggled->size() - 1; i >= 0; --i)
        lines.insert(line - 1, toggled->at(i) + (crlf ? QStringLiteral("\r") : QString()));
    return notefile::noteBytes(lines.join(u'\n'), hasMark);
}

} // namespace orwick
