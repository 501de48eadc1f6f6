#include "ui/panels/ShortcutsSheet.h"

#include "base/TextMatch.h"
#include "commands/CommandCatalog.h"
#include "commands/CommandGroups.h"
#include "commands/ViewKeys.h"
#include "state/WindowState.h"
#include "ui/text/LiteralText.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace orwick {
namespace {

enum Role { IdRole = Qt::UserRole, SearchRole, ViewRole };

// A row the keys move to: a command's, or a view key's (which names its view instead of an id).
bool isKeyRow(const QTreeWidgetItem* item) { return !item->data(0, IdRole).toString().isEmpty() || item->data(0, ViewRole).isValid(); }

QString keyText(const QKeySequence& key)
{
    // Shift+Tab arrives as Backtab, the key a command binds; people call it Tab.
    return key.toString(QKeySequence::NativeText).replace(QStringLiteral("Backtab"), QStringLiteral("Tab"));
}

} // namespace

QString ShortcutsSheet::keysText(const AppCommand& command)
{
    QStringList keys;
    if (!command.shortcut.isEmpty())
        keys.append(keyText(command.shortcut));
    for (const QKeySequence& key : command.otherShortcuts + command.paneShortcuts)
        keys.append(keyText(key));
    return keys.join(QStringLiteral("  or  "));
}

ShortcutsSheet::ShortcutsSheet(WindowState& state, QWidget* window)
    : PanelSheet(QStringLiteral("Keyboard Shortcuts"), QStringLiteral("every command and each view’s keys"), window), m_state(state)
{
    m_filter = new QLineEdit(this);
    m_filter->setPlaceholderText(QStringLiteral("Filter commands and keys"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_list = new QTreeWidget(this);
    m_list->setColumnCount(2);
    m_list->setHeaderHidden(true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setFocusPolicy(Qt::NoFocus); // the keys stay in the filter field; Up and Down reach the list
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    body()->addWidget(m_filter);
    body()->addWidget(m_list, 1);
    fill();
    connect(m_filter, &QLineEdit::textChanged, this, &ShortcutsSheet::applyFilter);
    connect(m_list, &QTreeWidget::itemActivated, this, [this] { runCurrent(); });
    applyFilter(QString());
    present(m_filter);
}

void ShortcutsSheet::fill()
{
    QStringList titles;
    const QList<QList<AppCommand>> placed = CommandGroups::grouped(CommandCatalog::all(m_state), &titles);
    QFont bold = m_list->font();
    bold.setBold(true);
    for (qsizetype g = 0; g < placed.size(); ++g) {
        if (placed[g].isEmpty())
            continue;
        auto* heading = new QTreeWidgetItem(m_list, {titles[g]});
        heading->setFont(0, bold);
        heading->setFlags(Qt::ItemIsEnabled);
        heading->setFirstColumnSpanned(true);
        for (const AppCommand& command : placed[g]) {
            const QString keys = keysText(command);
            auto* row = new QTreeWidgetItem(m_list, {literalText(command.title), keys});
            row->setData(0, IdRole, command.id);
            row->setData(0, SearchRole, foldForSearch(command.searchText() + u' ' + keys));
            row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
            const bool canRun = command.id == QLatin1StringView("undo") || command.id == QLatin1StringView("redo") || command.enabledIn(m_state);
            if (!canRun && !command.disabledNote.isEmpty()) {
                row->setForeground(0, palette().brush(QPalette::PlaceholderText));
                row->setToolTip(0, command.disabledNote);
            }
        }
    }
    // Then the keys each view keeps for itself, under the view's name.
    for (const ViewKeySection& section : ViewKeys::all()) {
        auto* heading = new QTreeWidgetItem(m_list, {section.title});
        heading->setFont(0, bold);
        heading->setFlags(Qt::ItemIsEnabled);
        heading->setFirstColumnSpanned(true);
        for (const ViewKey& key : section.keys) {
            const QString keys = ViewKeys::chordsText(key);
            auto* row = new QTreeWidgetItem(m_list, {key.does, keys});
            row->setData(0, ViewRole, section.title);
            row->setData(0, SearchRole, foldForSearch(section.title + u' ' + key.does + u' ' + keys));
            row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
            if (!key.takesFromWindow.isEmpty())
                row->setToolTip(0, key.takesFromWindow);
        }
    }
}

void ShortcutsSheet::applyFilter(const QString& text)
{
    const QString typed = text.trimmed();
    const QStringList words = foldForSearch(typed).split(u' ', Qt::SkipEmptyParts);
    QTreeWidgetItem* heading = nullptr;
    bool headingHasRows = false;
    const auto closeHeading = [&] {
        if (heading)
            heading->setHidden(!headingHasRows);
    };
    int shown = 0;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = m_list->topLevelItem(i);
        if (!isKeyRow(item)) {
            closeHeading();
            heading = item;
            headingHasRows = false;
            continue;
        }
        const QString searchable = item->data(0, SearchRole).toString();
        const bool keep = std::all_of(words.cbegin(), words.cend(), [&](const QString& word) { return searchable.contains(word); });
        item->setHidden(!keep);
        headingHasRows = headingHasRows || keep;
        shown += keep ? 1 : 0;
    }
    closeHeading();
    m_list->setCurrentItem(nullptr);
    moveCurrent(1);
    m_list->scrollToTop(); // the first heading shows above the first row
    setFooter(shown == 0 ? QStringLiteral("No command or key matches “%1”").arg(typed)
                         : QStringLiteral("%1 keys · ↑↓ choose · Return runs · Esc closes").arg(shown));
}

int ShortcutsSheet::shownCount() const
{
    int shown = 0;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = m_list->topLevelItem(i);
        shown += !item->isHidden() && isKeyRow(item) ? 1 : 0;
    }
    return shown;
}

void ShortcutsSheet::moveCurrent(int step)
{
    const int count = m_list->topLevelItemCount();
    int at = m_list->currentItem() ? m_list->indexOfTopLevelItem(m_list->currentItem()) : (step > 0 ? -1 : count);
    for (int i = at + step; i >= 0 && i < count; i += step) {
        QTreeWidgetItem* item = m_list->topLevelItem(i);
        if (!item->isHidden() && isKeyRow(item)) {
            m_list->setCurrentItem(item);
            m_list->scrollToItem(item);
            return;
        }
    }
}

void ShortcutsSheet::runCurrent()
{
    const QTreeWidgetItem* item = m_list->currentItem();
    if (item && item->data(0, ViewRole).isValid()) { // a view's key works in its view only
        setFooter(QStringLiteral("%1: press %2 in %3").arg(item->text(0), item->text(1), item->data(0, ViewRole).toString()));
        return;
    }
    const QString id = item ? item->data(0, IdRole).toString() : QString();
    if (id.isEmpty())
        return;
    if (id == QLatin1StringView("undo") || id == QLatin1StringView("redo")) {
        closeSheet();
        id == QLatin1StringView("undo") ? m_state.undoStack()->undo() : m_state.undoStack()->redo();
        return;
    }
    const AppCommand* command = CommandCatalog::find(id);
    if (!command)
        return;
    if (!command->enabledIn(m_state)) {
        setFooter(command->title + QStringLiteral(": ")
                  + (command->disabledNote.isEmpty() ? QStringLiteral("not available here") : command->disabledNote));
        return;
    }
    WindowState& state = m_state;
    closeSheet(); // the keyboard goes back to the pane before the command runs
    CommandCatalog::run(id, state);
}

bool ShortcutsSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        switch (key->key()) {
        case Qt::Key_Down: moveCurrent(1); return true;
        case Qt::Key_Up: moveCurrent(-1); return true;
        case Qt::Key_PageDown:
            for (int i = 0; i < 10; ++i)
                moveCurrent(1);
            return true;
        case Qt::Key_PageUp:
            for (int i = 0; i < 10; ++i)
                moveCurrent(-1);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter: runCurrent(); return true;
        case Qt::Key_Escape:
            if (!m_filter->text().isEmpty()) {
                m_filter->clear(); // the first Esc clears the filter, the next closes
                return true;
            }
            closeSheet();
            return true;
        default: break;
        }
    }
    return PanelSheet::eventFilter(watched, event);
}

void ShortcutsSheet::follow(WindowState& state, QMainWindow* window)
{
    QObject::connect(&state, &WindowState::shortcutsRequested, window, [&state, window] {
        for (ShortcutsSheet* open : window->findChildren<ShortcutsSheet*>(Qt::FindDirectChildrenOnly))
            if (!open->isHidden()) {
                open->filterField()->clear();
                open->filterField()->setFocus();
                return;
            }
        PanelSheet::closeOpenSheet(window);
        new ShortcutsSheet(state, window);
    });
}

} // namespace orwick
