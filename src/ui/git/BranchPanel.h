#pragma once
// BranchPanel: "Git: Switch Branch…" and "Git: New Branch…" for the repository of the active
// pane's folder, as a sheet with one text field.
//
// Switching: the local branches, most recently committed first (GitActions::branches), the
// current one marked; typing filters them fuzzily (best match first); Up and Down move, Return
// switches to the chosen branch. Making: the name typed is checked as it is typed
// (isValidBranchName: the refusal and the rule show under the field and Return does nothing),
// and Return makes the branch from where the repository is and switches to it.
//
// Done, the sheet closes and the window says so; a failure stays in the sheet in GitTexts' words
// with git's own reason. Runs through GitActions: never blocks the window.

#include "git/GitActions.h"
#include "ui/panels/PanelSheet.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace orwick {

class Git;
class WindowState;

class BranchPanel : public PanelSheet {
    Q_OBJECT
public:
    enum class Mode { switchBranch, newBranch };

    BranchPanel(WindowState& window, Git& git, const FilePath& root, Mode mode, QWidget* parent);
    // For the repository of the active pane's folder; null outside one.
    static PanelSheet* open(WindowState& window, QWidget* parent, Mode mode);

    QLineEdit* field() const { return m_field; }
    // The branch names listed, in order (switching).
    QStringList shownBranches() const;
    QString problem() const;
    bool isLoaded() const { return m_loaded; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void filter();
    void check();
    void accept();
    void showProblem(const QString& text);

    WindowState& m_window;
    GitActions m_actions;
    FilePath m_root;
    Mode m_mode;
    QList<GitBranch> m_branches;
    bool m_loaded = false;
    bool m_running = false;
    QLineEdit* m_field;
    QListWidget* m_list = nullptr;
    QLabel* m_note;
    QLabel* m_problem;
};

} // namespace orwick
