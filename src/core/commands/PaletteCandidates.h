#pragma once
// PaletteCandidates: everything the main palette can offer for one opening — the commands with
// their enabled state, the frecent folders and the file candidates — prepared once for fuzzy
// scoring, so that a keystroke only scores and sorts (see PaletteRanking.h).
//
// Bounds: at most the first 500 folders of the frecency ranking and the first 5,000 file
// candidates are kept. Folders are matched against their abbreviated path ("~/Projects/site");
// files against their name (they come from the shown folder, so the shared parent would only add
// noise); commands against their title, each of their keywords, and their title with keywords. The name
// index's table (files anywhere under home) is kept as it is: a query pre-checks its names and
// scores at most 5,000 of them (NameQuery.h).

#include "base/FuzzyMatch.h"
#include "commands/Frecency.h"
#include "search/NameTable.h"

#include <QSet>

#include <QList>
#include <QString>
#include <span>
#include <vector>

namespace orwick {

// Folders prepared for scoring against their abbreviated path, each with its frecency bonus.
class PreparedFolders {
public:
    struct Folder {
        FilePath path;
        double frecency = 0.0;
        int bonus = 0; // the integer part of log2(frecency + 1) × 150
    };

    // `ranking` best first; only its first `limit` folders are kept.
    void assign(std::span<const FrecentFolder> ranking, qsizetype limit);
    qsizetype size() const { return qsizetype(m_folders.size()); }
    const Folder& operator[](qsizetype index) const { return m_folders[size_t(index)]; }
    FuzzyCandidate text(qsizetype index) const { return m_texts[index]; }

    // The extra weight of a folder for its frecency score.
    static int frecencyBonus(double frecency);

private:
    std::vector<Folder> m_folders;
    FuzzyCandidateList m_texts;
};

// A command as the palette needs it, taken from the catalogue with its enabled state in the
// window at the time the palette opened.
struct PaletteCommand {
    QString id;
    QString title;
    QString keywords;     // space-separated extra search words
    QString symbol;
    QString shortcut;     // as text ("Ctrl+Shift+N"); empty when none
    QString disabledNote; // why it is dimmed, shown under it when disabled
    bool isEnabled = true;
};

class PaletteCandidates {
public:
    static constexpr qsizetype kMaxFolders = 500;
    static constexpr qsizetype kMaxFiles = 5000;

    void setCommands(QList<PaletteCommand> commands);
    // `ranking` best first, as Frecency::ranked() gives it; only its head is kept.
    void setFolders(std::span<const FrecentFolder> ranking);
    void setFiles(std::span<const FilePath> files);
    // The name index's names (a shared copy: cheap); an empty table for none.
    void setIndexedNames(NameTable names) { m_indexedNames = std::move(names); }

    const QList<PaletteCommand>& commands() const { return m_commands; }
    const FuzzyCandidateList& commandTitles() const { return m_commandTitles; }
    const FuzzyCandidateList& commandTexts() const { return m_commandTexts; }
    // Each command's keywords one by one, as words inside a text (none gets the bonus of the
    // text's first character): keywords [keywordBegin(i), keywordBegin(i + 1)) of commandKeywords().
    const FuzzyCandidateList& commandKeywords() const { return m_commandKeywords; }
    qsizetype keywordBegin(qsizetype command) const { return m_keywordBegins[size_t(command)]; }
    // How handy a command's key is: its modifier count (0 for a bare key such as F2), or
    // kNoKey when it has none. Commands that match equally well rank by it (PaletteRanking.h).
    int commandReach(qsizetype index) const { return m_commandReach[size_t(index)]; }
    static constexpr int kNoKey = 8;
    const PreparedFolders& folders() const { return m_folders; }
    const std::vector<FilePath>& files() const { return m_files; }
    const FuzzyCandidateList& fileNames() const { return m_fileNames; }
    const NameTable& indexedNames() const { return m_indexedNames; }
    bool isFileCandidate(const FilePath& file) const { return m_fileSet.contains(file); }

private:
    QList<PaletteCommand> m_commands;
    FuzzyCandidateList m_commandTitles;
    FuzzyCandidateList m_commandTexts;
    std::vector<int> m_commandReach;
    FuzzyCandidateList m_commandKeywords;
    std::vector<qsizetype> m_keywordBegins{0};
    PreparedFolders m_folders;
    std::vector<FilePath> m_files;
    FuzzyCandidateList m_fileNames;
    QSet<FilePath> m_fileSet;
    NameTable m_indexedNames;
};

} // namespace orwick
