// Fuzzes the syntax highlighter with any text in any of its languages (the first byte picks
// the language). Tokens must ascend without overlapping, lie inside the text, never be empty
// and never split a surrogate pair; the HTML must hold exactly one closing tag per span, no raw
// "<" or ">" outside the spans' own tags, and must read back to the original text once the
// spans are removed and the entities decoded.

#include "FuzzCheck.h"
#include "highlight/SyntaxHighlighter.h"

#include <utility>

using namespace orwick;
using fuzz::check;

namespace {

bool isHigh(QChar c) { return c.isHighSurrogate(); }
bool isLow(QChar c) { return c.isLowSurrogate(); }

// The text back from the HTML: span tags dropped, entities decoded. By hand, not with a regular
// expression, which refuses text holding a lone surrogate.
QString unescaped(const QString& html)
{
    static const QString open = QStringLiteral("<span class=\"tok-");
    static const QString close = QStringLiteral("</span>");
    static const std::pair<QString, QChar> entities[] = {
        {QStringLiteral("&lt;"), u'<'}, {QStringLiteral("&gt;"), u'>'},
        {QStringLiteral("&quot;"), u'"'}, {QStringLiteral("&amp;"), u'&'}};
    QString text;
    for (qsizetype at = 0; at < html.size();) {
        const QStringView rest = QStringView(html).mid(at);
        if (rest.startsWith(open)) {
            const qsizetype end = html.indexOf(u'>', at);
            check(end > 0, "a span's tag is closed");
            at = end + 1;
            continue;
        }
        if (rest.startsWith(close)) {
            at += close.size();
            continue;
        }
        const QChar c = html[at];
        check(c != u'<' && c != u'>' && c != u'"', "HTML escapes <, > and quotes");
        if (c == u'&') {
            bool known = false;
            for (const auto& [entity, character] : entities) {
                if (rest.startsWith(entity)) {
                    text += character;
                    at += entity.size();
                    known = true;
                    break;
                }
            }
            check(known, "every & starts an entity");
            continue;
        }
        text += c;
        ++at;
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    if (size == 0)
        return 0;
    const auto& languages = SyntaxHighlighter::allLanguages();
    const SyntaxHighlighter::Language& language = *languages[bytes[0] % languages.size()];
    // Half the inputs are read as UTF-16 units directly, so lone surrogates and NULs come too.
    const QByteArray rest = fuzz::bytesOf(bytes + 1, size - 1);
    const QString text = (bytes[0] & 0x80)
        ? QString(reinterpret_cast<const QChar*>(rest.constData()), rest.size() / 2)
        : QString::fromUtf8(rest);

    const std::vector<SyntaxHighlighter::Token> tokens = SyntaxHighlighter::tokens(text, language);
    int end = 0;
    for (const SyntaxHighlighter::Token& token : tokens) {
        check(token.start >= end, "tokens ascend without overlapping");
        check(token.length > 0, "a token is never empty");
        check(token.end() <= text.size(), "a token lies inside the text");
        check(!(token.start > 0 && isHigh(text[token.start - 1]) && isLow(text[token.start])),
              "a token never starts inside a surrogate pair");
        check(!(token.end() < text.size() && isHigh(text[token.end() - 1]) && isLow(text[token.end()])),
              "a token never ends inside a surrogate pair");
        end = token.end();
    }

    const QString html = SyntaxHighlighter::html(text, language);
    check(html.count(QStringLiteral("<span ")) == qsizetype(tokens.size())
              && html.count(QStringLiteral("</span>")) == qsizetype(tokens.size()),
          "one span per token");
    check(unescaped(html) == text, "the HTML reads back to the text");
    return 0;
}
