#include "ui/views/ViewDragDrop.h"

#include "fileops/DropPlan.h"
#include "fileops/FileClipboard.h"
#include "ui/theme/Theme.h"
#include "ui/views/CategoryIcons.h"
#include "ui/views/FileListModel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTreeView>

namespace orwick {

// The hovered drop target: a folder row, or the whole view when the drop goes to the pane's
// folder. Drawn over the rows, transparent to the pointer.
class DropHighlight : public QWidget {
public:
    explicit DropHighlight(QWidget* parent) : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }
    void showAt(const QRect& rect, bool row)
    {
        m_row = row;
        setGeometry(rect);
        raise();
        show();
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor fill = theme::accent();
        fill.setAlpha(m_row ? 60 : 0);
        painter.setBrush(fill);
        painter.setPen(QPen(theme::accent(), 2));
        const int radius = m_row ? theme::cornerRadius() : 0;
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    }

private:
    bool m_row = false;
};

namespace {

// The items of the drag this process is running, if any: a row never takes a drop of itself.
QSet<FilePath>& itemsBeingDragged()
{
    static QSet<FilePath> items;
    return items;
}

Qt::DropAction qtAction(DropAction action)
{
    switch (action) {
    case DropAction::copy: return Qt::CopyAction;
    case DropAction::move: return Qt::MoveAction;
    case DropAction::link: return Qt::LinkAction;
    case DropAction::none: break;
    }
    return Qt::IgnoreAction;
}

// The first item's icon, with the count of items on a badge when there are several.
QPixmap dragPixmap(const QIcon& icon, qsizetype count, qreal ratio)
{
    constexpr int side = 64, iconSide = 48;
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    icon.paint(&painter, QRect(4, 12, iconSide, iconSide));
    if (count > 1) {
        const QString text = QString::number(count);
        QFont font = painter.font();
        font.setBold(true);
        painter.setFont(font);
        const int width = std::max(22, painter.fontMetrics().horizontalAdvance(text) + 10);
        const QRect badge(side - width, 0, width, 22);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme::accent());
        painter.drawRoundedRect(badge, 11, 11);
        painter.setPen(theme::onAccent());
        painter.drawText(badge, Qt::AlignCenter, text);
    }
    return pixmap;
}

} // namespace

ViewDragDrop::ViewDragDrop(QAbstractItemView* view, PaneState* pane) : ViewDragDrop(view->viewport(), pane)
{
    m_view = view;
    setParent(view);
}

ViewDragDrop::ViewDragDrop(QWidget* surface, PaneState* pane)
    : QObject(surface), m_surface(surface), m_pane(pane), m_highlight(new DropHighlight(surface))
{
    surface->setAcceptDrops(true);
    surface->installEventFilter(this);
    m_edgeScroll.setInterval(60);
    connect(&m_edgeScroll, &QTimer::timeout, this, &ViewDragDrop::scrollNearEdge);
}

std::unique_ptr<QMimeData> ViewDragDrop::dragData(const QList<FilePath>& items) { return makeFileClipboard(items, false); }

std::optional<ViewDragDrop::Target> ViewDragDrop::targetAt(const QPoint& position) const
{
    if (!m_pane || m_pane->listing() || m_pane->url().isEmpty())
        return std::nullopt;
    const QModelIndex index = m_view ? m_view->indexAt(position) : QModelIndex();
    const int row = index.isValid() ? m_pane->row(index.data(FileListModel::UrlRole).value<FilePath>()) : -1;
    if (row >= 0) {
        const FileItem& item = m_pane->items()[row];
        if (item.isFolder && !itemsBeingDragged().contains(item.url)) {
            QRect rect = m_view->visualRect(index);
            if (qobject_cast<QTreeView*>(m_view.data())) // a row of the list or table, every column
                rect = QRect(0, rect.top(), m_surface->width(), rect.height());
            return Target{item.destination, rect};
        }
    }
    return Target{m_pane->url(), std::nullopt};
}

bool ViewDragDrop::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_surface)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress: return pressed(static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove: return moved(static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease: return released(static_cast<QMouseEvent*>(event));
    case QEvent::DragEnter: {
        // Taken whenever it carries URIs: a surface that turns the enter down hears no more of
        // the drag, and a drag that starts over a row of its own must still reach the others.
        // Each move says whether the drop is offered there (Qt sends one right after this).
        auto* enter = static_cast<QDragEnterEvent*>(event);
        m_hoverPlan.reset();
        enter->setAccepted(!readUris(enter->mimeData()).isEmpty());
        return true;
    }
    case QEvent::DragMove: hover(static_cast<QDropEvent*>(event)); return true;
    case QEvent::DragLeave:
        m_edgeScroll.stop();
        clearHighlight();
        m_hoverPlan.reset();
        return true;
    case QEvent::Drop: drop(static_cast<QDropEvent*>(event)); return true;
    default: return false;
    }
}

bool ViewDragDrop::pressed(QMouseEvent* event)
{
    m_pressAt.reset();
    m_pressedRow.reset();
    m_selectOnRelease = false;
    if (!m_view || !m_pane || event->button() != Qt::LeftButton)
        return false;
    // What lies in the Trash leaves it by Put Back, which knows where each item came from.
    if (m_pane->listing() && m_pane->listing()->kind == Listing::Kind::trash)
        return false;
    const QModelIndex index = m_view->indexAt(event->position().toPoint());
    if (!index.isValid())
        return false;
    const FilePath url = index.data(FileListModel::UrlRole).value<FilePath>();
    m_pressAt = event->position().toPoint();
    m_pressedRow = url;
    // A plain press inside a selection of several keeps it, so that all of it can be dragged.
    // A checkbox cell (a property in the table) is the view's to toggle.
    const bool checkable = index.flags() & Qt::ItemIsUserCheckable;
    if (!checkable && event->modifiers() == Qt::NoModifier && m_pane->selection().size() > 1 && m_pane->selection().contains(url)) {
        m_selectOnRelease = true;
        m_view->setFocus(Qt::MouseFocusReason);
        return true;
    }
    return false;
}

bool ViewDragDrop::moved(QMouseEvent* event)
{
    if (!m_pressAt || !(event->buttons() & Qt::LeftButton))
        return false;
    if ((event->position().toPoint() - *m_pressAt).manhattanLength() < QApplication::startDragDistance())
        return true;
    startDrag();
    return true;
}

bool ViewDragDrop::released(QMouseEvent* event)
{
    if (m_selectOnRelease && m_pressedRow && m_pane && event->button() == Qt::LeftButton)
        m_pane->click(*m_pressedRow, Qt::NoModifier);
    m_selectOnRelease = false;
    m_pressAt.reset();
    return false;
}

QList<FilePath> ViewDragDrop::dragItems() const
{
    if (!m_pane || !m_pressedRow)
        return {};
    if (!m_pane->selection().contains(*m_pressedRow))
        return {*m_pressedRow};
    QList<FilePath> items;
    for (const FileItem& item : m_pane->selectedItems())
        items.append(item.url);
    return items;
}

void ViewDragDrop::startDrag()
{
    const QList<FilePath> items = dragItems();
    m_pressAt.reset();
    m_selectOnRelease = false;
    if (items.isEmpty())
        return;
    const int first = m_pane->row(items.first());
    const QIcon icon = first >= 0 ? itemIcon(m_pane->items()[first]) : QIcon();
    auto* drag = new QDrag(m_surface);
    drag->setMimeData(dragData(items).release());
    drag->setPixmap(dragPixmap(icon, items.size(), m_surface->devicePixelRatioF()));
    drag->setHotSpot(QPoint(24, 36));
    itemsBeingDragged() = QSet<FilePath>(items.begin(), items.end());
    // Whatever the target does, the items are never removed here: a move is done by the target
    // (Orwick's own drops through the file operations engine).
    drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::MoveAction);
    itemsBeingDragged().clear();
}

void ViewDragDrop::hover(QDropEvent* event)
{
    m_hoverAt = event->position().toPoint();
    if (m_view && !m_edgeScroll.isActive())
        m_edgeScroll.start();
    const QList<QUrl> urls = readUris(event->mimeData());
    const auto target = urls.isEmpty() ? std::nullopt : targetAt(event->position().toPoint());
    if (!target) {
        clearHighlight();
        event->ignore();
        return;
    }
    // Asked again only when the folder or the keys change: the plan looks at every item.
    if (!m_hoverPlan || m_hoverPlan->folder != target->folder
        || m_hoverModifiers != event->modifiers()) {
        m_hoverPlan = planDrop(urls, target->folder, event->modifiers());
        m_hoverModifiers = event->modifiers();
    }
    const DropPlan& plan = *m_hoverPlan;
    if (!plan.isRefused() && plan.action == DropAction::none) {
        clearHighlight(); // the items are there already
        event->ignore();
        return;
    }
    m_highlight->showAt(target->row.value_or(m_surface->rect()), target->row.has_value());
    // A refused drop is still taken, so that the drop can say why.
    event->setDropAction(plan.isRefused() ? event->proposedAction() : qtAction(plan.action));
    event->accept();
}

void ViewDragDrop::drop(QDropEvent* event)
{
    m_edgeScroll.stop();
    clearHighlight();
    m_hoverPlan.reset();
    const QList<QUrl> urls = readUris(event->mimeData());
    const auto target = urls.isEmpty() ? std::nullopt : targetAt(event->position().toPoint());
    if (!target) {
        event->ignore();
        return;
    }
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    Q_EMIT dropped(urls, target->folder, modifiers);
    // The source hears "copy" even for a move: the engine moves the items itself, and a source
    // that heard "move" might remove what it thinks it still has.
    const bool link = (modifiers & Qt::ControlModifier) && (modifiers & Qt::ShiftModifier);
    event->setDropAction(link ? Qt::LinkAction : Qt::CopyAction);
    event->accept();
}

void ViewDragDrop::clearHighlight() { m_highlight->hide(); }

void ViewDragDrop::scrollNearEdge()
{
    constexpr int margin = 24;
    QScrollBar* bar = m_view ? m_view->verticalScrollBar() : nullptr;
    if (!bar)
        return;
    if (m_hoverAt.y() < margin)
        bar->setValue(bar->value() - bar->singleStep());
    else if (m_hoverAt.y() > m_surface->height() - margin)
        bar->setValue(bar->value() + bar->singleStep());
    else
        return;
    // The row under the pointer changed; the highlight follows with the next move.
    clearHighlight();
}

} // namespace orwick
