#include "editing/MarkdownSyntax.h"

#include <algorithm>

namespace orwick::MarkdownSyntax {

namespace {

using Block = LineState::Block;

bool isSpace(QChar c) { return c == u' ' || c == u'\t'; }
bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == u'_'; }

int leadingSpaces(QStringView line)
{
    int i = 0;
    while (i < line.size() && isSpace(line[i]))
        ++i;
    return i;
}

// The length of the run of `c` starting at `from`.
int runLength(QStringView line, int from, QChar c)
{
    int i = from;
    while (i < line.size() && line[i] == c)
        ++i;
    return i - from;
}

bool isFrontMatterDelimiter(QStringView line) { return line.trimmed() == u"---"; }

// "***", "- - -", "___" alone on a line (up to three spaces before).
bool isRule(QStringView line)
{
    const int indent = leadingSpaces(line);
    if (indent > 3 || indent >= line.size())
        return false;
    const QChar mark = line[indent];
    if (mark != u'-' && mark != u'*' && mark != u'_')
        return false;
    int count = 0;
    for (int i = indent; i < line.size(); ++i) {
        if (line[i] == mark)
            ++count;
        else if (!isSpace(line[i]))
            return false;
    }
    return count >= 3;
}

struct Fence {
    QChar mark;
    int length = 0;
    QStringView info;
};

// An opening fence: up to three spaces, three or more "`" or "~", an info string (for "`"
// without backticks).
std::optional<Fence> openingFence(QStringView line)
{
    const int indent = leadingSpaces(line);
    if (indent > 3 || indent >= line.size() || (line[indent] != u'`' && line[indent] != u'~'))
        return std::nullopt;
    const QChar mark = line[indent];
    const int length = runLength(line, indent, mark);
    if (length < 3)
        return std::nullopt;
    const QStringView info = line.mid(indent + length).trimmed();
    if (mark == u'`' && info.contains(u'`'))
        return std::nullopt;
    return Fence{mark, length, info};
}

bool closesFence(QStringView line, const LineState& state)
{
    const int indent = leadingSpaces(line);
    if (indent > 3)
        return false;
    const int length = runLength(line, indent, QChar(state.fenceChar));
    return length >= state.fenceLength && line.mid(indent + length).trimmed().isEmpty();
}

// The end (past the last character) of a link's bracketed part starting at `open` ("[" or
// "[["), or -1.
int closingBracket(QStringView line, int open)
{
    int depth = 0;
    for (int i = open; i < line.size(); ++i) {
        if (line[i] == u'\\') {
            ++i;
            continue;
        }
        if (line[i] == u'[')
            ++depth;
        else if (line[i] == u']' && --depth == 0)
            return i + 1;
    }
    return -1;
}

int closingParen(QStringView line, int open)
{
    int depth = 0;
    for (int i = open; i < line.size(); ++i) {
        if (line[i] == u'\\') {
            ++i;
            continue;
        }
        if (line[i] == u'(')
            ++depth;
        else if (line[i] == u')' && --depth == 0)
            return i + 1;
    }
    return -1;
}

int urlEnd(QStringView line, int from)
{
    int i = from;
    while (i < line.size() && !line[i].isSpace() && line[i] != u'<' && line[i] != u'>')
        ++i;
    // Punctuation that ends a sentence isn't part of the address.
    while (i > from && QStringView(u".,;:!?)'\"*_").contains(line[i - 1]))
        --i;
    return i;
}

bool startsUrl(QStringView line, int at)
{
    const QStringView rest = line.mid(at);
    return (rest.startsWith(u"https://") || rest.startsWith(u"http://")) && (at == 0 || !isWordChar(line[at - 1]));
}

// A closing run of exactly `length` marks `mark` after `from`: not after a space, and for "_"
// not inside a word.
int closingDelimiter(QStringView line, int from, QChar mark, int length)
{
    for (int i = from; i < line.size(); ++i) {
        if (line[i] == u'`') { // code spans hide delimiters
            const int run = runLength(line, i, u'`');
            const int close = int(line.indexOf(line.mid(i, run), i + run));
            if (close < 0)
                return -1;
            i = close + run - 1;
            continue;
        }
        if (line[i] != mark)
            continue;
        const int run = runLength(line, i, mark);
        const bool afterSpace = isSpace(line[i - 1]);
        const bool wordFollows = i + run < line.size() && isWordChar(line[i + run]);
        if (run == length && !afterSpace && !(mark == u'_' && wordFollows))
            return i;
        i += run - 1;
    }
    return -1;
}

class InlineScanner {
public:
    InlineScanner(QStringView line, std::vector<Span>& spans) : m_line(line), m_spans(spans) {}

    void scan(int from)
    {
        int i = from;
        while (i < m_line.size()) {
            const auto closer = std::find_if(m_closers.begin(), m_closers.end(), [i](const auto& c) { return c.first == i; });
            if (closer != m_closers.end()) {
                i += closer->second;
                m_closers.erase(closer);
                continue;
            }
            i = step(i);
        }
    }

private:
    void add(int start, int end, Kind kind) { m_spans.push_back({start, end - start, kind}); }

    // Reads what starts at `i`; returns where to go on.
    int step(int i)
    {
        const QChar c = m_line[i];
        const QChar next = i + 1 < m_line.size() ? m_line[i + 1] : QChar();
        if (c == u'\\')
            return i + 2;
        if (c == u'`') {
            const int run = runLength(m_line, i, c);
            const int close = int(m_line.indexOf(m_line.mid(i, run), i + run));
            if (close < 0)
                return i + run;
            add(i, close + run, Kind::inlineCode);
            return close + run;
        }
        if (c == u'[' && next == u'[') {
            const int close = int(m_line.indexOf(u"]]", i + 2));
            if (close > i + 2) {
                add(i, close + 2, Kind::wikilink);
                return close + 2;
            }
            return i + 2;
        }
        if (c == u'[' || (c == u'!' && next == u'['))
            return link(i, c == u'!' ? i + 1 : i);
        if (c == u'<' && startsUrl(m_line, i + 1)) {
            const int close = int(m_line.indexOf(u'>', i));
            if (close > 0) {
                add(i, close + 1, Kind::link);
                return close + 1;
            }
        }
        if ((c == u'h') && startsUrl(m_line, i)) {
            const int end = urlEnd(m_line, i);
            add(i, end, Kind::link);
            return end;
        }
        if (c == u'#' && (i == 0 || isSpace(m_line[i - 1])))
            return tag(i);
        if (c == u'*' || c == u'_' || c == u'~')
            return emphasis(i, c);
        return i + 1;
    }

    int link(int at, int bracket)
    {
        const int close = closingBracket(m_line, bracket);
        if (close < 0)
            return bracket + 1;
        if (close < m_line.size() && m_line[close] == u'(') {
            const int paren = closingParen(m_line, close);
            if (paren > 0) {
                add(at, close, Kind::link);
                scan(bracket + 1, close - 1);
                add(close, paren, Kind::linkTarget);
                return paren;
            }
        }
        if (close < m_line.size() && m_line[close] == u'[') { // a reference: [text][ref]
            const int reference = closingBracket(m_line, close);
            if (reference > 0) {
                add(at, close, Kind::link);
                add(close, reference, Kind::linkTarget);
                return reference;
            }
        }
        return bracket + 1;
    }

    // Inline colouring of part of the line (a link's text).
    void scan(int from, int to)
    {
        InlineScanner inner(m_line.first(to), m_spans);
        inner.scan(from);
    }

    int tag(int at)
    {
        int i = at + 1;
        bool word = false;
        while (i < m_line.size() && (isWordChar(m_line[i]) || m_line[i] == u'-' || m_line[i] == u'/')) {
            word = word || !m_line[i].isDigit();
            ++i;
        }
        if (i == at + 1 || !word)
            return at + 1;
        add(at, i, Kind::tag);
        return i;
    }

    int emphasis(int at, QChar mark)
    {
        const int run = runLength(m_line, at, mark);
        const bool opens = at + run < m_line.size() && !m_line[at + run].isSpace()
                        && !(mark == u'_' && at > 0 && isWordChar(m_line[at - 1]));
        if (!opens || run > 3 || (mark == u'~' && run != 2))
            return at + run;
        const int close = closingDelimiter(m_line, at + run, mark, run);
        if (close < 0)
            return at + run;
        const int end = close + run;
        if (mark == u'~') {
            add(at, end, Kind::strikethrough);
        } else {
            if (run >= 2)
                add(at, end, Kind::strong);
            if (run != 2)
                add(at, end, Kind::emphasis);
        }
        m_closers.push_back({close, run});
        return at + run;
    }

    QStringView m_line;
    std::vector<Span>& m_spans;
    std::vector<std::pair<int, int>> m_closers; // where a matched closing run starts, its length
};

// A list item's marker ("-", "*", "+", "1.", "1)") and task box; returns where its text starts.
int listItem(QStringView line, int from, std::vector<Span>& spans)
{
    int i = from;
    if (i < line.size() && (line[i] == u'-' || line[i] == u'*' || line[i] == u'+')) {
        ++i;
    } else {
        while (i < line.size() && i - from < 9 && line[i].isDigit())
            ++i;
        if (i == from || i >= line.size() || (line[i] != u'.' && line[i] != u')'))
            return from;
        ++i;
    }
    if (i < line.size() && !isSpace(line[i]))
        return from;
    spans.push_back({from, i - from, Kind::listMarker});
    const int text = i + (i < line.size() ? 1 : 0);
    const QStringView box = line.mid(text, 3);
    const bool isBox = box.size() == 3 && box[0] == u'[' && box[2] == u']'
                    && (box[1] == u' ' || box[1] == u'x' || box[1] == u'X')
                    && (text + 3 == line.size() || isSpace(line[text + 3]));
    if (!isBox)
        return text;
    spans.push_back({text, 3, Kind::taskBox});
    if (box[1] != u' ' && text + 3 < line.size())
        spans.push_back({text + 3, int(line.size()) - text - 3, Kind::doneTask});
    return text + 3;
}

Line textLine(QStringView line, LineState state)
{
    Line out;
    state.block = Block::text;
    out.next = state;
    const int length = int(line.size());
    if (const auto fence = openingFence(line)) {
        out.spans.push_back({0, length, Kind::fence});
        const qsizetype space = fence->info.indexOf(u' ');
        const QStringView name = space < 0 ? fence->info : fence->info.first(space);
        out.next = {Block::fence, fence->mark.unicode(), fence->length, SyntaxHighlighter::languageNamed(name)};
        return out;
    }
    if (isRule(line)) {
        out.spans.push_back({0, length, Kind::rule});
        return out;
    }
    int i = leadingSpaces(line);
    if (i <= 3 && i < length && line[i] == u'#') {
        const int marks = runLength(line, i, u'#');
        if (marks <= 6 && (i + marks == length || isSpace(line[i + marks]))) {
            out.spans.push_back({0, length, Kind::heading});
            out.spans.push_back({i, marks, Kind::headingMarker});
            InlineScanner(line, out.spans).scan(i + marks);
            return out;
        }
    }
    if (i <= 3 && i < length && line[i] == u'>') {
        out.spans.push_back({0, length, Kind::quote});
        ++i;
        i += leadingSpaces(line.mid(i));
    }
    i = listItem(line, i, out.spans);
    InlineScanner(line, out.spans).scan(i);
    return out;
}

} // namespace

int LineState::toInt() const
{
    if (block == Block::start)
        return -1;
    int languageIndex = 0;
    if (language) {
        const auto& all = SyntaxHighlighter::allLanguages();
        const auto found = std::find(all.begin(), all.end(), language);
        if (found != all.end())
            languageIndex = int(found - all.begin()) + 1;
    }
    return int(block) | (fenceChar == u'~' ? 4 : 0) | (std::min(fenceLength, 255) << 3) | (std::min(languageIndex, 255) << 11);
}

LineState LineState::fromInt(int value)
{
    if (value < 0)
        return {};
    LineState state;
    state.block = Block(value & 3);
    if (state.block == Block::fence) {
        state.fenceChar = (value & 4) ? u'~' : u'`';
        state.fenceLength = (value >> 3) & 255;
        const int languageIndex = (value >> 11) & 255;
        const auto& all = SyntaxHighlighter::allLanguages();
        if (languageIndex > 0 && languageIndex <= int(all.size()))
            state.language = all[languageIndex - 1];
    }
    return state;
}

Line colourLine(QStringView line, const LineState& before)
{
    const int length = int(line.size());
    switch (before.block) {
    case Block::start:
        if (isFrontMatterDelimiter(line))
            return {{{0, length, Kind::frontMatter}}, {Block::frontMatter}};
        return textLine(line, before);
    case Block::frontMatter: {
        Line out{{}, before};
        if (length > 0)
            out.spans.push_back({0, length, Kind::frontMatter});
        const QStringView trimmed = line.trimmed();
        if (trimmed == u"---" || trimmed == u"...") {
            out.next = {Block::text};
            return out;
        }
        const int indent = leadingSpaces(line);
        const int colon = int(line.indexOf(u':', indent));
        if (indent == 0 && colon > 0 && line[0] != u'#' && line[0] != u'-')
            out.spans.push_back({0, colon, Kind::frontMatterKey});
        else if (indent < length && line[indent] == u'-')
            out.spans.push_back({indent, 1, Kind::listMarker});
        return out;
    }
    case Block::fence: {
        if (closesFence(line, before))
            return {{{0, length, Kind::fence}}, {Block::text}};
        Line out{{}, before};
        if (length > 0)
            out.spans.push_back({0, length, Kind::fencedCode});
        if (before.language)
            for (const SyntaxHighlighter::Token& token : SyntaxHighlighter::tokens(line, *before.language))
                out.spans.push_back({token.start, token.length, Kind::codeToken, token.kind});
        return out;
    }
    case Block::text: break;
    }
    return textLine(line, before);
}

std::vector<Span> colourText(QStringView text)
{
    std::vector<Span> all;
    LineState state;
    qsizetype start = 0;
    while (start <= text.size()) {
        qsizetype end = text.indexOf(u'\n', start);
        if (end < 0)
            end = text.size();
        Line line = colourLine(text.mid(start, end - start), state);
        for (Span& span : line.spans) {
            span.start += int(start);
            all.push_back(span);
        }
        state = line.next;
        start = end + 1;
    }
    return all;
}

Look lookOf(const Span& span)
{
    using SK = SyntaxHighlighter::Kind;
    switch (span.kind) {
    case Kind::frontMatter: return {SK::comment};
    case Kind::frontMatterKey: return {SK::property};
    case Kind::heading: return {SK::keyword, true};
    case Kind::headingMarker: return {SK::comment, true};
    case Kind::emphasis: return {std::nullopt, false, true};
    case Kind::strong: return {std::nullopt, true};
    case Kind::strikethrough: return {std::nullopt, false, false, true, true};
    case Kind::inlineCode: return {SK::string};
    case Kind::fence: return {SK::comment};
    case Kind::fencedCode: return {};
    case Kind::codeToken: return {span.code, false, span.code == SK::comment};
    case Kind::link: return {SK::function};
    case Kind::linkTarget: return {SK::string};
    case Kind::wikilink: return {SK::function};
    case Kind::tag: return {SK::type};
    case Kind::listMarker: return {SK::number, true};
    case Kind::taskBox: return {SK::number, true};
    case Kind::doneTask: return {std::nullopt, false, false, true, true};
    case Kind::quote: return {std::nullopt, false, true, false, true};
    case Kind::rule: return {SK::comment};
    }
    return {};
}

} // namespace orwick::MarkdownSyntax
