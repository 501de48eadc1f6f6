#include "base/NaturalCompare.h"

namespace orwick {
namespace {

inline bool isAsciiDigit(QChar c) { return c.unicode() >= u'0' && c.unicode() <= u'9'; }

} // namespace

void appendNaturalFold(QStringView name, QString& out)
{
    bool ascii = true;
    for (QChar c : name)
        if (c.unicode() >= 128) {
            ascii = false;
            break;
        }
    if (ascii) {
        const qsizetype at = out.size();
        out.resize(at + name.size());
        QChar* target = out.data() + at;
        for (QChar c : name) {
            const char16_t u = c.unicode();
            *target++ = QChar((u >= u'A' && u <= u'Z') ? char16_t(u + 32) : u);
        }
        return;
    }
    // Decompose and drop combining marks so "é" sorts with "e", then fold case.
    const QString decomposed = name.toString().normalized(QString::NormalizationForm_KD);
    QString stripped;
    stripped.reserve(decomposed.size());
    for (QChar c : decomposed)
        if (c.category() != QChar::Mark_NonSpacing)
            stripped.append(c);
    out += stripped.toCaseFolded();
}

void appendNaturalSortKey(QStringView folded, std::u16string& out)
{
    const qsizetype n = folded.size();
    for (qsizetype i = 0; i < n;) {
        if (!isAsciiDigit(folded[i])) {
            out.push_back(folded[i++].unicode());
            continue;
        }
        qsizetype start = i;
        while (start < n && folded[start] == u'0')
            ++start;
        qsizetype end = start;
        while (end < n && isAsciiDigit(folded[end]))
            ++end;
        // Any unit among the digits orders a run against a non-digit as its first digit would.
        out.push_back(u'0');
        out.push_back(char16_t(end - start));
        for (qsizetype k = start; k < end; ++k)
            out.push_back(folded[k].unicode());
        out.push_back(char16_t(start - i));
        i = end;
    }
}

int naturalCompareFolded(QStringView ka, QStringView kb)
{
    const QChar* a = ka.data();
    const QChar* b = kb.data();
    const qsizetype na = ka.size(), nb = kb.size();
    qsizetype i = 0, j = 0;
    while (i < na && j < nb) {
        if (isAsciiDigit(a[i]) && isAsciiDigit(b[j])) {
            // Compare digit runs by value: skip leading zeros, a longer run is larger,
            // equal lengths compare digit by digit.
            qsizetype si = i, sj = j;
            while (si < na && a[si] == u'0')
                ++si;
            while (sj < nb && b[sj] == u'0')
                ++sj;
            qsizetype ei = si, ej = sj;
            while (ei < na && isAsciiDigit(a[ei]))
                ++ei;
            while (ej < nb && isAsciiDigit(b[ej]))
                ++ej;
            if (ei - si != ej - sj)
                return (ei - si) < (ej - sj) ? -1 : 1;
            for (qsizetype k = 0; k < ei - si; ++k)
                if (a[si + k] != b[sj + k])
                    return a[si + k] < b[sj + k] ? -1 : 1;
            // "01" and "1" are equal in value; the one with fewer leading zeros goes first.
            if ((ei - i) != (ej - j))
                return (ei - i) < (ej - j) ? -1 : 1;
            i = ei;
            j = ej;
            continue;
        }
        if (a[i] != b[j])
            return a[i] < b[j] ? -1 : 1;
        ++i;
        ++j;
    }
    if (i < na)
        return 1;
    if (j < nb)
        return -1;
    return 0;
}

} // namespace orwick
