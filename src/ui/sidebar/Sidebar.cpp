#include "ui/sidebar/Sidebar.h"

#include "app/Services.h"
#include "places/Locations.h"
#include "servers/ServerMounts.h"
#include "places/SidebarStore.h"
#include "state/WindowState.h"
#include "ui/pane/PaneWidget.h"
#include "ui/shelf/ShelfButton.h"
#include "ui/sidebar/SidebarModel.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeApplier.h"

#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTimer>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orwick {

Sidebar::Sidebar(WindowState* window, SidebarStore* store, QWidget* parent)
    : QWidget(parent), m_window(window), m_store(store), m_locations(new Locations(this))
{
    setObjectName(QStringLiteral("sidebar"));
    m_model = new SidebarModel(store, m_locations, services().frecency, this);
    // A server just connected joins Locations now rather than at the next regular read.
    connect(store, &SidebarStore::serversChanged, m_locations, &Locations::refresh);
    m_view = new SidebarView(this);
    m_view->setModel(m_model);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 6, 0, 0);
    layout->addWidget(m_view);
    auto* shelf = new QHBoxLayout; // the shelf's entry, at the foot
    shelf->setContentsMargins(6, 2, 6, 4);
    shelf->addWidget(new ShelfButton(window, this));
    layout->addLayout(shelf);
    setAutoFillBackground(true);
    theme::whenChanged(this, [this] { // the sidebar's own ground, from each theme
        for (QWidget* widget : {static_cast<QWidget*>(this), static_cast<QWidget*>(m_view)}) {
            QPalette palette = widget->palette();
            palette.setColor(QPalette::Window, theme::sidebar());
            palette.setColor(QPalette::Base, theme::sidebar());
            palette.setColor(QPalette::Text, theme::text());
            widget->setPalette(palette);
        }
    });
    setMinimumWidth(140);

    connect(m_view, &SidebarView::rowActivated, this, &Sidebar::open);
    connect(m_view, &SidebarView::leaveRequested, this, &Sidebar::returnKeyboard);
    connect(m_view, &SidebarView::menuRequested, this, &Sidebar::showMenu);
    connect(m_view, &SidebarView::foldersDropped, this, &Sidebar::addDropped);
    connect(store, &SidebarStore::renamingChanged, this, [this] {
        QTimer::singleShot(0, this, &Sidebar::editRenamingGroup); // after the model shows the new group
    });
}

void Sidebar::takeFocus()
{
    if (m_view->hasFocus()) {
        returnKeyboard();
        return;
    }
    // A cursor nobody chose (focus passing through leaves it on the first title) starts over.
    const QModelIndex current = m_view->currentIndex();
    if ((!current.isValid() || !m_view->selectionModel()->isSelected(current)) && m_model->rowCount() > 1)
        m_view->setCurrentIndex(m_model->index(1));
    m_view->setFocus(Qt::ShortcutFocusReason);
}

void Sidebar::returnKeyboard()
{
    const QList<PaneWidget*> panes = window()->findChildren<PaneWidget*>();
    for (PaneWidget* widget : panes)
        if (widget->pane() == m_window->activePane() && widget->isVisible()) {
            widget->takeFocus();
            return;
        }
}

void Sidebar::editRenamingGroup()
{
    const int row = m_model->titleRow(m_store->renamingGroup());
    if (m_store->renamingGroup().isEmpty() || row < 0)
        return;
    m_store->setRenamingGroup({});
    if (!isVisible())
        m_window->setShowSidebar(true);
    m_view->setCurrentIndex(m_model->index(row));
    m_view->setFocus();
    m_view->edit(m_model->index(row));
}

void Sidebar::open(int index)
{
    using Kind = SidebarRow::Kind;
    const SidebarRow row = m_model->rowAt(index);
    PaneState* pane = m_window->activePane();
    switch (row.kind) {
    case Kind::title:
        m_store->setCollapsed(row.sectionId, !row.isCollapsed);
        QTimer::singleShot(0, this, [this, id = row.sectionId] {
            if (const int at = m_model->titleRow(id); at >= 0)
                m_view->setCurrentIndex(m_model->index(at));
        });
        return;
    case Kind::search:
        for (const SavedSearch& search : m_store->searches())
            if (search.id == row.itemId)
                pane->open(search);
        break;
    case Kind::thisComputer: pane->show(Listing::of(Listing::Kind::thisMac)); break;
    case Kind::trash: pane->show(Listing::of(Listing::Kind::trash)); break;
    case Kind::tag: pane->show(Listing::tag(row.tagName)); break;
    default:
        if (row.isMissing) {
            Q_EMIT messageRequested(QStringLiteral("“%1” can't be found").arg(row.path.abbreviated()));
            return;
        }
        pane->navigate(row.path);
    }
    returnKeyboard(); // to the place just opened
}

std::pair<qsizetype, qsizetype> Sidebar::placeAmongSiblings(const SidebarRow& row) const
{
    using Kind = SidebarRow::Kind;
    auto placeOf = [](const auto& list, auto matches) {
        const auto found = std::find_if(list.begin(), list.end(), matches);
        return std::pair<qsizetype, qsizetype>(found == list.end() ? -1 : found - list.begin(), list.size());
    };
    if (row.kind == Kind::title && m_store->group(row.sectionId))
        return placeOf(m_store->groups(), [&row](const SidebarGroup& g) { return g.id == row.sectionId; });
    if (row.kind == Kind::favorite)
        return placeOf(m_store->allFavorites(), [&row](const Place& p) { return p.url == row.path; });
    if (row.kind == Kind::groupItem)
        if (const SidebarGroup* group = m_store->group(row.sectionId))
            return placeOf(group->items, [&row](const SidebarItem& i) { return i.id == row.itemId; });
    if (row.kind == Kind::search)
        return placeOf(m_store->searches(), [&row](const SavedSearch& s) { return s.id == row.itemId; });
    return {-1, 0};
}

void Sidebar::showMenu(int index, const QPoint& globalPosition)
{
    using Kind = SidebarRow::Kind;
    const SidebarRow row = m_model->rowAt(index);
    const bool groupTitle = row.kind == Kind::title && m_store->group(row.sectionId);
    QMenu menu(this);
    auto rename = [this, index] { m_view->edit(m_model->index(index)); };
    auto move = [this, row, groupTitle](int by) {
        if (groupTitle)
            m_store->moveGroup(row.sectionId, by);
        else if (row.kind == Kind::favorite)
            m_store->moveFavorite(row.path, by);
        else if (row.kind == Kind::groupItem)
            m_store->moveItem(row.sectionId, row.itemId, by);
        else if (row.kind == Kind::search)
            m_store->moveSearch(row.itemId, by);
    };
    if (row.kind == Kind::title)
        menu.addAction(row.isCollapsed ? QStringLiteral("Unfold") : QStringLiteral("Fold"), this, [this, index] { open(index); });
    if (m_model->flags(m_model->index(index)) & Qt::ItemIsEditable) {
        menu.addAction(QStringLiteral("Rename"), this, rename);
        if (groupTitle)
            menu.addAction(QStringLiteral("Delete Group"), this, [this, row] { m_store->removeGroup(row.sectionId); });
        else if (row.kind == Kind::favorite)
            menu.addAction(QStringLiteral("Remove from Sidebar"), this, [this, row] { m_store->removeFavorite(row.path); });
        else if (row.kind == Kind::groupItem)
            menu.addAction(QStringLiteral("Remove from Group"), this, [this, row] { m_store->removeItem(row.sectionId, row.itemId); });
        else if (row.kind == Kind::search)
            menu.addAction(QStringLiteral("Remove"), this, [this, row] { m_store->removeSearch(row.itemId); });
        // Offered where there is somewhere to move: among two or more, and not past either end.
        if (const auto [at, count] = placeAmongSiblings(row); at >= 0 && count > 1) {
            menu.addSeparator();
            menu.addAction(QStringLiteral("Move Up"), this, [move] { move(-1); })->setEnabled(at > 0);
            menu.addAction(QStringLiteral("Move Down"), this, [move] { move(1); })->setEnabled(at < count - 1);
        }
    }
    if (row.kind == Kind::drive && row.isEjectable)
        menu.addAction(QStringLiteral("Eject"), this, [this, row] { eject(row); });
    if (row.isFolder() && row.kind != Kind::favorite && !m_store->isFavorite(row.path))
        menu.addAction(QStringLiteral("Add to Favorites"), this, [this, row] { m_store->addFavorite(row.path); });
    if (!menu.isEmpty())
        menu.exec(globalPosition);
}

void Sidebar::addDropped(const QList<FilePath>& folders, int index)
{
    const QString groupId = index >= 0 ? m_model->rowAt(index).sectionId : QString();
    if (m_store->group(groupId)) {
        m_store->addToGroup(folders, groupId);
        return;
    }
    for (const FilePath& folder : folders)
        m_store->addFavorite(folder);
}

void Sidebar::eject(const SidebarRow& row)
{
    if (ServerMounts::isServerPath(row.path)) { // a connected server: gvfs unmounts it
        ServerMounts::unmount(this, row.path, [this, name = row.name](const Status& done) {
            if (done)
                Q_EMIT messageRequested(QStringLiteral("Disconnected “%1”").arg(name));
            else
                Q_EMIT messageRequested(QStringLiteral("Couldn't disconnect “%1”: %2").arg(name, done.error()));
            m_locations->refresh();
        });
        return;
    }
    // gio unmounts and powers off what the desktop mounted; udisksctl is the fallback. Both
    // run as processes, so the window never waits on them.
    auto* process = new QProcess(this);
    if (!QStandardPaths::findExecutable(QStringLiteral("gio")).isEmpty())
        process->start(QStringLiteral("gio"), {QStringLiteral("mount"), QStringLiteral("-e"), row.path.text()});
    else
        process->start(QStringLiteral("udisksctl"), {QStringLiteral("unmount"), QStringLiteral("-b"), QString::fromUtf8(QStorageInfo(row.path.text()).device())});
    const QString name = row.name;
    auto fail = [this, process, name](const QString& why) {
        Q_EMIT messageRequested(QStringLiteral("Couldn't eject “%1”: %2").arg(name, why));
        process->deleteLater();
    };
    connect(process, &QProcess::errorOccurred, this, [process, fail](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail(QStringLiteral("neither gio nor udisksctl could be started"));
        (void)process;
    });
    connect(process, &QProcess::finished, this, [this, process, fail](int code, QProcess::ExitStatus status) {
        if (status != QProcess::NormalExit || code != 0) {
            const QString why = QString::fromLocal8Bit(process->readAllStandardError()).trimmed();
            fail(why.isEmpty() ? QStringLiteral("it is in use") : why);
            return;
        }
        m_locations->refresh();
        process->deleteLater();
    });
}

} // namespace orwick
