#include "notes/LinkSyntax.h"

namespace orwick::linksyntax {

namespace {

// The inline code spans of one line, from `at` to `lineEnd`.
void appendInlineCode(const QString& text, qsizetype at, qsizetype lineEnd, QList<Range>& ranges)
{
    qsizetype i = at;
    while (i < lineEnd) {
        if (text[i] != u'`') {
            ++i;
            continue;
        }
        qsizetype open = 0;
        while (i + open < lineEnd && text[i + open] == u'`')
            ++open;
        qsizetype j = i + open;
        qsizetype closeAt = -1;
        while (j < lineEnd) {
            if (text[j] != u'`') {
                ++j;
                continue;
            }
            qsizetype close = 0;
            while (j + close < lineEnd && text[j + close] == u'`')
                ++close;
            if (close == open) {
                closeAt = j + close;
                break;
            }
            j += close;
        }
        if (closeAt < 0) {
            i += open;
            continue;
        }
        ranges.append({i, closeAt});
        i = closeAt;
    }
}

} // namespace

QList<Range> codeRanges(const QString& text)
{
    QList<Range> ranges;
    qsizetype at = 0;
    QChar fenceChar;
    qsizetype fenceLength = 0;
    qsizetype fenceStart = 0;
    while (at < text.size()) {
        qsizetype lineEnd = text.indexOf(u'\n', at);
        if (lineEnd < 0)
            lineEnd = text.size();
        qsizetype first = at;
        while (first < lineEnd && first - at < 4 && text[first] == u' ')
            ++first;
        qsizetype run = 0;
        if (first - at < 4 && first < lineEnd && (text[first] == u'`' || text[first] == u'~')) {
            while (first + run < lineEnd && text[first + run] == text[first])
                ++run;
        }
        if (fenceLength > 0) {
            if (run >= fenceLength && text[first] == fenceChar
                && text.mid(first + run, lineEnd - first - run).trimmed().isEmpty()) {
                ranges.append({fenceStart, lineEnd});
                fenceLength = 0;
            }
        } else if (run >= 3 && !(text[first] == u'`' && text.mid(first + run, lineEnd - first - run).contains(u'`'))) {
            fenceChar = text[first];
            fenceLength = run;
            fenceStart = at;
        } else {
            appendInlineCode(text, at, lineEnd, ranges);
        }
        at = lineEnd + 1;
    }
    if (fenceLength > 0)
        ranges.append({fenceStart, text.size()});
    return ranges;
}

bool inCode(const QList<Range>& ranges, qsizetype position)
{
    for (const Range& range : ranges) {
        if (position >= range.start && position < range.end)
            return true;
    }
    return false;
}

bool hasUrlScheme(const QString& target)
{
    const auto isLetter = [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); };
    if (target.isEmpty() || !isLetter(target.front()))
        return false;
    for (qsizetype i = 1; i < target.size(); ++i) {
        const QChar c = target[i];
        if (c == u':')
            return true;
        if (!isLetter(c) && !(c >= u'0' && c <= u'9') && c != u'+' && c != u'.' && c != u'-')
            return false;
    }
    return false;
}

const QRegularExpression& markdownTarget()
{
    thread_local const QRegularExpression pattern(QStringLiteral(R"(\]\(\s*(<[^>\n]+>|[^)\s\n]+))"));
    return pattern;
}

const QRegularExpression& wikilinkName()
{
    thread_local const QRegularExpression pattern(QStringLiteral(R"(\[\[([^\]|#\n]+))"));
    return pattern;
}

} // namespace orwick::linksyntax
