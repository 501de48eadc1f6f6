#pragma once
// WorkspaceNamePrompt: the small question "Save Workspace…" asks — a name field with Save and
// Cancel over the window. Return saves (when a name is typed), Esc cancels; the window's tabs are
// then saved under the name through workspaceActions::save, which shows the toast.

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace orwick {

class WindowState;

class WorkspaceNamePrompt : public QDialog {
    Q_OBJECT
public:
    WorkspaceNamePrompt(WindowState* state, QWidget* window);

    // Opens a prompt over `window` each time `state` asks for a workspace name.
    static void follow(WindowState* state, QWidget* window);

    QLineEdit* nameField() const { return m_name; }

private:
    WindowState* m_state;
    QLineEdit* m_name;
    QPushButton* m_save;
};

} // namespace orwick
