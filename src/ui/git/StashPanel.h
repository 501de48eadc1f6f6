#pragma once
// StashPanel: "Git: Stashes…" — the stashes of the repository of the active pane's folder, the
// latest first: Return applies the chosen one (it stays), P pops it (applied, then removed),
// Delete drops it after asking ("Delete this stash?", with its message: it can't be got back).
// Each action runs through GitActions (never blocking the window) and the list is read again
// after it; a failure shows in the sheet in GitTexts' words with git's reason.

#include "git/GitActions.h"
#include "ui/panels/PanelSheet.h"

class QLabel;
class QListWidget;

namespace orwick {

class Git;
class WindowState;

class StashPanel : public PanelSheet {
    Q_OBJECT
public:
    StashPanel(WindowState& window, Git& git, const FilePath& root, QWidget* parent);
    static PanelSheet* open(WindowState& window, QWidget* parent);

    const QList<GitStash>& stashes() const { return m_stashes; }
    QListWidget* list() const { return m_list; }
    QString problem() const;
    bool isWorking() const { return m_working > 0; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void reload();
    void apply(bool pop);
    void drop();
    GitActions::Finished finished();

    WindowState& m_window;
    GitActions m_actions;
    FilePath m_root;
    QList<GitStash> m_stashes;
    int m_working = 0;
    QListWidget* m_list;
    QLabel* m_problem;
};

} // namespace orwick
