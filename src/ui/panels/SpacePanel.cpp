#include "ui/panels/SpacePanel.h"

#include "commands/ViewKeys.h"
#include "disktools/DiskNames.h"
#include "platform/XdgPaths.h"
#include "state/PaneState.h"
#include "ui/panels/DrivesBreakdownView.h"
#include "ui/panels/PanelTrash.h"
#include "ui/panels/TreemapWidget.h"
#include "ui/theme/Theme.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace orwick {

SpacePanel::SpacePanel(PaneState* pane, QWidget* window)
    : PanelSheet(QStringLiteral("Space Used"), pane->url().abbreviated(), window), m_pane(pane)
{
    m_drivesButton = new QPushButton(QStringLiteral("Drives"), this);
    m_drivesButton->setCheckable(true);
    m_drivesButton->setToolTip(QStringLiteral("What's using space on the drives"));
    connect(m_drivesButton, &QPushButton::toggled, this, &SpacePanel::showDrives);
    tools()->addWidget(m_drivesButton);

    m_stack = new QStackedWidget(this);
    m_placeholder = new QLabel(this);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_mapPage = new QWidget(this);
    auto* mapLayout = new QVBoxLayout(m_mapPage);
    mapLayout->setContentsMargins(0, 0, 0, 0);
    m_where = new QLabel(m_mapPage);
    m_hover = new QLabel(m_mapPage);
    m_hover->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
    m_map = new TreemapWidget(m_mapPage);
    mapLayout->addWidget(m_where);
    mapLayout->addWidget(m_map, 1);
    mapLayout->addWidget(m_hover);
    connect(m_map, &TreemapWidget::hovered, m_hover, &QLabel::setText);
    connect(m_map, &TreemapWidget::clicked, this, &SpacePanel::open);
    connect(m_map, &TreemapWidget::menuRequested, this, &SpacePanel::offerMenu);
    connect(m_map, &TreemapWidget::trashRequested, this, &SpacePanel::trashNode);
    m_stack->addWidget(m_placeholder);
    m_stack->addWidget(m_mapPage);
    body()->addWidget(m_stack);

    m_ticker = new QTimer(this);
    m_ticker->setInterval(100);
    connect(m_ticker, &QTimer::timeout, this, [this] {
        if (m_shared)
            m_placeholder->setText(QStringLiteral("Measuring %1…\n%2 items")
                                       .arg(m_folder.abbreviated(), QLocale().toString(m_shared->scanned.load())));
    });
    scan(pane->url());
    present();
}

SpacePanel::~SpacePanel() { stopWork(); }

void SpacePanel::stopWork()
{
    m_task.cancel();
    if (m_drives)
        m_drives->stop();
    m_ticker->stop();
}

void SpacePanel::scan(const FilePath& folder, const std::optional<FilePath>& showing)
{
    const TaskSlot::Ticket ticket = m_task.start();
    m_folder = folder;
    m_root.reset();
    m_current = nullptr;
    m_map->setNode(nullptr);
    // The shared record lives as long as the worker that counts into it.
    m_shared = std::make_shared<SpaceScan::Shared>(*ticket.token);
    m_stack->setCurrentWidget(m_placeholder);
    setFooter(QStringLiteral("Measuring by allocated space; links to other places are not followed."));
    m_ticker->start();
    // The token rides along so the flag the shared record reads outlives the worker.
    runInBackground(this, [folder, shared = m_shared, token = ticket.token] {
        return SpaceScan::scan(folder, *shared);
    }, [this, ticket, showing](std::unique_ptr<SpaceNode> root) {
        if (!m_task.isCurrent(ticket) || !root)
            return;
        m_task.finish(ticket);
        m_ticker->stop();
        m_root = std::move(root);
        m_current = m_root.get();
        m_items = m_shared->scanned.load();
        // Back to the folder shown before, as far down as it still exists.
        for (bool deeper = showing.has_value(); deeper;) {
            deeper = false;
            for (const auto& child : m_current->children) {
                if (child->isFolder && child->url().contains(*showing)) {
                    m_current = child.get();
                    deeper = true;
                    break;
                }
            }
        }
        ++m_revision;
        showCurrent();
    });
}

void SpacePanel::showCurrent()
{
    if (!m_current)
        return;
    m_stack->setCurrentWidget(m_mapPage);
    m_map->setNode(m_current);
    QString where = m_current->url().abbreviated() + QStringLiteral(" — ") + byteCountText(m_current->size);
    if (m_current->links == 1)
        where += QStringLiteral(" · 1 link to somewhere else");
    else if (m_current->links > 1)
        where += QStringLiteral(" · %1 links to somewhere else").arg(m_current->links);
    m_where->setText(where);
    setFooter(QStringLiteral("%1 in %2 · %3 items · arrows choose, Return or a click goes in, Backspace goes out, Delete trashes")
                  .arg(byteCountText(m_root->size), m_folder.abbreviated(), QLocale().toString(m_items)));
    m_map->setFocus();
}

void SpacePanel::goIn(SpaceNode* node)
{
    if (node && node->isFolder) {
        m_current = node;
        showCurrent();
    }
}

void SpacePanel::goOut()
{
    if (m_current && m_current->parent) {
        m_current = m_current->parent;
        showCurrent();
    }
}

void SpacePanel::open(SpaceNode* node)
{
    if (node->isFolder && !node->isPackage) {
        goIn(node);
        return;
    }
    m_pane->reveal({node->url()});
}

void SpacePanel::offerMenu(SpaceNode* node, const QPoint& at)
{
    QMenu menu(this);
    QAction* trash = menu.addAction(QStringLiteral("Move to Trash (Ctrl+Z puts it back)"));
    trash->setEnabled(!m_trashing);
    menu.addAction(QStringLiteral("Show in Its Folder"), this, [this, node] {
        m_pane->reveal({node->url()});
        closeSheet();
    });
    if (menu.exec(at) == trash)
        trashNode(node);
}

void SpacePanel::trashNode(SpaceNode* node)
{
    if (!node) {
        // The walk keeps only the total of the small files, not which ones they are.
        Q_EMIT m_pane->messageRequested(QStringLiteral("The files under 1 MB are measured together, not one by one: "
                                                       "to move them to the Trash, select them in their folder"));
        return;
    }
    if (!node->parent || m_trashing)
        return;
    m_trashing = true;
    trashForPanel(this, {node->url()}, QStringLiteral("Move to Trash"),
                  [this, root = m_root.get(), node](const std::vector<FilePath>& moved) {
                      m_trashing = false;
                      // A new scan meanwhile has the change already; the old tree is gone.
                      if (moved.empty() || m_root.get() != root)
                          return;
                      // Nodes leave only here, one step at a time, so `node` is still in the tree.
                      for (const SpaceNode* at = m_current; at; at = at->parent)
                          if (at == node)
                              m_current = node->parent;
                      m_items -= node->entryCount();
                      node->parent->remove(node);
                      ++m_revision;
                      showCurrent();
                  },
                  [this] { scan(m_folder, m_current ? std::optional(m_current->url()) : std::nullopt); });
}

void SpacePanel::showDrives(bool drives)
{
    if (!drives) {
        if (m_current) {
            showCurrent(); // the map, with its footer and the keyboard back
        } else {
            m_stack->setCurrentWidget(m_placeholder);
            setFooter(m_footerBeforeDrives);
        }
        return;
    }
    // The map's keys do nothing on the drives: the footer says what this page is instead.
    if (m_stack->currentWidget() != m_drives)
        m_footerBeforeDrives = footer();
    setFooter(QStringLiteral("The drives and what fills Home · Drives again shows the map"));
    if (!m_drives) {
        m_drives = new DrivesBreakdownView(this);
        connect(m_drives, &DrivesBreakdownView::mapHomeRequested, this, [this] {
            m_drivesButton->setChecked(false);
            scan(xdg::home());
        });
        m_stack->addWidget(m_drives);
    }
    m_stack->setCurrentWidget(m_drives);
}

void SpacePanel::keyPressEvent(QKeyEvent* event)
{
    if (ViewKeys::matches(ViewKeyAction::spaceOut, event->keyCombination()) && m_stack->currentWidget() == m_mapPage) {
        goOut();
        return;
    }
    PanelSheet::keyPressEvent(event);
}

} // namespace orwick
