#include "files/NaturalCompare.h"

namespace orwick {

NaturalKey naturalKey(const QString& name)
{
    // Decompose and drop combining marks so "é" sorts with "e", then fold case.
    QString decomposed = name.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    for (QChar c : decomposed)
        if (c.category() != QChar::Mark_NonSpacing)
            folded.append(c);
    return {folded.toCaseFolded()};
}

int naturalCompare(const NaturalKey& ka, const NaturalKey& kb)
{
    const QChar* a = ka.folded.constData();
    const QChar* b = kb.folded.constData();
    const qsizetype na = ka.folded.size(), nb = kb.folded.size();
    qsizetype i = 0, j = 0;
    while (i < na && j < nb) {
        const bool da = a[i].isDigit() && a[i].unicode() < 128;
        const bool db = b[j].isDigit() && b[j].unicode() < 128;
        if (da && db) {
            // Compare digit runs by value: skip leading zeros, a longer run is larger,
            // equal lengths compare digit by digit.
            qsizetype si = i, sj = j;
            while (si < na && a[si] == u'0')
                ++si;
            while (sj < nb && b[sj] == u'0')
                ++sj;
            qsizetype ei = si, ej = sj;
            while (ei < na && a[ei].isDigit() && a[ei].unicode() < 128)
                ++ei;
            while (ej < nb && b[ej].isDigit() && b[ej].unicode() < 128)
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
