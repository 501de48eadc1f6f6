#include "ui/panels/FolderComparisonView.h"

#include "commands/ViewKeys.h"
#include "fileops/FileOperations.h"
#include "platform/DirectoryReader.h"
#include "state/WindowState.h"
#include "ui/fileops/DialogFocus.h"
#include "ui/panels/FocusRing.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orwick {

namespace {

constexpr int kPathRole = Qt::UserRole + 1;

QString statusText(FolderDiff::Status status)
{
    switch (status) {
    case FolderDiff::Status::onlyLeft: return QStringLiteral("Only left");
    case FolderDiff::Status::onlyRight: return QStringLiteral("Only right");
    case FolderDiff::Status::changed: return QStringLiteral("Changed");
    case FolderDiff::Status::same: return QStringLiteral("Same");
    }
    return {};
}

QColor statusColor(FolderDiff::Status status)
{
    switch (status) {
    case FolderDiff::Status::onlyLeft: return theme::informative();
    case FolderDiff::Status::onlyRight: return theme::positive();
    case FolderDiff::Status::changed: return theme::warning();
    case FolderDiff::Status::same: return theme::dimText();
    }
    return {};
}

std::optional<qint64> modifiedTime(const FilePath& path)
{
    const auto st = statPath(path);
    return st ? std::optional<qint64>(st->modifiedNs) : std::nullopt;
}

} // namespace

FolderComparisonView::FolderComparisonView(WindowState& state, const FilePath& left, const FilePath& right, QWidget* parent)
    : QWidget(parent), m_state(state), m_left(left), m_right(right), m_problem(FolderDiff::problemWith(left, right))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* row = new QHBoxLayout;
    m_heading = new QLabel(this);
    QFont bold = m_heading->font();
    bold.setBold(true);
    m_heading->setFont(bold);
    m_filterBox = new QComboBox(this);
    m_filterBox->addItem(QStringLiteral("Differences"), QStringLiteral("differences"));
    for (FolderDiff::Status status : FolderDiff::kStatuses)
        m_filterBox->addItem(statusText(status), FolderDiff::rawValue(status));
    m_filterBox->setFocusPolicy(Qt::StrongFocus);
    m_filterBox->installEventFilter(this);
    connect(m_filterBox, &QComboBox::activated, this, [this](int index) {
        setFilter(index == 0 ? std::nullopt : std::optional(FolderDiff::kStatuses[index - 1]));
    });
    m_syncButton = new QToolButton(this);
    m_syncButton->setText(QStringLiteral("Sync"));
    m_syncButton->setPopupMode(QToolButton::InstantPopup);
    m_syncButton->setFocusPolicy(Qt::StrongFocus);
    m_syncButton->installEventFilter(this);
    auto* menu = new QMenu(m_syncButton);
    for (FolderDiff::SyncMode mode : {FolderDiff::SyncMode::copyMissing(true), FolderDiff::SyncMode::copyMissing(false),
                                      FolderDiff::SyncMode::bothWays(), FolderDiff::SyncMode::mirror(true),
                                      FolderDiff::SyncMode::mirror(false)}) {
        QString text = FolderDiff::syncTitle(mode, m_left, m_right);
        if (mode.kind == FolderDiff::SyncMode::Kind::mirror) {
            // A mirror goes one way or the other: the entry names the source and the target.
            const FilePath& source = mode.toRight ? m_left : m_right;
            const FilePath& target = mode.toRight ? m_right : m_left;
            text += QStringLiteral(": “%1” → “%2”").arg(source.fileName(), target.fileName());
            QAction* action = menu->addAction(text, this, [this, mode] { sync(mode); });
            action->setToolTip(QStringLiteral("Makes “%1” the same as “%2”").arg(target.fileName(), source.fileName()));
        } else {
            menu->addAction(text, this, [this, mode] { sync(mode); });
        }
    }
    menu->setToolTipsVisible(true);
    m_syncButton->setMenu(menu);
    row->addWidget(m_heading, 1);
    row->addWidget(m_filterBox);
    row->addWidget(m_syncButton);
    layout->addLayout(row);

    m_stack = new QStackedWidget(this);
    m_placeholder = new QLabel(this);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->setWordWrap(true);
    m_list = new QTreeWidget(this);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setColumnCount(3);
    m_list->setHeaderLabels({QStringLiteral("Status"), QStringLiteral("Path"), QStringLiteral("Size")});
    m_list->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_list->header()->setStretchLastSection(false);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->installEventFilter(this);
    connect(m_list, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        openPair(item->data(0, kPathRole).toByteArray());
    });
    connect(m_list, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        QTreeWidgetItem* item = m_list->itemAt(at);
        if (!item)
            return;
        const QByteArray path = item->data(0, kPathRole).toByteArray();
        QMenu menu(this);
        QAction* versions = menu.addAction(QStringLiteral("Compare the two versions"), this, [this, path] { openPair(path); });
        versions->setEnabled(item->text(0) == statusText(FolderDiff::Status::changed));
        menu.exec(m_list->viewport()->mapToGlobal(at));
    });
    m_stack->addWidget(m_placeholder);
    m_stack->addWidget(m_list);
    layout->addWidget(m_stack, 1);
    // The view holds the keyboard itself while "Comparing…" shows, so it never stays in the pane
    // under the sheet; the list takes it over when it shows (fill, focusInEvent).
    setFocusPolicy(Qt::StrongFocus);
    installEventFilter(this);
    watchUndo();
    compareAgain();
}

FolderComparisonView::~FolderComparisonView() { stop(); }

void FolderComparisonView::stop() { m_task.cancel(); }

void FolderComparisonView::watchUndo()
{
    // A sync, or its undo or redo, changes both folders: look again once the engine is idle.
    connect(m_state.undoStack(), &QUndoStack::indexChanged, this, [this] { m_replayPending = true; });
    FileOperations* operations = &FileOperations::shared();
    connect(operations, &FileOperations::operationFinished, this, [this, operations] {
        if (m_replayPending && operations->isIdle()) {
            m_replayPending = false;
            compareAgain();
        }
    });
}

void FolderComparisonView::compareAgain()
{
    ++m_revision;
    m_syncButton->setEnabled(false);
    if (m_problem) {
        m_placeholder->setText(*m_problem);
        m_stack->setCurrentWidget(m_placeholder);
        m_heading->setText(QString());
        Q_EMIT footerChanged(QString());
        return;
    }
    const TaskSlot::Ticket ticket = m_task.start();
    if (!m_result) {
        m_placeholder->setText(QStringLiteral("Comparing…"));
        m_stack->setCurrentWidget(m_placeholder);
    }
    Q_EMIT footerChanged(QStringLiteral("Comparing…"));
    runInBackground(this, [left = m_left, right = m_right, token = ticket.token] {
        return FolderDiff::compare(left, right, FolderDiff::kPanelLimit, *token);
    }, [this, ticket](FolderDiff::Result result) {
        if (!m_task.isCurrent(ticket))
            return;
        m_task.finish(ticket);
        m_result = std::move(result);
        fill();
        Q_EMIT compared();
    });
}

QList<QAction*> FolderComparisonView::syncActions() const { return m_syncButton->menu()->actions(); }

QString FolderComparisonView::heading() const
{
    return m_result ? FolderDiff::summary(*m_result) + FolderDiff::partialNote(*m_result) : QString();
}

void FolderComparisonView::setFilter(std::optional<FolderDiff::Status> filter)
{
    m_filter = filter;
    m_filterBox->setCurrentIndex(filter ? int(*filter) + 1 : 0);
    fill();
}

void FolderComparisonView::fill()
{
    if (!m_result)
        return;
    m_heading->setText(heading());
    m_syncButton->setEnabled(m_result->hasDifferences());
    const QByteArray current = m_list->currentItem() ? m_list->currentItem()->data(0, kPathRole).toByteArray() : QByteArray();
    m_list->clear();
    QList<QTreeWidgetItem*> items;
    QTreeWidgetItem* toSelect = nullptr;
    for (const FolderDiff::Entry& entry : m_result->entries) {
        const bool shown = m_filter ? entry.status == *m_filter : entry.status != FolderDiff::Status::same;
        if (!shown)
            continue;
        auto* item = new QTreeWidgetItem;
        item->setText(0, statusText(entry.status));
        item->setForeground(0, statusColor(entry.status));
        item->setText(1, entry.pathText() + (entry.isFolder ? QStringLiteral("/") : QString()));
        item->setText(2, FolderDiff::entryDetail(entry));
        item->setData(0, kPathRole, entry.path);
        if (entry.status == FolderDiff::Status::changed && !entry.isFolder)
            item->setToolTip(1, QStringLiteral("Return: Compare the two versions"));
        if (entry.path == current)
            toSelect = item;
        items.append(item);
    }
    m_list->addTopLevelItems(items);
    if (!toSelect && !items.isEmpty())
        toSelect = items.first();
    if (toSelect)
        m_list->setCurrentItem(toSelect);
    // The list takes the keyboard when it first shows, unless the user went to the filter or Sync.
    const QWidget* focus = QApplication::focusWidget();
    const bool listTakesKeys = isVisible() && (!focus || focus == this || focus == parentWidget() || focus == m_list);
    if (items.isEmpty()) {
        m_placeholder->setText(m_result->hasDifferences() || m_filter ? QStringLiteral("Nothing to show with this filter")
                                                                      : FolderDiff::summary(*m_result));
        m_stack->setCurrentWidget(m_placeholder);
    } else {
        m_stack->setCurrentWidget(m_list);
        if (listTakesKeys)
            m_list->setFocus(Qt::OtherFocusReason);
    }
    Q_EMIT footerChanged(QStringLiteral("%1 same · Return compares a changed pair · S: Sync brings the folders into line · Esc closes")
                             .arg(m_result->count(FolderDiff::Status::same)));
}

void FolderComparisonView::openPair(const QByteArray& path)
{
    if (!m_result)
        return;
    for (const FolderDiff::Entry& entry : m_result->entries)
        if (entry.path == path && entry.status == FolderDiff::Status::changed && !entry.isFolder)
            Q_EMIT pairOpened(m_left.child(QByteArrayView(path)), m_right.child(QByteArrayView(path)));
}

void FolderComparisonView::sync(FolderDiff::SyncMode mode, bool confirmed)
{
    if (!m_result || m_task.isRunning())
        return;
    const FolderDiff::SyncPlan plan = FolderDiff::plan(*m_result, m_left, m_right, mode, modifiedTime);
    if (plan.isEmpty()) {
        Q_EMIT footerChanged(QStringLiteral("Nothing to do for “%1”").arg(FolderDiff::syncTitle(mode, m_left, m_right)));
        return;
    }
    const QString title = FolderDiff::syncTitle(mode, m_left, m_right);
    if (confirmed)
        return runSync(plan, title);
    // The question hands the keyboard back to the view when it closes, however it closes.
    if (!isAncestorOf(QApplication::focusWidget()))
        m_list->setFocus(Qt::OtherFocusReason);
    auto* ask = new QMessageBox(QMessageBox::Question, title, FolderDiff::confirmation(mode, plan, m_left, m_right),
                                QMessageBox::Cancel, this);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* go = ask->addButton(QStringLiteral("Sync"), QMessageBox::AcceptRole);
    ask->setDefaultButton(QMessageBox::Cancel);
    connect(ask, &QMessageBox::finished, this, [this, ask, go, plan, title] {
        if (ask->clickedButton() == go)
            runSync(plan, title);
    });
    returnKeyboardWhenClosed(ask);
    ask->open();
}

void FolderComparisonView::runSync(const FolderDiff::SyncPlan& plan, const QString& title)
{
    m_replayPending = true; // compare again once the step has run
    FileOperations::shared().sync(plan.copies, plan.replacing, plan.toTrash, title, m_state.undoStack());
}

void FolderComparisonView::showSyncChoices()
{
    if (m_syncButton->isEnabled() && m_syncButton->isVisible())
        m_syncButton->showMenu();
}

void FolderComparisonView::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    if (m_stack->currentWidget() == m_list)
        m_list->setFocus(event->reason());
}

bool FolderComparisonView::focusNextPrevChild(bool next)
{
    return moveAroundFocusRing({m_list, m_filterBox, m_syncButton}, next) || QWidget::focusNextPrevChild(next);
}

bool FolderComparisonView::eventFilter(QObject* watched, QEvent* event)
{
    const bool ownPart = watched == this || watched == m_list || watched == m_filterBox || watched == m_syncButton;
    if (!ownPart || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const QKeyCombination pressed = static_cast<QKeyEvent*>(event)->keyCombination();
    // S before the list's or the filter's own type-to-find, which would take it as a letter.
    if (ViewKeys::matches(ViewKeyAction::compareSync, pressed)) {
        showSyncChoices();
        return true;
    }
    if (watched == m_list && ViewKeys::matches(ViewKeyAction::compareOpenPair, pressed) && m_list->currentItem()) {
        openPair(m_list->currentItem()->data(0, kPathRole).toByteArray());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace orwick
