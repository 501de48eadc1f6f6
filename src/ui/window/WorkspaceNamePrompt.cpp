#include "ui/window/WorkspaceNamePrompt.h"

#include "app/WorkspaceActions.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {

WorkspaceNamePrompt::WorkspaceNamePrompt(WindowState* state, QWidget* window) : QDialog(window), m_state(state)
{
    setWindowTitle(QStringLiteral("Save Workspace"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(QStringLiteral("Save this window’s tabs as a workspace named:"), this);
    m_name = new QLineEdit(this);
    m_name->setPlaceholderText(QStringLiteral("Workspace name"));
    label->setBuddy(m_name);
    // The shown folder's name is a likely one; selected, so that typing replaces it.
    m_name->setText(state->activePane()->title());
    m_name->selectAll();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_save = buttons->addButton(QStringLiteral("Save"), QDialogButtonBox::AcceptRole);
    m_save->setDefault(true);
    layout->addWidget(label);
    layout->addWidget(m_name);
    layout->addWidget(buttons);

    const auto updateSave = [this] { m_save->setEnabled(!m_name->text().trimmed().isEmpty()); };
    connect(m_name, &QLineEdit::textChanged, this, updateSave);
    updateSave();
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (m_name->text().trimmed().isEmpty())
            return; // Return with no name does nothing; Esc still cancels
        accept();
        workspaceActions::save(*m_state, m_name->text());
    });
    setMinimumWidth(360);
}

void WorkspaceNamePrompt::follow(WindowState* state, QWidget* window)
{
    QObject::connect(state, &WindowState::workspaceNameRequested, window, [state, window] {
        auto* prompt = new WorkspaceNamePrompt(state, window);
        // The keyboard goes back to the window, also where no window manager hands it back.
        QObject::connect(prompt, &QDialog::finished, window, [window] { window->activateWindow(); });
        prompt->open();
        prompt->nameField()->setFocus();
    });
}

} // namespace orwick
