#include "notes/FrontMatter.h"

#include "notes/PropertyValue.h"

namespace orwick::FrontMatter {

namespace {

using propertytext::trimmed;

// A line without the carriage return of a CRLF ending.
QStringView content(QStringView line) { return line.endsWith(u'\r') ? line.chopped(1) : line; }

bool isDelimiter(QStringView line) { return trimmed(content(line)) == u"---"; }

bool isListItem(QStringView trimmedLine) { return trimmedLine == u"-" || trimmedLine.startsWith(u"- "); }

bool isBare(const QString& text)
{
    if (text.isEmpty() || text.startsWith(u' ') || text.endsWith(u' '))
        return false;
    for (QChar c : text) {
        const char16_t u = c.unicode();
        const bool plain = (u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z') || (u >= u'0' && u <= u'9')
            || QStringView(u" _./@()+-").contains(c);
        if (!plain)
            return false;
    }
    const QString lower = text.toLower();
    for (const char16_t* word : {u"true", u"false", u"yes", u"no", u"null", u"~"})
        if (lower == QStringView(word))
            return false;
    return true;
}

// The key a block line opens, if it is a "key: value" line at the top level.
std::optional<QString> lineKey(QStringView line)
{
    line = content(line);
    if (line.isEmpty() || line[0] == u' ' || line[0] == u'\t')
        return std::nullopt;
    const QStringView t = trimmed(line);
    if (t.startsWith(u'#') || isListItem(t))
        return std::nullopt;
    const qsizetype colon = t.indexOf(u':');
    if (colon < 0)
        return std::nullopt;
    return trimmed(t.first(colon)).toString();
}

// Lines under a key that belong to it: indented lines and "- " items, with any blank or comment
// lines between them (comments themselves are kept).
qsizetype continuationEnd(const QStringList& lines, qsizetype keyLine, qsizetype close)
{
    qsizetype end = keyLine + 1;
    for (qsizetype j = keyLine + 1; j < close; ++j) {
        const QStringView line = content(lines[j]);
        const QStringView t = trimmed(line);
        const bool indented = !line.isEmpty() && (line[0] == u' ' || line[0] == u'\t');
        if (isListItem(t) || (indented && !t.isEmpty() && !t.startsWith(u'#')))
            end = j + 1;
        else if (!t.isEmpty() && !t.startsWith(u'#'))
            break;
    }
    return end;
}

} // namespace

std::optional<QString> block(const QString& text)
{
    if (!text.startsWith(u"---\n") && !text.startsWith(u"---\r\n"))
        return std::nullopt;
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    if (lines.size() < 2)
        return std::nullopt;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (!isDelimiter(lines[i]))
            continue;
        QString joined;
        for (qsizetype j = 1; j < i; ++j) {
            if (j > 1)
                joined += u'\n';
            joined += content(lines[j]);
        }
        return joined;
    }
    return std::nullopt;
}

QString unquote(QStringView text)
{
    const QStringView t = trimmed(text);
    if (t.size() >= 2 && (t[0] == u'"' || t[0] == u'\'') && t.back() == t[0])
        return t.sliced(1, t.size() - 2).toString();
    return t.toString();
}

std::optional<QList<Property>> parse(const QString& blockText)
{
    QList<Property> properties;
    std::optional<Property> openList;
    auto closeList = [&] {
        if (openList)
            properties.append(std::move(*openList));
        openList.reset();
    };
    for (QStringView line : QStringView(blockText).split(u'\n')) {
        const QStringView t = trimmed(line);
        if (t.isEmpty() || t.startsWith(u'#'))
            continue;
        if (isListItem(t)) {
            if (!openList)
                return std::nullopt; // an item with no list to belong to
            openList->values.append(unquote(t.sliced(1)));
            continue;
        }
        if (line[0] == u' ' || line[0] == u'\t')
            return std::nullopt; // nesting
        const qsizetype colon = t.indexOf(u':');
        if (colon < 0)
            return std::nullopt;
        const QString key = trimmed(t.first(colon)).toString();
        if (key.isEmpty())
            return std::nullopt;
        const QStringView value = trimmed(t.sliced(colon + 1));
        closeList();
        if (value.isEmpty()) {
            openList = Property{key, {}, true};
        } else if (value.size() >= 2 && value.startsWith(u'[') && value.endsWith(u']')) {
            Property list{key, {}, true};
            for (QStringView piece : value.sliced(1, value.size() - 2).split(u',')) {
                if (!trimmed(piece).isEmpty())
                    list.values.append(unquote(piece));
            }
            properties.append(std::move(list));
        } else if (value.startsWith(u'{') || value == u"|" || value == u">") {
            return std::nullopt; // flow maps and block scalars
        } else {
            properties.append(Property{key, {unquote(value)}, false});
        }
    }
    closeList();
    return properties;
}

std::optional<QList<Property>> read(const QString& text)
{
    const auto found = block(text);
    if (!found)
        return std::nullopt;
    return parse(*found);
}

QString quoted(const QString& text)
{
    if (isBare(text))
        return text;
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'"', QStringLiteral("\\\""));
    return u'"' + escaped + u'"';
}

QString yaml(const PropertyValue& value)
{
    switch (value.kind()) {
    case PropertyValue::Kind::text: return quoted(value.textPayload());
    case PropertyValue::Kind::number: return propertytext::formatNumber(value.numberPayload());
    case PropertyValue::Kind::boolean: return value.boolPayload() ? QStringLiteral("true") : QStringLiteral("false");
    case PropertyValue::Kind::list: {
        QStringList items;
        for (const QString& item : value.listPayload())
            items.append(quoted(item));
        return u'[' + items.join(QStringLiteral(", ")) + u']';
    }
    }
    return {};
}

namespace {

struct BlockLines {
    QStringList lines;
    qsizetype close = -1; // the closing delimiter's line; -1 when there is no block
};

BlockLines splitBlock(const QString& text)
{
    BlockLines result{text.split(u'\n')};
    if (!isDelimiter(result.lines.first()))
        return result;
    for (qsizetype i = 1; i < result.lines.size() && result.close < 0; ++i)
        if (isDelimiter(result.lines[i]))
            result.close = i;
    return result;
}

qsizetype keyLine(const BlockLines& block, const QString& key)
{
    for (qsizetype i = 1; i < block.close; ++i)
        if (lineKey(block.lines[i]) == key)
            return i;
    return -1;
}

} // namespace

QString setting(const QString& key, const std::optional<QString>& value, const QString& text)
{
    BlockLines block = splitBlock(text);
    QStringList& lines = block.lines;
    if (!isDelimiter(lines.first())) {
        if (!value)
            return text;
        const QString eol = lines.size() > 1 && lines.first().endsWith(u'\r') ? QStringLiteral("\r\n") : QStringLiteral("\n");
        return QStringLiteral("---") + eol + key + QStringLiteral(": ") + *value + eol + QStringLiteral("---") + eol + text;
    }
    if (block.close < 0)
        return text;
    const qsizetype at = keyLine(block, key);
    if (at < 0) {
        if (!value)
            return text;
        const QString cr = lines[block.close].endsWith(u'\r') ? QStringLiteral("\r") : QString();
        lines.insert(block.close, key + QStringLiteral(": ") + *value + cr);
        return lines.join(u'\n');
    }
    const QString cr = lines[at].endsWith(u'\r') ? QStringLiteral("\r") : QString();
    lines.remove(at, continuationEnd(lines, at, block.close) - at);
    if (value)
        lines.insert(at, key + QStringLiteral(": ") + *value + cr);
    return lines.join(u'\n');
}

QString renaming(const QString& from, const QString& to, const QString& text)
{
    BlockLines block = splitBlock(text);
    const qsizetype at = keyLine(block, from);
    if (at < 0)
        return text;
    QString& line = block.lines[at];
    line = to + line.sliced(line.indexOf(u':'));
    return block.lines.join(u'\n');
}

bool isWritableKey(const QString& key)
{
    if (key.isEmpty() || trimmed(key).size() != key.size() || key != key.trimmed())
        return false;
    if (key.contains(u':') || key.contains(u'\n') || key.contains(u'\r'))
        return false;
    const QChar first = key[0];
    return first != u'-' && first != u'#' && first != u'[' && first != u'{' && first != u'"' && first != u'\''
        && key != u"---";
}

} // namespace orwick::FrontMatter
