#include "search/TextMatch.h"

#include "files/NaturalCompare.h"

#include <algorithm>
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

// Case-insensitive search of a lower-case ASCII needle in ASCII-range bytes.
bool containsAsciiFolded(QByteArrayView haystack, QByteArrayView needle)
{
    const qsizetype n = needle.size();
    if (n == 0)
        return true;
    if (haystack.size() < n)
        return false;
    const unsigned char first = static_cast<unsigned char>(needle[0]);
    const unsigned char firstUpper = (first >= 'a' && first <= 'z') ? first - 32 : first;
    const char* data = haystack.data();
    const qsizetype last = haystack.size() - n;
    for (qsizetype i = 0; i <= last; ++i) {
        const unsigned char c = static_cast<unsigned char>(data[i]);
        if (c != first && c != firstUpper)
            continue;
        qsizetype k = 1;
        while (k < n && lowerAscii(static_cast<unsigned char>(data[i + k])) == static_cast<unsigned char>(needle[k]))
            ++k;
        if (k == n)
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
    if (isAscii(name))
        return !m_ascii.isEmpty() && containsAsciiFolded(name, m_ascii);
    return inText(QString::fromUtf8(name));
}

bool TextNeedle::inContent(QByteArrayView content) const
{
    if (m_folded.isEmpty())
        return true;
    if (!m_ascii.isEmpty()) {
        // ASCII text found in the bytes as they are; only text with other letters needs decoding
        // (an accented "é" may stand for the typed "e").
        if (containsAsciiFolded(content, m_ascii))
            return true;
        if (isAscii(content))
            return false;
    }
    return inText(QString::fromUtf8(content));
}

bool looksBinary(QByteArrayView head)
{
    const qsizetype n = std::min<qsizetype>(head.size(), 8192);
    return n > 0 && std::memchr(head.data(), 0, size_t(n)) != nullptr;
}

} // namespace orwick
