#include "ui/window/TabBarDrops.h"

#include "fileops/FileClipboard.h"
#include "state/FileActions.h"
#include "state/WindowState.h"

#include <QDropEvent>
#include <QTabBar>

namespace orwick {

TabBarDrops::TabBarDrops(QTabBar* tabBar, WindowState* state) : QObject(tabBar), m_tabBar(tabBar), m_state(state)
{
    tabBar->setAcceptDrops(true);
    tabBar->installEventFilter(this);
}

bool TabBarDrops::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_tabBar)
        return false;
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* drag = static_cast<QDropEvent*>(event);
        if (readUris(drag->mimeData()).isEmpty()) {
            drag->ignore();
            return true;
        }
        // Opening a tab changes no file: the pointer says "link" where the source allows it.
        drag->setDropAction(drag->possibleActions() & Qt::LinkAction ? Qt::LinkAction : Qt::CopyAction);
        drag->accept();
        return true;
    }
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        const QList<QUrl> urls = readUris(drop->mimeData());
        drop->setDropAction(drop->possibleActions() & Qt::LinkAction ? Qt::LinkAction : Qt::CopyAction);
        drop->accept();
        m_state->files().openDroppedInTabs(urls);
        return true;
    }
    default:
        return false;
    }
}

} // namespace orwick
