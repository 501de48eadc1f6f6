#pragma once
// PaletteState: the command palette of one window — its mode, query, rows and selected row.
// Lives on the GUI thread with its window; the view draws it and forwards keys, and the window
// acts on the row the user chooses (the `chosen` signal).
//
// Modes:
// - main: commands, frecent folders, the shown folder's files and the name index's files
//   anywhere under home (PaletteRanking); opening it starts the index on first use, and rows
//   follow the index while it is open (its first walk ending, its updates);
// - path: a typed path, "Go to …" rows, Tab completes the last component (PathCompletion);
// - projects: the git repositories under the home folder, gathered by a background walk each
//   time the mode opens (the rows of the last walk stay meanwhile); Ctrl+Return opens one in the
//   editor;
// - destination: a folder to move or copy the selection to.
//
// Opening resets the query and the mode and takes the frecency ranking once; each change of the
// query re-ranks at once (prepared candidates make that cheap). Closing discards the rows and
// stops a running walk. Commands and file candidates are supplied by the window and kept across
// openings; supply them again when they change.
//
// Signals: openChanged() follows open() and close(); resultsChanged() follows every new set of
// rows (the selection is then the first row); selectionChanged() follows a move of the
// selection alone; queryChanged() follows a change of the query made here (Tab, opening);
// statusChanged() follows the start and end of a project walk. chosen() is emitted only for an
// enabled row, after the palette has closed, so its receiver may open the palette again (a
// "Move to…" command chosen in the palette opens the destination mode).

#include "async/Background.h"
#include "commands/PaletteCandidates.h"
#include "commands/PaletteItem.h"
#include "commands/PathCompletion.h"
#include "commands/ProjectFinder.h"

#include <QObject>
#include <QPointer>

namespace orwick {

class Frecency;
class NameIndex;

enum class PaletteMode { main, path, projects, destination };
enum class TransferKind { move, copy };

class PaletteState : public QObject {
    Q_OBJECT
public:
    explicit PaletteState(Frecency* frecency, QObject* parent = nullptr);
    ~PaletteState() override;

    // --- Opening and closing
    // `path`: the folder path mode starts from (and resolves relative text against).
    void open(PaletteMode mode = PaletteMode::main, const FilePath& path = {});
    // Destination mode for moving or copying `itemCount` items out of `from` (not offered).
    void openDestination(TransferKind kind, int itemCount, const FilePath& from = {});
    void close();
    bool isOpen() const { return m_isOpen; }
    PaletteMode mode() const { return m_mode; }
    TransferKind transferKind() const { return m_transferKind; }
    int transferCount() const { return m_transferCount; }

    // --- Supplied by the window
    void setCommands(QList<PaletteCommand> commands);
    void setFileCandidates(std::span<const FilePath> files);
    void setEditorName(const QString& name); // the configured code editor; empty when none
    // The index whose files the main mode offers; none by default.
    void setNameIndex(NameIndex* index);
    // Where and how far the project walk looks (the home folder by default).
    void setProjectWalk(const FilePath& root, ProjectWalkLimits limits);

    // --- Texts for the view
    QString prompt() const; // the query field's placeholder, or the destination title
    QString footer() const;
    QString status() const; // "Looking for git repositories…" while the walk runs
    bool isLookingForProjects() const { return m_projectWalk.isRunning(); }

    // --- Query and rows
    const QString& query() const { return m_query; }
    void setQuery(const QString& query);
    const QList<PaletteSection>& sections() const { return m_sections; }
    const QList<PaletteItem>& rows() const { return m_rows; }
    int selectedRow() const { return m_selected; } // -1 when there are no rows
    const PaletteItem* selectedItem() const;
    void selectRow(int row);
    void moveSelection(int delta); // stays within the rows

    // Tab in path mode: completes the query to the best matching folder. False when it can't.
    bool completePath();
    // Return (`alternate` for Ctrl+Return): closes and emits chosen() for the selected row.
    // False, and nothing happens, when no row is selected or the row is disabled.
    bool choose(bool alternate = false);

Q_SIGNALS:
    void openChanged();
    void queryChanged();
    void resultsChanged();
    void selectionChanged();
    void statusChanged();
    void chosen(const orwick::PaletteItem& item, orwick::PaletteMode mode, bool alternate);

private:
    void takeFrecency();
    void takeIndexedNames();
    void startProjectWalk();
    void applyProjects(const std::vector<FilePath>& repositories);
    void recompute();
    void setRows(QList<PaletteSection> sections);

    QPointer<Frecency> m_frecency;
    QPointer<NameIndex> m_nameIndex;
    bool m_isOpen = false;
    PaletteMode m_mode = PaletteMode::main;
    TransferKind m_transferKind = TransferKind::move;
    int m_transferCount = 0;
    FilePath m_transferFrom;
    QString m_query;
    QString m_editorName;

    std::vector<FrecentFolder> m_ranking;
    PaletteCandidates m_candidates;
    PathCompletion m_paths;
    PreparedFolders m_projects;

    FilePath m_projectRoot;
    ProjectWalkLimits m_projectLimits;
    TaskSlot m_projectWalk;

    QList<PaletteSection> m_sections;
    QList<PaletteItem> m_rows;
    int m_selected = -1;
};

} // namespace orwick

Q_DECLARE_METATYPE(orwick::PaletteItem)
