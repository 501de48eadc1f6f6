// The highlighter's scanner: one pass over the UTF-16 units of a text, driven by a Language.
//
// Order of the rules at each position: blanks and line feeds, comments, line keys, quoted
// strings, numbers, variables, words. Every rule moves forward by at least one unit and every
// inner search is bounded by the text or the line, so the pass is linear in the text's length.

#include "highlight/Language.h"

#include <array>

namespace orwick::SyntaxHighlighter {
namespace {

bool isAsciiLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool startsWord(char16_t c) { return c >= 0x80 || c == u'_' || isAsciiLetter(c); }
bool continuesWord(char16_t c) { return startsWord(c) || isDigit(c); }
bool isBlank(char16_t c) { return c == u' ' || c == u'\t'; }

class Scanner {
public:
    Scanner(QStringView text, const Language& language)
        : m_text(reinterpret_cast<const char16_t*>(text.utf16()))
        , m_size(text.size())
        , m_language(language)
        , m_markup(language.family == Family::markup)
        , m_wordDash(language.family == Family::css)
    {
        auto mark = [](std::array<bool, 128>& set, QChar c) {
            if (c.unicode() < 128)
                set[c.unicode()] = true;
        };
        for (const QString& opener : language.lineComments)
            mark(m_opensComment, opener.front());
        if (language.blockComment)
            mark(m_opensComment, language.blockComment->open.front());
        for (QChar quote : language.quotes)
            mark(m_quote, quote);
        for (QChar prefix : language.wordPrefixes)
            mark(m_wordPrefix, prefix);
        m_tokens.reserve(std::size_t(m_size / 16));
    }

    std::vector<Token> run()
    {
        while (m_at < m_size) {
            const char16_t c = m_text[m_at];
            if (isBlank(c)) {
                ++m_at;
                continue;
            }
            if (c == u'\n') {
                ++m_at;
                m_lineStart = true;
                continue;
            }
            if (c < 128 && m_opensComment[c] && comment())
                continue;
            if (m_lineStart && m_language.lineKeys && lineKey())
                continue;
            m_lineStart = false;
            if (m_markup) {
                markup();
                continue;
            }
            if (c < 128 && m_quote[c]) {
                quoted(c);
                continue;
            }
            if (isDigit(c) || (c == u'.' && digitAt(m_at + 1) && !(m_at > 0 && m_text[m_at - 1] == u'.'))) {
                number();
                continue;
            }
            if (c == u'$' && m_language.variables && m_at + 1 < m_size && continuesWord(m_text[m_at + 1])) {
                add(m_at, wordEnd(m_at + 1), Kind::property);
                continue;
            }
            if (startsWord(c)) {
                word();
                continue;
            }
            if (c < 128 && m_wordPrefix[c] && prefixedWord())
                continue;
            ++m_at;
        }
        return std::move(m_tokens);
    }

private:
    void add(qsizetype start, qsizetype end, Kind kind)
    {
        m_tokens.push_back({int(start), int(end - start), kind});
        m_at = end;
    }

    bool digitAt(qsizetype at) const { return at < m_size && isDigit(m_text[at]); }
    bool startsWith(qsizetype at, const QString& opener) const
    {
        return QStringView(m_text + at, m_size - at).startsWith(opener);
    }
    qsizetype find(char16_t c, qsizetype from) const
    {
        const qsizetype at = QStringView(m_text, m_size).indexOf(QChar(c), from);
        return at < 0 ? m_size : at;
    }
    // The end of the line that holds `at`: its line feed, or the carriage return before it.
    qsizetype lineEnd(qsizetype at) const
    {
        const qsizetype end = find(u'\n', at);
        return end > at && m_text[end - 1] == u'\r' ? end - 1 : end;
    }
    qsizetype wordEnd(qsizetype at) const
    {
        while (at < m_size && (continuesWord(m_text[at]) || (m_wordDash && m_text[at] == u'-')))
            ++at;
        return at;
    }

    bool comment()
    {
        if (const auto& block = m_language.blockComment; block && startsWith(m_at, block->open)) {
            const qsizetype close = QStringView(m_text, m_size).indexOf(block->close, m_at + block->open.size());
            add(m_at, close < 0 ? m_size : close + block->close.size(), Kind::comment);
            return true;
        }
        for (const QString& opener : m_language.lineComments) {
            if (!startsWith(m_at, opener))
                continue;
            // "#" only after a blank or at a line's start, so that "a#b" is not a comment.
            if (opener.size() == 1 && opener.front() == u'#' && m_at > 0 && !isBlank(m_text[m_at - 1]) && m_text[m_at - 1] != u'\n')
                continue;
            add(m_at, std::max(lineEnd(m_at), m_at + 1), Kind::comment);
            return true;
        }
        return false;
    }

    // At a line's start (after indentation): "- " list marker, "[section]" or "key:".
    bool lineKey()
    {
        const char16_t c = m_text[m_at];
        if (c == u'-' && m_at + 1 < m_size && isBlank(m_text[m_at + 1])) {
            add(m_at, m_at + 1, Kind::property); // a key may follow the marker: still the line's start
            return true;
        }
        const qsizetype end = lineEnd(m_at);
        if (c == u'[') {
            const qsizetype close = QStringView(m_text + m_at, end - m_at).indexOf(u']');
            if (close < 0)
                return false;
            m_lineStart = false;
            add(m_at, m_at + close + 1, Kind::property);
            return true;
        }
        for (qsizetype at = m_at; at < end; ++at) {
            const char16_t k = m_text[at];
            if (k == u':') {
                qsizetype keyEnd = at;
                while (keyEnd > m_at && isBlank(m_text[keyEnd - 1]))
                    --keyEnd;
                if (keyEnd == m_at)
                    return false;
                m_lineStart = false;
                add(m_at, keyEnd, Kind::property);
                return true;
            }
            if ((k < 128 && m_quote[k]) || k == u'#' || k == u'{' || k == u'[')
                return false;
        }
        return false;
    }

    // A string from the quote at the current position to the same quote (or the text's end); a
    // backslash skips the unit after it.
    void quoted(char16_t quote)
    {
        const qsizetype start = m_at;
        const bool triple = m_language.tripleQuotes && m_at + 2 < m_size && m_text[m_at + 1] == quote
            && m_text[m_at + 2] == quote;
        qsizetype at = start + (triple ? 3 : 1);
        qsizetype end = m_size;
        while (at < m_size) {
            const char16_t c = m_text[at];
            if (c == u'\\') {
                at += 2;
                continue;
            }
            if (c == quote && (!triple || (at + 2 < m_size && m_text[at + 1] == quote && m_text[at + 2] == quote))) {
                end = at + (triple ? 3 : 1);
                break;
            }
            ++at;
        }
        const bool property = m_language.family == Family::json && end < m_size && m_text[end] == u':';
        add(start, end, property ? Kind::property : Kind::string);
    }

    // Letters, digits, "_" and single dots; two dots end the number before them.
    void number()
    {
        qsizetype at = m_at + 1;
        while (at < m_size) {
            const char16_t c = m_text[at];
            if (c < 128 && (isAsciiLetter(c) || isDigit(c) || c == u'_'))
                ++at;
            else if (c == u'.' && !(at + 1 < m_size && m_text[at + 1] == u'.'))
                ++at;
            else
                break;
        }
        add(m_at, at, Kind::number);
    }

    std::optional<Kind> listed(qsizetype start, qsizetype end) const
    {
        const qsizetype length = end - start;
        if (!m_language.caseInsensitive || length > m_language.words.maxLength())
            return m_language.words.find(m_text + start, length);
        std::array<char16_t, 64> lower{};
        for (qsizetype k = 0; k < length; ++k) {
            const char16_t c = m_text[start + k];
            lower[std::size_t(k)] = (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
        }
        return m_language.words.find(lower.data(), length);
    }

    void word()
    {
        const qsizetype start = m_at;
        const qsizetype end = wordEnd(start + 1);
        if (auto kind = listed(start, end))
            add(start, end, *kind);
        else if (end < m_size && m_text[end] == u'(')
            add(start, end, Kind::function);
        else if (m_language.capitalizedTypes && end - start >= 2 && m_text[start] >= u'A' && m_text[start] <= u'Z')
            add(start, end, Kind::type);
        else
            m_at = end;
    }

    // A listed word that begins with a sign: "#include", "@media", "!important", ".PHONY", "~".
    bool prefixedWord()
    {
        const qsizetype end = wordEnd(m_at + 1);
        if (auto kind = listed(m_at, end)) {
            add(m_at, end, *kind);
            return true;
        }
        return false;
    }

    // Markup: text between tags stays plain; "<name" starts a tag whose name is a `tag`, its
    // attribute names `attribute` and its quoted values `string`, up to ">".
    void markup()
    {
        if (m_inTag) {
            tagPart();
            return;
        }
        if (m_text[m_at] != u'<') {
            // Plain text: straight to the next "<" (or line feed, which the main loop counts).
            qsizetype at = m_at + 1;
            while (at < m_size && m_text[at] != u'<' && m_text[at] != u'\n')
                ++at;
            m_at = at;
            return;
        }
        qsizetype at = m_at + 1;
        while (at < m_size && (m_text[at] == u'/' || m_text[at] == u'!' || m_text[at] == u'?'))
            ++at;
        const qsizetype end = markupNameEnd(at);
        if (end == at || !isAsciiLetter(m_text[at])) {
            ++m_at;
            return;
        }
        m_inTag = true;
        m_at = at;
        add(at, end, Kind::tag);
    }

    void tagPart()
    {
        const char16_t c = m_text[m_at];
        if (c == u'>' || c == u'<') {
            m_inTag = false;
            m_at += c == u'>' ? 1 : 0;
        } else if (c < 128 && m_quote[c]) {
            quoted(c);
        } else if (startsWord(c) || c == u'@' || c == u':') {
            add(m_at, markupNameEnd(m_at + 1), Kind::attribute);
        } else {
            ++m_at;
        }
    }

    qsizetype markupNameEnd(qsizetype at) const
    {
        while (at < m_size) {
            const char16_t c = m_text[at];
            if (!(continuesWord(c) || c == u'-' || c == u':' || c == u'.'))
                break;
            ++at;
        }
        return at;
    }

    const char16_t* m_text;
    qsizetype m_size;
    const Language& m_language;
    const bool m_markup;
    const bool m_wordDash;
    std::array<bool, 128> m_opensComment{};
    std::array<bool, 128> m_quote{};
    std::array<bool, 128> m_wordPrefix{};
    std::vector<Token> m_tokens;
    qsizetype m_at = 0;
    bool m_lineStart = true;
    bool m_inTag = false;
};

} // namespace

std::vector<Token> tokens(QStringView text, const Language& language)
{
    return Scanner(text, language).run();
}

} // namespace orwick::SyntaxHighlighter
