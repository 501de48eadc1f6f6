#pragma once
// HistoryPanel: "Git: History" — the newest commits of the repository of the active pane's
// folder, or of the one file selected there (followed across renames), with each commit's patch
// beside the list: Up and Down move, Return shows the commit's patch (GitActions::show) with the
// added and removed lines tinted by the theme. Reads run in the background; only the newest
// read's answer is shown.

#include "git/GitActions.h"
#include "ui/panels/PanelSheet.h"

#include <optional>

class QListWidget;
class QPlainTextEdit;

namespace orwick {

class Git;
class WindowState;

class HistoryPanel : public PanelSheet {
    Q_OBJECT
public:
    HistoryPanel(Git& git, const FilePath& root, std::optional<FilePath> file, QWidget* parent);
    // For the repository of the active pane's folder (and its one selected file); null outside one.
    static PanelSheet* open(WindowState& window, QWidget* parent);

    const QList<GitCommit>& commits() const { return m_commits; }
    // The patch shown; empty before one is asked for.
    QString patchText() const;
    bool isLoaded() const { return m_loaded; }
    QListWidget* list() const { return m_list; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void stopWork() override { ++m_generation; }

private:
    void showPatch();

    GitActions m_actions;
    FilePath m_root;
    std::optional<FilePath> m_file;
    QList<GitCommit> m_commits;
    bool m_loaded = false;
    quint64 m_generation = 0;
    QListWidget* m_list;
    QPlainTextEdit* m_patch;
};

} // namespace orwick
