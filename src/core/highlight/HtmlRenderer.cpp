// HTML spans for highlighted text: the text escaped, each token in <span class="tok-KIND">.
// One writer serves both outputs (QString for the note exporter, UTF-8 bytes for large texts),
// copying whole runs between the characters that need escaping.

#include "highlight/Language.h"

#include <cstring>

namespace orwick::SyntaxHighlighter {
namespace {

const char* entity(char16_t c)
{
    switch (c) {
    case u'&': return "&amp;";
    case u'<': return "&lt;";
    case u'>': return "&gt;";
    case u'"': return "&quot;";
    default: return nullptr;
    }
}

struct TextSink {
    QString& out;
    void ascii(const char* text, std::size_t length) { out.append(QLatin1StringView(text, qsizetype(length))); }
    void text(const char16_t* units, qsizetype length) { out.append(reinterpret_cast<const QChar*>(units), length); }
};

// UTF-8 straight into the byte array, grown ahead so each run is one pass.
struct Utf8Sink {
    QByteArray& out;
    void ascii(const char* text, std::size_t length) { out.append(text, qsizetype(length)); }
    void text(const char16_t* units, qsizetype length)
    {
        const qsizetype oldSize = out.size();
        out.resize(oldSize + length * 3);
        char* dst = out.data() + oldSize;
        for (qsizetype i = 0; i < length; ++i) {
            const char32_t c = units[i];
            if (c < 0x80) {
                *dst++ = char(c);
            } else if (c < 0x800) {
                *dst++ = char(0xC0 | (c >> 6));
                *dst++ = char(0x80 | (c & 0x3F));
            } else if (c >= 0xD800 && c < 0xDC00 && i + 1 < length && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
                const char32_t full = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00);
                *dst++ = char(0xF0 | (full >> 18));
                *dst++ = char(0x80 | ((full >> 12) & 0x3F));
                *dst++ = char(0x80 | ((full >> 6) & 0x3F));
                *dst++ = char(0x80 | (full & 0x3F));
            } else {
                const char32_t unit = (c >= 0xD800 && c < 0xE000) ? 0xFFFD : c; // a lone surrogate
                *dst++ = char(0xE0 | (unit >> 12));
                *dst++ = char(0x80 | ((unit >> 6) & 0x3F));
                *dst++ = char(0x80 | (unit & 0x3F));
            }
        }
        out.resize(dst - out.data());
    }
};

template <typename Sink>
void escaped(Sink& sink, const char16_t* units, qsizetype from, qsizetype to)
{
    qsizetype run = from;
    for (qsizetype at = from; at < to; ++at) {
        const char16_t c = units[at];
        if (c > u'>' || c < u'"')
            continue;
        if (const char* replacement = entity(c)) {
            sink.text(units + run, at - run);
            sink.ascii(replacement, std::strlen(replacement));
            run = at + 1;
        }
    }
    sink.text(units + run, to - run);
}

template <typename Sink>
void write(Sink& sink, QStringView text, const std::vector<Token>& tokens)
{
    static constexpr char kOpen[] = "<span class=\"tok-";
    static constexpr char kClose[] = "</span>";
    const auto* units = reinterpret_cast<const char16_t*>(text.utf16());
    qsizetype at = 0;
    for (const Token& token : tokens) {
        escaped(sink, units, at, token.start);
        sink.ascii(kOpen, sizeof kOpen - 1);
        const char* name = kindNameLatin1(token.kind);
        sink.ascii(name, std::strlen(name));
        sink.ascii("\">", 2);
        escaped(sink, units, token.start, token.end());
        sink.ascii(kClose, sizeof kClose - 1);
        at = token.end();
    }
    escaped(sink, units, at, text.size());
}

} // namespace

QString html(QStringView text, const Language& language)
{
    const std::vector<Token> list = tokens(text, language);
    QString out;
    out.reserve(text.size() + qsizetype(list.size()) * 32);
    TextSink sink{out};
    write(sink, text, list);
    return out;
}

void appendHtmlUtf8(QByteArray& out, QStringView text, const std::vector<Token>& tokens)
{
    out.reserve(out.size() + text.size() + qsizetype(tokens.size()) * 32);
    Utf8Sink sink{out};
    write(sink, text, tokens);
}

} // namespace orwick::SyntaxHighlighter
