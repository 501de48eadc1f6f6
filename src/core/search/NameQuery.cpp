#include "search/NameQuery.h"

#include <algorithm>

namespace orwick::NameQuery {
namespace {

inline char lowerByte(char c) { return (c >= 'A' && c <= 'Z') ? char(c + 32) : c; }

// The query's characters in order among the name's bytes (both folded), as the matcher walks.
bool holdsInOrder(QByteArrayView name, const std::string& query)
{
    const char* at = name.data();
    const char* end = at + name.size();
    for (char wanted : query) {
        while (at != end && lowerByte(*at) != wanted)
            ++at;
        if (at == end)
            return false;
        ++at;
    }
    return true;
}

} // namespace

quint32 maskOf(const FuzzyQuery& query)
{
    quint32 mask = NameTable::kLiveFileBit;
    for (char16_t c : query.chars()) {
        if (c >= u'a' && c <= u'z')
            mask |= 1u << (c - u'a');
        else if (c >= u'0' && c <= u'9')
            mask |= 1u << (26 + std::min(3, (c - u'0') / 3));
        else if (c >= 128)
            mask |= NameTable::kNonAsciiBit;
    }
    return mask;
}

std::vector<Hit> best(const NameTable& table, const FuzzyQuery& query, qsizetype candidateLimit, qsizetype limit,
                      const std::function<bool(quint32 entry)>& accept)
{
    if (query.matchesEverything() || limit <= 0)
        return {};
    const quint32 wanted = maskOf(query);
    std::string asciiQuery;
    if (query.isAscii())
        asciiQuery.assign(query.chars().begin(), query.chars().end());

    std::vector<Hit> hits;
    FuzzyCandidateBuffer buffer;
    const std::span<const quint32> masks = table.masks();
    qsizetype scored = 0;
    for (quint32 entry = 0; entry < quint32(masks.size()) && scored < candidateLimit; ++entry) {
        if ((masks[entry] & wanted) != wanted)
            continue;
        const QByteArrayView name = table.name(entry);
        std::optional<int> score;
        if (table.isPlain(entry)) {
            if (!asciiQuery.empty() && !holdsInOrder(name, asciiQuery))
                continue;
            score = FuzzyMatch::score(query, buffer.prepareAscii(name)); // plain ASCII: each byte is its character
        } else {
            const QString text = visibleName(name); // as the row shows it
            score = FuzzyMatch::score(query, buffer.prepare(text));
        }
        ++scored;
        if (score)
            hits.push_back({entry, *score});
    }
    std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.score > b.score; });
    if (!accept) {
        hits.resize(std::min(hits.size(), size_t(limit)));
        return hits;
    }
    std::vector<Hit> kept;
    for (const Hit& hit : hits) {
        if (qsizetype(kept.size()) == limit)
            break;
        if (accept(hit.entry))
            kept.push_back(hit);
    }
    return kept;
}

} // namespace orwick::NameQuery
