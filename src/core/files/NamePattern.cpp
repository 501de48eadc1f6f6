#include "files/NamePattern.h"

#include "base/TextMatch.h"

#include <vector>

namespace orwick {
namespace {

bool hasWildcard(QStringView pattern)
{
    for (QChar c : pattern)
        if (c == u'*' || c == u'?' || c == u'[' || c == u'\\')
            return true;
    return false;
}

// The end of the set that opens at `open` ("[" … "]"), or -1 when it never closes. A "]" right
// after the opening (or after its "!"/"^") belongs to the set.
qsizetype setEnd(QStringView pattern, qsizetype open)
{
    qsizetype i = open + 1;
    if (i < pattern.size() && (pattern[i] == u'!' || pattern[i] == u'^'))
        ++i;
    if (i < pattern.size() && pattern[i] == u']')
        ++i;
    for (; i < pattern.size(); ++i)
        if (pattern[i] == u']')
            return i;
    return -1;
}

bool inSet(QStringView set, QChar c)
{
    bool negated = false;
    qsizetype i = 0;
    if (!set.isEmpty() && (set[0] == u'!' || set[0] == u'^')) {
        negated = true;
        i = 1;
    }
    bool found = false;
    for (; i < set.size(); ++i) {
        if (i + 2 < set.size() && set[i + 1] == u'-') {
            found = found || (c >= set[i] && c <= set[i + 2]);
            i += 2;
        } else {
            found = found || c == set[i];
        }
    }
    return found != negated;
}

// One character of the pattern at `p`: whether it takes `c`, and where the next one starts.
bool takes(QStringView pattern, qsizetype p, QChar c, qsizetype* next)
{
    if (pattern[p] == u'?') {
        *next = p + 1;
        return true;
    }
    if (pattern[p] == u'[') {
        const qsizetype end = setEnd(pattern, p);
        if (end >= 0) {
            *next = end + 1;
            return inSet(pattern.sliced(p + 1, end - p - 1), c);
        }
    }
    if (pattern[p] == u'\\' && p + 1 < pattern.size()) {
        *next = p + 2;
        return pattern[p + 1] == c;
    }
    *next = p + 1;
    return pattern[p] == c;
}

// Wildcard match with one remembered star: linear backtracking, no recursion.
bool globMatch(QStringView pattern, QStringView name)
{
    qsizetype p = 0, n = 0;
    qsizetype starP = -1, starN = 0;
    while (n < name.size()) {
        qsizetype next = 0;
        if (p < pattern.size() && pattern[p] == u'*') {
            starP = ++p;
            starN = n;
        } else if (p < pattern.size() && takes(pattern, p, name[n], &next)) {
            p = next;
            ++n;
        } else if (starP >= 0) {
            p = starP;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

bool matchesOne(const QString& pattern, const QString& name)
{
    return hasWildcard(pattern) ? globMatch(pattern, name) : name.contains(pattern);
}

void readParts(QStringView text, QList<QString>& into)
{
    for (QStringView part : text.split(u';')) {
        const QString folded = foldForSearch(part.trimmed());
        if (!folded.isEmpty())
            into.append(folded);
    }
}

} // namespace

NamePattern::NamePattern(QStringView typed)
{
    const qsizetype bar = typed.indexOf(u'|');
    readParts(bar < 0 ? typed : typed.first(bar), m_include);
    if (bar >= 0)
        readParts(typed.sliced(bar + 1), m_exclude);
}

bool NamePattern::matches(QStringView name) const
{
    const QString folded = foldForSearch(name);
    const auto any = [&folded](const QList<QString>& patterns) {
        for (const QString& pattern : patterns)
            if (matchesOne(pattern, folded))
                return true;
        return false;
    };
    return any(m_include) && !any(m_exclude);
}

} // namespace orwick
