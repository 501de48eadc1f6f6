#include "ui/shelf/ShelfButton.h"

#include "commands/ShelfActions.h"
#include "fileops/FileClipboard.h"
#include "places/Shelf.h"
#include "state/WindowState.h"
#include "ui/shelf/ShelfList.h"
#include "ui/window/CommandMenus.h"

#include <QDragEnterEvent>
#include <QListWidget>
#include <QMimeData>

namespace orwick {

ShelfButton::ShelfButton(WindowState* window, QWidget* parent) : QToolButton(parent), m_window(window)
{
    setObjectName(QStringLiteral("shelfButton"));
    setAutoRaise(true);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setIcon(commandIcon(QStringLiteral("tray.full")));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setAcceptDrops(true);
    setToolTip(QStringLiteral("What is on the shelf; drop files here to add them"));
    connect(this, &QToolButton::clicked, this, &ShelfButton::showList);
    connect(&Shelf::shared(), &Shelf::itemsChanged, this, &ShelfButton::updateText);
    connect(window, &WindowState::shelfRequested, this, &ShelfButton::showList);
    updateText();
}

ShelfList* ShelfButton::list() const { return m_list; }

void ShelfButton::updateText()
{
    const qsizetype count = Shelf::shared().count();
    setText(count == 0 ? QStringLiteral("Shelf") : QStringLiteral("Shelf · %1").arg(count));
    setAccessibleName(count == 0 ? QStringLiteral("Shelf, empty") : QStringLiteral("Shelf, %1 items").arg(count));
}

void ShelfButton::showList()
{
    if (m_list) {
        m_list->raise();
        m_list->rows()->setFocus();
        return;
    }
    // Another process may have changed the shelf while no window looked.
    Shelf::shared().reload();
    m_list = new ShelfList(m_window, this);
    QPoint at;
    if (isVisible()) { // above the button, its left edges lined up
        at = mapToGlobal(QPoint(0, 0)) - QPoint(0, m_list->height());
    } else { // the sidebar is hidden: over the window's middle
        const QWidget* top = window();
        at = top->mapToGlobal(QPoint((top->width() - m_list->width()) / 2, (top->height() - m_list->height()) / 3));
    }
    m_list->move(at);
    m_list->show();
    m_list->rows()->setFocus(Qt::PopupFocusReason);
}

void ShelfButton::dragEnterEvent(QDragEnterEvent* event)
{
    if (readFileClipboard(event->mimeData()).items.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction); // nothing leaves its place: the shelf only notes where it is
    event->accept();
}

void ShelfButton::dropEvent(QDropEvent* event)
{
    const QList<FilePath> items = readFileClipboard(event->mimeData()).items;
    if (items.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    shelfActions::add(*m_window, items);
}

} // namespace orwick

#include "moc_ShelfButton.cpp"
