#include "ui/sidebar/SidebarView.h"

#include "places/FinderTag.h"
#include "ui/sidebar/SidebarModel.h"
#include "ui/theme/TagColors.h"
#include "ui/theme/Theme.h"

#include <QContextMenuEvent>
#include <QMimeData>
#include <QPainter>
#include <QStyledItemDelegate>
#include <sys/stat.h>

namespace orwick {

namespace {

class SidebarDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const auto* model = static_cast<const SidebarModel*>(index.model());
        const SidebarRow& row = model->rowAt(index.row());
        const int base = std::max(theme::rowHeight(), option.fontMetrics.height() + 8);
        if (row.kind == SidebarRow::Kind::title)
            return {option.rect.width(), base + (index.row() > 0 ? 8 : 2)};
        return {option.rect.width(), row.fill >= 0 ? base + 6 : base};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const auto* model = static_cast<const SidebarModel*>(index.model());
        const SidebarRow& row = model->rowAt(index.row());
        painter->save();
        const QRect r = option.rect.adjusted(6, 0, -6, 0);
        // The keyboard's cursor: the view has the keyboard and it stands on this row.
        const bool focused = option.state & QStyle::State_HasFocus;
        // A place stays marked while the keyboard is elsewhere; a title only under the cursor.
        const bool marked = row.kind == SidebarRow::Kind::title ? focused : bool(option.state & QStyle::State_Selected);
        if (marked) {
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(focused || option.widget->hasFocus() ? theme::selection() : theme::separator());
            painter->drawRoundedRect(r, theme::cornerRadius(), theme::cornerRadius());
        }
        QFont font = option.font;
        if (row.kind == SidebarRow::Kind::title) {
            font.setPointSizeF(font.pointSizeF() * 0.85);
            font.setBold(true);
            painter->setFont(font);
            painter->setPen(theme::dimText());
            const QRect text = r.adjusted(6, r.height() - QFontMetrics(font).height() - 4, -6, 0);
            painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter, row.name);
            painter->drawText(text, Qt::AlignRight | Qt::AlignVCenter, row.isCollapsed ? QStringLiteral("▸") : QStringLiteral("▾"));
            painter->restore();
            return;
        }
        const int lineHeight = std::max(theme::rowHeight(), option.fontMetrics.height() + 8);
        QRect line(r.left(), r.top(), r.width(), lineHeight);
        const int iconSize = 16;
        const QRect iconRect(line.left() + 8, line.center().y() - iconSize / 2, iconSize, iconSize);
        if (row.kind == SidebarRow::Kind::tag) {
            // A colour tag is its colour; another tag a plain dot.
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            const QColor dot = theme::tagColor(FinderTag::colorIndex(row.tagName).value_or(0));
            painter->setBrush(dot);
            painter->drawEllipse(iconRect.adjusted(3, 3, -3, -3));
        } else {
            SidebarModel::icon(row.symbol).paint(painter, iconRect, Qt::AlignCenter, row.isMissing ? QIcon::Disabled : QIcon::Normal);
        }
        QRect text = line.adjusted(8 + iconSize + 8, 0, -8, 0);
        painter->setFont(font);
        if (!row.trailing.isEmpty()) {
            QFont small = font;
            small.setPointSizeF(font.pointSizeF() * 0.85);
            const QFontMetrics metrics(small);
            const QString trailing = metrics.elidedText(row.trailing, Qt::ElideMiddle, text.width() / 2);
            painter->setFont(small);
            painter->setPen(theme::dimText());
            painter->drawText(text, Qt::AlignRight | Qt::AlignVCenter, trailing);
            text.setRight(text.right() - metrics.horizontalAdvance(trailing) - 8);
            painter->setFont(font);
        }
        painter->setPen(row.isMissing ? theme::dimText() : theme::text());
        painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter, option.fontMetrics.elidedText(row.name, Qt::ElideRight, text.width()));
        if (row.fill >= 0) {
            const QRect bar(line.left() + 8 + iconSize + 8, line.bottom() + 1, r.width() - iconSize - 32, 3);
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme::separator());
            painter->drawRoundedRect(bar, 1.5, 1.5);
            painter->setBrush(row.fill > 0.9 ? theme::negative() : theme::accent());
            painter->drawRoundedRect(QRect(bar.left(), bar.top(), int(bar.width() * std::clamp(row.fill, 0.0, 1.0)), bar.height()), 1.5, 1.5);
        }
        painter->restore();
    }
};

QList<FilePath> droppedFolders(const QMimeData* mime)
{
    QList<FilePath> folders;
    if (!mime || !mime->hasUrls())
        return folders;
    for (const QUrl& url : mime->urls()) {
        const FilePath path = FilePath::fromUrl(url);
        struct stat info{};
        if (!path.isEmpty() && ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode))
            folders.append(path);
    }
    return folders;
}

} // namespace

SidebarView::SidebarView(QWidget* parent) : QListView(parent)
{
    setItemDelegate(new SidebarDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DropOnly);
    setAttribute(Qt::WA_MacShowFocusRect, false);
}

void SidebarView::setModel(QAbstractItemModel* model)
{
    QListView::setModel(model);
    auto* sidebar = qobject_cast<SidebarModel*>(model);
    if (!sidebar)
        return;
    // A rebuild (a visit recorded, a drive mounted) keeps the keyboard's place, selected only
    // when it was: a cursor that focus passing through left on the first title stays unmarked.
    struct Kept {
        std::optional<SidebarRow> row;
        bool selected = false;
    };
    auto kept = std::make_shared<Kept>();
    connect(sidebar, &QAbstractItemModel::modelAboutToBeReset, this, [this, sidebar, kept] {
        const QModelIndex current = currentIndex();
        const int row = current.row();
        kept->row = row >= 0 && row < sidebar->rowCount() ? std::optional(sidebar->rowAt(row)) : std::nullopt;
        kept->selected = current.isValid() && selectionModel()->isSelected(current);
    });
    connect(sidebar, &QAbstractItemModel::modelReset, this, [this, sidebar, kept] {
        if (!kept->row)
            return;
        for (int i = 0; i < sidebar->rowCount(); ++i)
            if (sidebar->rowAt(i).isSamePlace(*kept->row)) {
                selectionModel()->setCurrentIndex(sidebar->index(i), kept->selected ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate);
                return;
            }
    });
}

bool SidebarView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    const bool answered = QListView::edit(index, trigger, event);
    if (auto* sidebar = qobject_cast<SidebarModel*>(model()); sidebar && state() == QAbstractItemView::EditingState)
        sidebar->holdRebuilds(true); // a reset would close the editor under the user's typing
    return answered;
}

void SidebarView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    QListView::closeEditor(editor, hint);
    if (auto* sidebar = qobject_cast<SidebarModel*>(model()); sidebar && state() != QAbstractItemView::EditingState)
        sidebar->holdRebuilds(false);
}

void SidebarView::editorDestroyed(QObject* editor)
{
    QListView::editorDestroyed(editor);
    if (auto* sidebar = qobject_cast<SidebarModel*>(model()); sidebar && state() != QAbstractItemView::EditingState)
        sidebar->holdRebuilds(false);
}

bool SidebarView::event(QEvent* event)
{
    // F2 edits the current row's name here, before the window's Rename (of the pane's files).
    if (event->type() == QEvent::ShortcutOverride && state() != QAbstractItemView::EditingState) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_F2 && key->modifiers() == Qt::NoModifier && currentIndex().isValid()
            && (model()->flags(currentIndex()) & Qt::ItemIsEditable)) {
            event->accept();
            return true;
        }
    }
    return QListView::event(event);
}

void SidebarView::keyPressEvent(QKeyEvent* event)
{
    const int row = currentIndex().row();
    if (state() != QAbstractItemView::EditingState) {
        if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
            Q_EMIT leaveRequested();
            return;
        }
        if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && row >= 0) {
            Q_EMIT rowActivated(row);
            return;
        }
        if (event->key() == Qt::Key_Menu || (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)) {
            if (row >= 0)
                Q_EMIT menuRequested(row, viewport()->mapToGlobal(visualRect(currentIndex()).center()));
            return;
        }
    }
    QListView::keyPressEvent(event);
}

void SidebarView::mouseReleaseEvent(QMouseEvent* event)
{
    QListView::mouseReleaseEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid() && state() != QAbstractItemView::EditingState)
        Q_EMIT rowActivated(index.row());
}

void SidebarView::contextMenuEvent(QContextMenuEvent* event)
{
    // X11 sends a keyboard context event beside the Menu key's press, which opens the menu above:
    // answering both would open it twice.
    if (event->reason() != QContextMenuEvent::Mouse)
        return event->accept();
    const QModelIndex index = indexAt(event->pos());
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    Q_EMIT menuRequested(index.row(), event->globalPos());
}

void SidebarView::dragEnterEvent(QDragEnterEvent* event)
{
    if (droppedFolders(event->mimeData()).isEmpty())
        return event->ignore();
    event->setDropAction(Qt::LinkAction);
    event->accept();
}

void SidebarView::dragMoveEvent(QDragMoveEvent* event)
{
    if (droppedFolders(event->mimeData()).isEmpty())
        return event->ignore();
    setCurrentIndex(indexAt(event->position().toPoint()));
    event->setDropAction(Qt::LinkAction);
    event->accept();
}

void SidebarView::dropEvent(QDropEvent* event)
{
    const QList<FilePath> folders = droppedFolders(event->mimeData());
    if (folders.isEmpty())
        return event->ignore();
    event->setDropAction(Qt::LinkAction);
    event->accept();
    Q_EMIT foldersDropped(folders, indexAt(event->position().toPoint()).row());
}

} // namespace orwick
