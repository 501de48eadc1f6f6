#pragma once
// BatchRenamePanel: renames several items by one rule, showing each old and new name before
// anything changes. Opened by the rename command (F2) with more than one item selected, over
// the window state's panel items; closed by Esc or "Cancel".
//
// Every change of a field makes a new rule: the rows on screen show their new names at once,
// the problem of the rule itself (a pattern that doesn't compile, an unknown template field)
// shows under the fields, and the summary and the "Rename N" button follow when the whole
// preview has been worked out in the background. Return, or the button, hands the renames to
// FileOperations::renameMany as one job and one undo step on the window's stack; when every item
// was renamed the panel closes, else it stays with each failed row's reason and renames no more.
// Keys: Tab moves between the fields, Ctrl+1…Ctrl+6 pick the mode from any part of the panel
// (the window's view-mode keys give way), Return renames, Esc cancels.

#include "rename/BatchRename.h"
#include "ui/panels/PanelSheet.h"

#include <QHash>
#include <QPointer>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QSpinBox;
class QStackedWidget;

namespace orwick {

class BatchRenameModel;
class PaneState;
class WindowState;

class BatchRenamePanel : public PanelSheet {
    Q_OBJECT
public:
    BatchRenamePanel(WindowState& state, QWidget* window);
    ~BatchRenamePanel() override;
    // The panel over the state's panel items, closing the sheet shown before; nothing for fewer
    // than two items.
    static PanelSheet* open(WindowState& state, QWidget* window);

    const BatchRename& rule() const { return m_rule; }
    BatchRenameModel* model() const { return m_model; }
    QString summary() const;
    // Renames what the preview says will change; nothing while the preview is being worked out.
    void commit();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* replacePage();
    QWidget* addPage();
    QWidget* numberPage();
    QWidget* casePage();
    QWidget* templatePage();
    QWidget* removePage();
    QLineEdit* field(const QString& name, const QString& placeholder, QString BatchRename::*member);
    QSpinBox* startAtField();
    void showMode(int index);
    void ruleChanged();
    void previewChanged();
    void showOutcome(const QList<FilePath>& done, const QHash<FilePath, QString>& failed);
    bool canCommit() const;

    WindowState& m_state;
    QPointer<PaneState> m_pane;
    BatchRename m_rule;
    BatchRenameModel* m_model;
    QComboBox* m_mode;
    QStackedWidget* m_pages;
    QLabel* m_regexHelp = nullptr;
    QLabel* m_ruleProblem;
    QListView* m_list;
    QLabel* m_summary;
    QPushButton* m_cancel;
    QPushButton* m_rename;
    QList<QSpinBox*> m_startAtFields; // number and template share startAt
    std::vector<QWidget*> m_firstFields; // each mode's first field, in the order of the modes
    bool m_committing = false;
    bool m_finished = false;
};

} // namespace orwick
