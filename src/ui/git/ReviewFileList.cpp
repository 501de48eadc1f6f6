#include "ui/git/ReviewFileList.h"

#include "ui/theme/TextLine.h"
#include "ui/theme/Theme.h"
#include "ui/views/GitMarks.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace orwick {

namespace {

constexpr int kHeadingRole = Qt::UserRole + 1;
constexpr int kFolderRole = Qt::UserRole + 2;

class ReviewRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {100, theme::rowHeight()}; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        painter->save();
        const QRect cell = option.rect;
        const bool heading = index.data(kHeadingRole).toBool();
        if (heading) {
            QFont font = option.font;
            font.setBold(true);
            font.setPixelSize(qRound(theme::fontPixelSize() * 0.85));
            painter->setFont(font);
            painter->setPen(theme::dimText());
            painter->drawText(cell.adjusted(8, 0, -8, 0), Qt::AlignLeft | Qt::AlignBottom, index.data().toString());
            painter->restore();
            return;
        }
        if (option.state & QStyle::State_Selected) {
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(option.state & QStyle::State_HasFocus || option.widget->hasFocus() ? theme::selection()
                                                                                                  : theme::selectionUnfocused());
            painter->drawRoundedRect(QRectF(cell).adjusted(2, 1, -2, -1), theme::cornerRadius(), theme::cornerRadius());
        }
        const int markWidth = gitMarkWidth(index);
        const QRect text = cell.adjusted(16, 0, -markWidth - 4, 0);
        painter->setFont(option.font);
        painter->setPen(theme::text());
        const int used = drawTextLine(painter, option.fontMetrics, text, index.data().toString(), Qt::ElideMiddle) +
                         option.fontMetrics.horizontalAdvance(QStringLiteral("  "));
        const QString folder = index.data(kFolderRole).toString();
        if (!folder.isEmpty() && used < text.width()) {
            painter->setPen(theme::dimText());
            drawTextLine(painter, option.fontMetrics, text.adjusted(used, 0, 0, 0), folder, Qt::ElideLeft);
        }
        paintGitMark(painter, cell.adjusted(0, 0, -4, 0), index);
        painter->restore();
    }
};

} // namespace

void ReviewFileModel::setRows(QList<ReviewRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

QVariant ReviewFileModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const ReviewRow& row = m_rows[index.row()];
    const qsizetype slash = row.file.path.lastIndexOf(u'/');
    switch (role) {
    case Qt::DisplayRole:
        if (row.isHeading)
            return QStringLiteral("%1  %2").arg(reviewGroupTitle(row.group)).arg(row.count);
        return row.file.path.mid(slash + 1);
    case Qt::ToolTipRole:
        return row.isHeading ? QVariant() : QVariant(row.file.path + QStringLiteral("\n") + changeTooltip(row.badge));
    case kHeadingRole: return row.isHeading;
    case kFolderRole: return row.isHeading || slash < 0 ? QString() : row.file.path.left(slash);
    case GitMarkRole: return row.isHeading ? QVariant() : QVariant(int(row.badge));
    default: return {};
    }
}

Qt::ItemFlags ReviewFileModel::flags(const QModelIndex& index) const
{
    if (!index.isValid() || index.row() >= m_rows.size() || m_rows[index.row()].isHeading)
        return Qt::ItemIsEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

ReviewFileList::ReviewFileList(QWidget* parent) : QListView(parent), m_model(this)
{
    setModel(&m_model);
    setItemDelegate(new ReviewRowDelegate(this));
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { Q_EMIT currentRowChanged(); });
}

void ReviewFileList::setRows(QList<ReviewRow> rows)
{
    const ReviewRow* before = currentReviewRow();
    const std::optional<ReviewRow> kept = before ? std::optional(*before) : std::nullopt;
    const int previous = currentIndex().row();
    const QSignalBlocker quiet(selectionModel());
    m_model.setRows(std::move(rows));
    const int row = kept ? findReviewRow(m_model.rows(), kept->group, kept->file.path, previous)
                         : findReviewRow(m_model.rows(), ReviewGroup::staged, QString(), 0);
    if (row >= 0) {
        setCurrentIndex(m_model.index(row));
        scrollTo(currentIndex());
    }
    // The rows go on screen now, before what follows them (the diff, the header, the rest of
    // the window's repaint): they are what is waited for.
    viewport()->repaint();
    Q_EMIT currentRowChanged();
}

const ReviewRow* ReviewFileList::currentReviewRow() const
{
    const int row = currentIndex().row();
    if (row < 0 || row >= m_model.rows().size() || m_model.rows()[row].isHeading)
        return nullptr;
    return &m_model.rows()[row];
}

bool ReviewFileList::selectFile(ReviewGroup group, const QString& path)
{
    for (int i = 0; i < m_model.rows().size(); ++i) {
        const ReviewRow& row = m_model.rows()[i];
        if (!row.isHeading && row.group == group && row.file.path == path) {
            setCurrentIndex(m_model.index(i));
            return true;
        }
    }
    return false;
}

void ReviewFileList::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::review, event->keyCombination());
    if (action == A::reviewStage) {
        Q_EMIT spacePressed();
        return;
    }
    if (action == A::reviewTakeOurs || action == A::reviewTakeTheirs || action == A::reviewEdit || action == A::reviewDiscard) {
        Q_EMIT actionPressed(*action);
        return;
    }
    QListView::keyPressEvent(event); // moving: the list's own
}

QModelIndex ReviewFileList::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    // Pass over headings, and stay put rather than land on one at either end.
    const QModelIndex before = currentIndex();
    QModelIndex next = QListView::moveCursor(action, modifiers);
    const int step = (action == MoveUp || action == MovePageUp || action == MoveEnd) ? -1 : 1;
    while (next.isValid() && m_model.rows().value(next.row()).isHeading) {
        const int row = next.row() + (action == MoveHome ? 1 : action == MoveEnd ? -1 : step);
        next = row >= 0 && row < m_model.rowCount() ? m_model.index(row) : QModelIndex();
    }
    return next.isValid() ? next : before;
}

} // namespace orwick
