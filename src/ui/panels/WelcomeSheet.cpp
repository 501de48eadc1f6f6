#include "ui/panels/WelcomeSheet.h"

#include "commands/CommandCatalog.h"
#include "state/WindowState.h"

#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {

namespace {
constexpr int kColumnWidth = 560; // one readable column in the middle of the content area

QLabel* wrapped(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}
} // namespace

const QStringList& WelcomeSheet::keyCommands()
{
    static const QStringList ids{QStringLiteral("palette"),     QStringLiteral("dualPane"),    QStringLiteral("nextPane"),
                                 QStringLiteral("copyToOther"), QStringLiteral("moveToOther"), QStringLiteral("newTab"),
                                 QStringLiteral("undo"),        QStringLiteral("keyboardShortcuts"), QStringLiteral("guide")};
    return ids;
}

QString WelcomeSheet::workspaceHint()
{
    return QStringLiteral("Open one from the palette (Ctrl+K, then “Workspace”). Save the window's tabs with “Save Workspace…”.");
}

WelcomeSheet::WelcomeSheet(WindowState& state, QWidget* window)
    : PanelSheet(QStringLiteral("Welcome to Orwick"), QStringLiteral("a file manager for the keyboard"), window), m_state(state)
{
    auto* column = new QWidget(this);
    column->setMaximumWidth(kColumnWidth);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 24, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(wrapped(QStringLiteral("Everything in Orwick is a command, and most commands have a key. These are the ones to start with:"), column));

    auto* keys = new QGridLayout;
    keys->setHorizontalSpacing(24);
    keys->setVerticalSpacing(6);
    int row = 0;
    for (const QString& id : keyCommands()) {
        const AppCommand* command = CommandCatalog::find(id);
        if (!command || command->shortcut.isEmpty())
            continue;
        auto* key = new QLabel(command->shortcutText(), column);
        QFont bold = key->font();
        bold.setBold(true);
        key->setFont(bold);
        key->setTextFormat(Qt::PlainText);
        keys->addWidget(key, row, 0, Qt::AlignRight);
        auto* title = new QLabel(command->title, column);
        title->setTextFormat(Qt::PlainText);
        keys->addWidget(title, row, 1);
        ++row;
    }
    keys->setColumnStretch(1, 1);
    layout->addLayout(keys);

    auto* workspaces = new QLabel(QStringLiteral("Workspaces"), column);
    QFont bold = workspaces->font();
    bold.setBold(true);
    workspaces->setFont(bold);
    layout->addSpacing(8);
    layout->addWidget(workspaces);
    layout->addWidget(wrapped(workspaceHint(), column));

    m_guide = new QPushButton(QStringLiteral("Open the Orwick Guide"), column);
    m_guide->setDefault(true);
    m_guide->setAutoDefault(true);
    layout->addSpacing(8);
    layout->addWidget(m_guide, 0, Qt::AlignLeft);
    layout->addStretch(1);

    auto* centred = new QHBoxLayout;
    centred->addStretch(1);
    centred->addWidget(column, 4);
    centred->addStretch(1);
    body()->addLayout(centred, 1);
    setFooter(QStringLiteral("Return opens the guide · Esc closes · Help › Welcome to Orwick shows this again"));

    // The guide takes the sheet's place: the window's one sheet closes as the guide opens.
    connect(m_guide, &QPushButton::clicked, this, [this] { CommandCatalog::run(QStringLiteral("guide"), m_state); });
    connect(this, &PanelSheet::closed, this, [this] { m_state.setWelcoming(false); });
    present(m_guide);
}

void WelcomeSheet::follow(WindowState& state, QMainWindow* window)
{
    QObject::connect(&state, &WindowState::welcomingChanged, window, [&state, window] {
        WelcomeSheet* open = nullptr;
        for (WelcomeSheet* sheet : window->findChildren<WelcomeSheet*>(Qt::FindDirectChildrenOnly))
            if (!sheet->isHidden())
                open = sheet;
        if (!state.isWelcoming()) {
            if (open)
                open->closeSheet();
        } else if (!open) {
            PanelSheet::closeOpenSheet(window);
            new WelcomeSheet(state, window);
        }
    });
}

} // namespace orwick
