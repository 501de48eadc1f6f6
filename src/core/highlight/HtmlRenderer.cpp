// HTML spans for highlighted text: the text escaped, each token in <span class="tok-KIND">.
// One writer serves both outputs (QString for the note exporter, UTF-8 bytes for large texts):
// it writes through a raw pointer into room made ahead for each piece, so a character costs a
// compare and a store, and escaping and encoding happen in the same pass.

#include "highlight/Language.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace orwick::SyntaxHighlighter {
namespace {

// Writes into `out` (QString with char16_t units, or QByteArray with UTF-8 bytes) after what it
// holds; the final size is set when the writer goes.
template <typename Out, typename Unit>
class HtmlWriter {
public:
    explicit HtmlWriter(Out& out) : m_out(out), m_used(out.size()) {}
    ~HtmlWriter() { m_out.resize(m_at - base()); }

    void ascii(const char* text, std::size_t length)
    {
        ensure(qsizetype(length));
        for (std::size_t i = 0; i < length; ++i)
            *m_at++ = Unit(text[i]);
    }

    // Units [from, to) of the text, escaped (and encoded when writing UTF-8).
    void text(const char16_t* units, qsizetype from, qsizetype to)
    {
        ensure((to - from) * 6); // the longest entity, "&quot;", is six units for one
        for (qsizetype i = from; i < to; ++i) {
            const char16_t c = units[i];
            if (c < 0x80) {
                switch (c) {
                case u'&': put("&amp;", 5); break;
                case u'<': put("&lt;", 4); break;
                case u'>': put("&gt;", 4); break;
                case u'"': put("&quot;", 6); break;
                default: *m_at++ = Unit(c);
                }
            } else if constexpr (std::is_same_v<Unit, char16_t>) {
                *m_at++ = c;
            } else {
                i = encode(units, i, to);
            }
        }
    }

private:
    Unit* base() { return reinterpret_cast<Unit*>(m_out.data()); }

    void ensure(qsizetype more)
    {
        if (m_at && m_end - m_at >= more)
            return;
        const qsizetype used = m_at ? m_at - base() : m_used;
        m_out.resize(std::max(m_out.size() * 2, used + more + 4096));
        m_at = base() + used;
        m_end = base() + m_out.size();
    }

    void put(const char* text, int length)
    {
        for (int i = 0; i < length; ++i)
            *m_at++ = Unit(text[i]);
    }

    // Writes the non-ASCII unit at `i` as UTF-8 (a pair as one character, a lone surrogate as
    // U+FFFD); returns the index of the last unit used.
    qsizetype encode(const char16_t* units, qsizetype i, qsizetype to)
    {
        const char32_t c = units[i];
        if (c < 0x800) {
            *m_at++ = Unit(0xC0 | (c >> 6));
            *m_at++ = Unit(0x80 | (c & 0x3F));
            return i;
        }
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < to && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
            const char32_t full = 0x10000 + ((c - 0xD800) << 10) + (units[i + 1] - 0xDC00);
            *m_at++ = Unit(0xF0 | (full >> 18));
            *m_at++ = Unit(0x80 | ((full >> 12) & 0x3F));
            *m_at++ = Unit(0x80 | ((full >> 6) & 0x3F));
            *m_at++ = Unit(0x80 | (full & 0x3F));
            return i + 1;
        }
        const char32_t unit = (c >= 0xD800 && c < 0xE000) ? 0xFFFD : c;
        *m_at++ = Unit(0xE0 | (unit >> 12));
        *m_at++ = Unit(0x80 | ((unit >> 6) & 0x3F));
        *m_at++ = Unit(0x80 | (unit & 0x3F));
        return i;
    }

    Out& m_out;
    qsizetype m_used;
    Unit* m_at = nullptr;
    Unit* m_end = nullptr;
};

template <typename Writer>
void write(Writer& writer, QStringView text, const std::vector<Token>& tokens)
{
    static constexpr char kOpen[] = "<span class=\"tok-";
    static constexpr char kClose[] = "</span>";
    const auto* units = reinterpret_cast<const char16_t*>(text.utf16());
    qsizetype at = 0;
    for (const Token& token : tokens) {
        writer.text(units, at, token.start);
        writer.ascii(kOpen, sizeof kOpen - 1);
        const char* name = kindNameLatin1(token.kind);
        writer.ascii(name, std::strlen(name));
        writer.ascii("\">", 2);
        writer.text(units, token.start, token.end());
        writer.ascii(kClose, sizeof kClose - 1);
        at = token.end();
    }
    writer.text(units, at, text.size());
}

} // namespace

QString html(QStringView text, const Language& language)
{
    QString out;
    {
        HtmlWriter<QString, char16_t> writer(out);
        write(writer, text, tokens(text, language));
    }
    out.squeeze();
    return out;
}

void appendHtmlUtf8(QByteArray& out, QStringView text, const std::vector<Token>& tokens)
{
    HtmlWriter<QByteArray, char> writer(out);
    write(writer, text, tokens);
}

} // namespace orwick::SyntaxHighlighter
