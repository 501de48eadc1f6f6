#pragma once
// NameQuery: the files of a NameTable that best match a palette query, by the one fuzzy score
// (FuzzyMatch.h) of the query against each file's name.
//
// A keystroke must stay within a frame over a few hundred thousand names, so every name is first
// checked cheaply: its character mask must hold every query character's bit, and a plain ASCII
// name must hold the query's characters in order (the matcher's own rule, on bytes). Only names
// that pass are scored, at most `candidateLimit` of them, shallow folders first (the table's
// order). Both checks only drop names the matcher would not match.

#include "base/FuzzyMatch.h"
#include "search/NameTable.h"

#include <functional>
#include <vector>

namespace orwick::NameQuery {

struct Hit {
    quint32 entry;
    int score;
};

// The bits a name must have to possibly match `query` (always including the live-file bit).
quint32 maskOf(const FuzzyQuery& query);

// The best files, best first (ties in table order), at most `limit` of those `accept` takes
// (asked in that order, only as far as needed). An empty query finds nothing.
std::vector<Hit> best(const NameTable& table, const FuzzyQuery& query, qsizetype candidateLimit, qsizetype limit,
                      const std::function<bool(quint32 entry)>& accept = {});

} // namespace orwick::NameQuery
