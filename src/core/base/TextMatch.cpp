#include "base/TextMatch.h"

#include "base/NaturalCompare.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <cstring>

namespace orwick {

namespace {

bool isAscii(QByteArrayView bytes)
{
    for (char c : bytes)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

inline unsigned char lowerAscii(unsigned char c) { return (c >= 'A' && c <= 'Z') ? c + 32 : c; }

// The folded form of one character, as UTF-8 bytes ("É" → "e", a combining mark → ""), cached
// per thread: text holds few distinct characters beyond ASCII.
const std::string& foldedChar(char32_t c)
{
    thread_local std::unordered_map<char32_t, std::string> cache;
    auto found = cache.find(c);
    if (found != cache.end())
        return found->second;
    const QString folded = foldForSearch(QString::fromUcs4(&c, 1));
    return cache.emplace(c, folded.toUtf8().toStdString()).first->second;
}

// Decodes the UTF-8 sequence at `at`; sets `length` (1 for a byte that starts no valid sequence,
// which then stands for itself and matches nothing of an ASCII needle).
char32_t decodeAt(const unsigned char* data, qsizetype size, qsizetype at, qsizetype& length)
{
    const unsigned char lead = data[at];
    int extra = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 && lead < 0xE0 ? 1 : -1;
    if (lead >= 0xF5)
        extra = -1;
    if (extra < 0 || at + extra >= size) {
        length = 1;
        return 0xFFFD;
    }
    char32_t c = lead & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
        const unsigned char next = data[at + k];
        if ((next & 0xC0) != 0x80) {
            length = 1;
            return 0xFFFD;
        }
        c = (c << 6) | (next & 0x3F);
    }
    length = extra + 1;
    return c;
}

// Whether the folded text of `haystack` (UTF-8, any bytes) holds the lower-case ASCII needle,
// folding each character on the way: ASCII by its lower case, anything else by foldedChar().
// One pass, no allocation; per character folding equals folding the whole text for what an
// ASCII needle can match (a letter and its combining marks fold to the letter).
bool containsFoldedAscii(QByteArrayView haystack, QByteArrayView needle)
{
    const qsizetype n = needle.size();
    if (n == 0)
        return true;
    const auto* data = reinterpret_cast<const unsigned char*>(haystack.data());
    const auto* want = reinterpret_cast<const unsigned char*>(needle.data());
    const qsizetype size = haystack.size();
    const unsigned char first = want[0];
    const unsigned char firstUpper = (first >= 'a' && first <= 'z') ? first - 32 : first;
    for (qsizetype i = 0; i < size; ++i) {
        const unsigned char c = data[i];
        if (c < 0x80) {
            if (c != first && c != firstUpper)
                continue;
        } else if ((c & 0xC0) == 0x80) {
            continue; // inside a sequence
        }
        // Match from i, character by character.
        qsizetype j = 0;
        qsizetype k = i;
        while (j < n && k < size) {
            const unsigned char b = data[k];
            if (b < 0x80) {
                if (lowerAscii(b) != want[j])
                    break;
                ++j;
                ++k;
                continue;
            }
            qsizetype length = 1;
            const std::string& folded = foldedChar(decodeAt(data, size, k, length));
            if (folded.size() > size_t(n - j) || std::memcmp(folded.data(), want + j, folded.size()) != 0)
                break;
            if (folded.empty() && j == 0)
                break; // a match starts on a character, not on a mark
            j += qsizetype(folded.size());
            k += length;
        }
        if (j == n)
            return true;
    }
    return false;
}

} // namespace

QString foldForSearch(QStringView text)
{
    QString folded;
    appendNaturalFold(text, folded);
    return folded;
}

TextNeedle::TextNeedle(const QString& typed) : m_folded(foldForSearch(typed.trimmed()))
{
    const QByteArray utf8 = m_folded.toUtf8();
    if (isAscii(utf8))
        m_ascii = utf8;
}

bool TextNeedle::inText(QStringView text) const
{
    if (m_folded.isEmpty())
        return true;
    return foldForSearch(text).contains(m_folded);
}

bool TextNeedle::inName(QByteArrayView name) const
{
    if (m_folded.isEmpty())
        return true;
    if (!m_ascii.isEmpty())
        return containsFoldedAscii(name, m_ascii);
    return !isAscii(name) && inText(QString::fromUtf8(name));
}

bool TextNeedle::inContent(QByteArrayView content) const
{
    if (m_folded.isEmpty())
        return true;
    if (!m_ascii.isEmpty())
        return containsFoldedAscii(content, m_ascii);
    return !isAscii(content) && inText(QString::fromUtf8(content));
}

bool looksBinary(QByteArrayView head)
{
    const qsizetype n = std::min<qsizetype>(head.size(), 8192);
    return n > 0 && std::memchr(head.data(), 0, size_t(n)) != nullptr;
}

} // namespace orwick
