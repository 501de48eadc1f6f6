#include "notes/NoteLinks.h"

#include "notes/LinkSyntax.h"

#include <algorithm>

namespace orwick::notelinks {

namespace {

// A link found at `position` of the text, before its line is known.
struct Found {
    qsizetype position;
    NoteLink::Kind kind;
    QByteArray target;
};

std::optional<QByteArray> markdownTarget(const QString& raw)
{
    const bool angle = raw.size() >= 2 && raw.startsWith(u'<') && raw.endsWith(u'>');
    const QString inner = angle ? raw.mid(1, raw.size() - 2).trimmed() : raw;
    if (inner.isEmpty() || inner.startsWith(u'#') || linksyntax::hasUrlScheme(inner))
        return std::nullopt;
    const QString path = inner.section(u'#', 0, 0).section(u'?', 0, 0);
    QByteArray decoded = QByteArray::fromPercentEncoding(path.toUtf8());
    if (decoded.isEmpty())
        return std::nullopt;
    return decoded;
}

std::optional<QByteArray> wikilinkTarget(const QString& captured)
{
    QString name = captured.trimmed();
    // In a table, the alias bar is written "\|": the backslash is not part of the name.
    if (name.endsWith(u'\\'))
        name.chop(1);
    name = name.trimmed();
    if (name.isEmpty() || linksyntax::hasUrlScheme(name))
        return std::nullopt;
    return name.toUtf8();
}

} // namespace

QList<NoteLink> linksIn(const QString& text)
{
    const bool hasMarkdown = text.contains(QLatin1StringView("]("));
    const bool hasWiki = text.contains(QLatin1StringView("[["));
    if (!hasMarkdown && !hasWiki)
        return {};
    const QList<linksyntax::Range> code = linksyntax::codeRanges(text);
    QList<Found> found;
    const auto collect = [&](const QRegularExpression& pattern, NoteLink::Kind kind) {
        for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            if (linksyntax::inCode(code, match.capturedStart(0)))
                continue;
            const std::optional<QByteArray> target = kind == NoteLink::Kind::markdown ? markdownTarget(match.captured(1))
                                                                                      : wikilinkTarget(match.captured(1));
            if (target)
                found.append({match.capturedStart(0), kind, *target});
        }
    };
    if (hasMarkdown)
        collect(linksyntax::markdownTarget(), NoteLink::Kind::markdown);
    if (hasWiki)
        collect(linksyntax::wikilinkName(), NoteLink::Kind::wikilink);
    std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) { return a.position < b.position; });

    QList<NoteLink> links;
    links.reserve(found.size());
    int line = 1;
    qsizetype lineStart = 0;
    for (const Found& link : found) {
        // Lines are counted forward once over the whole text.
        for (qsizetype next; (next = text.indexOf(u'\n', lineStart)) >= 0 && next < link.position;) {
            ++line;
            lineStart = next + 1;
        }
        qsizetype lineEnd = text.indexOf(u'\n', lineStart);
        if (lineEnd < 0)
            lineEnd = text.size();
        QString lineText = QStringView(text).mid(lineStart, lineEnd - lineStart).trimmed().toString();
        if (lineText.size() > kLineTextLength) {
            lineText.truncate(kLineTextLength);
            if (lineText.back().isHighSurrogate())
                lineText.chop(1);
            lineText += QChar(0x2026);
        }
        links.append({link.kind, link.target, line, std::move(lineText)});
    }
    return links;
}

std::optional<QList<NoteLink>> linksInBytes(const QByteArray& bytes)
{
    if (!isValidUtf8(bytes))
        return std::nullopt;
    if (!bytes.contains("](") && !bytes.contains("[["))
        return QList<NoteLink>();
    const bool byteOrderMark = bytes.startsWith("\xEF\xBB\xBF");
    return linksIn(QString::fromUtf8(byteOrderMark ? bytes.mid(3) : bytes));
}

FilePath markdownTargetPath(const QByteArray& target, const FilePath& folder)
{
    if (target.startsWith('/'))
        return FilePath::fromNative(target);
    return FilePath::fromNative(folder.native() + '/' + target);
}

} // namespace orwick::notelinks
