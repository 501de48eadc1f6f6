#include "commands/PaletteRanking.h"

#include "search/NameQuery.h"

#include <algorithm>
#include <climits>

namespace orwick::PaletteRanking {
namespace {

struct Scored {
    int score;
    qsizetype index;
};

// The best `limit` of `count` candidates by `scoreOf` (absent drops one), best first, ties in
// candidate order.
template <class ScoreOf>
std::vector<Scored> best(qsizetype count, qsizetype limit, ScoreOf scoreOf)
{
    std::vector<Scored> found;
    for (qsizetype i = 0; i < count; ++i)
        if (const std::optional<int> score = scoreOf(i))
            found.push_back({*score, i});
    const auto better = [](const Scored& a, const Scored& b) {
        return a.score != b.score ? a.score > b.score : a.index < b.index;
    };
    const size_t kept = std::min(found.size(), size_t(limit));
    std::partial_sort(found.begin(), found.begin() + qsizetype(kept), found.end(), better);
    found.resize(kept);
    return found;
}

PaletteItem commandItem(const PaletteCommand& command)
{
    PaletteItem item;
    item.id = QStringLiteral("cmd.") + command.id;
    item.kind = PaletteItem::Kind::command;
    item.title = command.title;
    item.symbol = command.symbol;
    item.shortcut = command.shortcut;
    item.isEnabled = command.isEnabled;
    if (!command.isEnabled)
        item.subtitle = command.disabledNote;
    item.commandId = command.id;
    return item;
}

// Folders by fuzzy score plus their frecency bonus.
std::vector<Scored> bestFolders(const FuzzyQuery& query, const PreparedFolders& folders, qsizetype limit)
{
    return best(folders.size(), limit, [&](qsizetype i) -> std::optional<int> {
        const auto score = FuzzyMatch::score(query, folders.text(i));
        return score ? std::optional<int>(*score + folders[i].bonus) : std::nullopt;
    });
}

// Whether `title` (folded) is `typed` (folded, blanks dropped) but for the title's blanks.
bool typedWhole(const FuzzyCandidate& title, QStringView typed)
{
    qsizetype at = 0;
    for (int i = 0; i < title.size; ++i) {
        if (title.chars[i] == u' ')
            continue;
        if (at == typed.size() || typed[at] != QChar(title.chars[i]))
            return false;
        ++at;
    }
    return at == typed.size();
}

// Commands in palette order: enabled first (a dimmed row can't run, so it never stands before one
// that can); then those whose title or one keyword matches before those matched only across the
// title and keywords together (letters scattered over a keyword list say little); then by the
// letters' match (the score without the length penalty), a title typed whole, a match in the
// title over one in a keyword, the handiness of the key, the score itself, and catalogue order.
std::vector<Scored> bestCommands(const FuzzyQuery& query, const PaletteCandidates& candidates)
{
    const QList<PaletteCommand>& commands = candidates.commands();
    const FuzzyCandidateList& titles = candidates.commandTitles();
    const FuzzyCandidateList& texts = candidates.commandTexts();
    const FuzzyCandidateList& keywords = candidates.commandKeywords();
    const QString typed = QString::fromStdU16String(query.chars());
    struct Hit {
        Scored scored;
        bool scattered; // matched only across the whole text
        int letters;    // the score before the length penalty
        bool exact;     // the title, folded and without blanks, is the query
        bool byTitle;   // the title matched as well as a keyword did
    };
    std::vector<Hit> hits;
    for (qsizetype i = 0; i < titles.size(); ++i) {
        int score = INT_MIN, letters = INT_MIN;
        const auto consider = [&](const FuzzyCandidate& candidate) {
            if (const auto s = FuzzyMatch::score(query, candidate)) {
                score = std::max(score, *s);
                letters = std::max(letters, *s + candidate.length);
            }
        };
        const FuzzyCandidate title = titles[i];
        consider(title);
        const int titleLetters = letters;
        for (qsizetype k = candidates.keywordBegin(i); k < candidates.keywordBegin(i + 1); ++k)
            consider(keywords[k]);
        const bool scattered = score == INT_MIN;
        if (scattered)
            consider(texts[i]);
        if (score == INT_MIN)
            continue;
        hits.push_back({{score, i}, scattered, letters, typedWhole(title, typed), !scattered && titleLetters == letters});
    }
    // Enabled commands before dimmed ones, except that a dimmed command whose title is typed whole
    // comes before letters scattered over other commands' texts: Return on "undo" then says why
    // Undo can't run instead of running Tidy Up Folder….
    const auto group = [&](const Hit& hit) {
        if (commands[hit.scored.index].isEnabled)
            return hit.scattered ? 2 : 0;
        return hit.exact ? 1 : 3;
    };
    std::stable_sort(hits.begin(), hits.end(), [&](const Hit& a, const Hit& b) {
        if (const int aGroup = group(a), bGroup = group(b); aGroup != bGroup)
            return aGroup < bGroup;
        if (a.scattered != b.scattered)
            return !a.scattered;
        if (a.letters != b.letters)
            return a.letters > b.letters;
        if (a.exact != b.exact)
            return a.exact;
        if (a.byTitle != b.byTitle)
            return a.byTitle;
        const int aReach = candidates.commandReach(a.scored.index), bReach = candidates.commandReach(b.scored.index);
        if (aReach != bReach)
            return aReach < bReach;
        return a.scored.score > b.scored.score;
    });
    std::vector<Scored> ordered;
    ordered.reserve(hits.size());
    for (const Hit& hit : hits)
        ordered.push_back(hit.scored);
    return ordered;
}

struct RankedSection {
    PaletteSection section;
    int bestScore = 0;
    int order = 0;
};

} // namespace

QList<PaletteItem> rankFolders(const FuzzyQuery& query, const PreparedFolders& folders, qsizetype limit)
{
    QList<PaletteItem> rows;
    for (const Scored& s : bestFolders(query, folders, limit))
        rows.append(pathItem(folders[s.index].path, PaletteItem::Kind::folder));
    return rows;
}

QList<PaletteSection> rank(const FuzzyQuery& query, const PaletteCandidates& candidates)
{
    const QList<PaletteCommand>& commands = candidates.commands();
    if (query.matchesEverything()) {
        QList<PaletteSection> sections;
        const PreparedFolders& folders = candidates.folders();
        PaletteSection recent{QStringLiteral("Folders"), {}};
        for (qsizetype i = 0; i < std::min(folders.size(), kEmptyQueryFolderRows); ++i)
            recent.items.append(pathItem(folders[i].path, PaletteItem::Kind::folder));
        if (!recent.items.isEmpty())
            sections.append(recent);
        PaletteSection all{QStringLiteral("Commands"), {}};
        for (const PaletteCommand& command : commands)
            all.items.append(commandItem(command));
        if (!all.items.isEmpty())
            sections.append(all);
        return sections;
    }

    std::vector<RankedSection> ranked;

    const PreparedFolders& folders = candidates.folders();
    const auto folderHits = bestFolders(query, folders, kFolderRows);
    if (!folderHits.empty()) {
        RankedSection section{{QStringLiteral("Folders"), {}}, folderHits.front().score, 0};
        for (const Scored& s : folderHits)
            section.section.items.append(pathItem(folders[s.index].path, PaletteItem::Kind::folder));
        ranked.push_back(std::move(section));
    }

    const FuzzyCandidateList& names = candidates.fileNames();
    const auto fileHits = best(names.size(), kFileRows, [&](qsizetype i) { return FuzzyMatch::score(query, names[i]); });
    if (!fileHits.empty()) {
        RankedSection section{{QStringLiteral("Files"), {}}, fileHits.front().score, 1};
        for (const Scored& s : fileHits)
            section.section.items.append(pathItem(candidates.files()[size_t(s.index)], PaletteItem::Kind::file));
        ranked.push_back(std::move(section));
    }

    const auto commandHits = bestCommands(query, candidates);
    if (!commandHits.empty()) {
        std::vector<Scored> ordered(commandHits.begin(), commandHits.begin() + std::min(commandHits.size(), size_t(kCommandRows)));
        RankedSection section{{QStringLiteral("Commands"), {}}, ordered.front().score, 2};
        for (const Scored& s : ordered)
            section.section.items.append(commandItem(commands[s.index]));
        ranked.push_back(std::move(section));
    }

    std::stable_sort(ranked.begin(), ranked.end(), [](const RankedSection& a, const RankedSection& b) {
        return a.bestScore != b.bestScore ? a.bestScore > b.bestScore : a.order < b.order;
    });
    QList<PaletteSection> sections;
    for (RankedSection& r : ranked)
        sections.append(std::move(r.section));

    const NameTable& indexed = candidates.indexedNames();
    const auto indexedHits = NameQuery::best(indexed, query, PaletteCandidates::kMaxFiles, kIndexedFileRows,
                                             [&](quint32 entry) { return !candidates.isFileCandidate(indexed.path(entry)); });
    if (!indexedHits.empty()) {
        PaletteSection elsewhere{QStringLiteral("Files Elsewhere"), {}};
        for (const NameQuery::Hit& hit : indexedHits)
            elsewhere.items.append(pathItem(indexed.path(hit.entry), PaletteItem::Kind::file));
        sections.append(std::move(elsewhere));
    }
    return sections;
}

QList<PaletteSection> rank(QStringView query, const QList<PaletteCommand>& commands,
                           std::span<const FrecentFolder> frecency, std::span<const FilePath> files)
{
    PaletteCandidates candidates;
    candidates.setCommands(commands);
    candidates.setFolders(frecency);
    candidates.setFiles(files);
    return rank(FuzzyQuery(query), candidates);
}

} // namespace orwick::PaletteRanking
