#include "ui/views/ViewContextMenu.h"

#include "ui/views/FileListModel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>

namespace orwick {

ViewContextMenu::ViewContextMenu(QAbstractItemView* view, PaneState* pane) : QObject(view), m_view(view), m_pane(pane)
{
    // A right click on the rows reaches the view through its viewport as this signal, in the
    // viewport's coordinates.
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { Q_EMIT requested(m_view->viewport()->mapToGlobal(at)); });
    view->installEventFilter(this);
}

bool ViewContextMenu::isMenuKey(const QKeyEvent* event)
{
    return event->key() == Qt::Key_Menu || (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
}

bool ViewContextMenu::eventFilter(QObject* watched, QEvent* event)
{
    // A name being edited over the rows keeps its own menu and keys.
    if (watched != m_view || (QApplication::focusWidget() && QApplication::focusWidget() != m_view))
        return false;
    if (event->type() == QEvent::ContextMenu && static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
        event->accept(); // the key press below opens it, at the cursor's row rather than the pointer
        return true;
    }
    if (event->type() == QEvent::KeyPress && isMenuKey(static_cast<QKeyEvent*>(event))) {
        event->accept();
        Q_EMIT requested(cursorRowPoint());
        return true;
    }
    return false;
}

QPoint ViewContextMenu::cursorRowPoint() const
{
    const QAbstractItemModel* model = m_view->model();
    const int row = m_pane->cursor() ? m_pane->row(*m_pane->cursor()) : -1;
    const QModelIndex index = model && row >= 0 && row < model->rowCount() ? model->index(row, FileListModel::NameColumn) : QModelIndex();
    if (!index.isValid())
        return m_view->viewport()->mapToGlobal(QPoint(0, 0));
    m_view->scrollTo(index);
    const QRect rect = m_view->visualRect(index);
    // Over the name's start rather than the middle of a wide row, halfway down it.
    return m_view->viewport()->mapToGlobal(QPoint(rect.left() + std::min(rect.width() / 2, 48), rect.center().y()));
}

} // namespace orwick
