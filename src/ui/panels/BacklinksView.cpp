#include "ui/panels/BacklinksView.h"

#include "notes/BacklinkIndex.h"
#include "notes/NoteFile.h"

#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QSet>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace orwick {

namespace {

constexpr int kRowsShown = 8; // more scroll inside the list
constexpr int kPathRole = Qt::UserRole + 1;
constexpr int kLineRole = Qt::UserRole + 2;
constexpr int kTextRole = Qt::UserRole + 3;

// "Plan.md" → "Plan": notes go by their titles.
QString titleOf(const FilePath& note)
{
    const QString name = note.fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.left(dot) : name;
}

// Two lines a row: the linking note and line, then the line's text, dimmed and elided.
class BacklinkRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static int rowHeight(const QFontMetrics& metrics) { return 2 * metrics.height() + 10; }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {option.rect.width(), rowHeight(option.fontMetrics)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const override
    {
        QStyleOptionViewItem option = given;
        initStyleOption(&option, index);
        option.text.clear();
        option.widget->style()->drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
        const bool selected = option.state & QStyle::State_Selected;
        const QPalette& palette = option.palette;
        const QRect area = option.rect.adjusted(8, 5, -8, -5);
        const int lineHeight = option.fontMetrics.height();
        painter->save();
        QFont bold = option.font;
        bold.setBold(true);
        painter->setFont(bold);
        painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
        const QString title = index.data(Qt::DisplayRole).toString();
        const QString where = QStringLiteral("  line %1").arg(index.data(kLineRole).toInt());
        const QFontMetrics boldMetrics(bold);
        const int whereWidth = option.fontMetrics.horizontalAdvance(where);
        const QString shownTitle = boldMetrics.elidedText(title, Qt::ElideMiddle, std::max(0, area.width() - whereWidth));
        const QRect first(area.left(), area.top(), area.width(), lineHeight);
        painter->drawText(first, Qt::AlignLeft | Qt::AlignVCenter, shownTitle);
        painter->setFont(option.font);
        painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
        painter->drawText(first.adjusted(boldMetrics.horizontalAdvance(shownTitle), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, where);
        const QRect second(area.left(), area.top() + lineHeight, area.width(), lineHeight);
        const QString text = option.fontMetrics.elidedText(index.data(kTextRole).toString(), Qt::ElideRight, area.width());
        painter->drawText(second, Qt::AlignLeft | Qt::AlignVCenter, text);
        painter->restore();
    }
};

} // namespace

BacklinksView::BacklinksView(QWidget* parent, BacklinkIndex* index)
    : QWidget(parent), m_index(index ? index : &BacklinkIndex::shared())
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 8, 0, 0);
    column->setSpacing(4);
    m_heading = new QLabel(this);
    QFont headingFont = m_heading->font();
    headingFont.setBold(true);
    m_heading->setFont(headingFont);
    m_status = new QLabel(this);
    m_status->setForegroundRole(QPalette::PlaceholderText); // dim, from the theme
    m_model = new QStandardItemModel(this);
    m_list = new QListView(this);
    m_list->setModel(m_model);
    m_list->setItemDelegate(new BacklinkRowDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setAccessibleName(QStringLiteral("Linked From"));
    column->addWidget(m_heading);
    column->addWidget(m_status);
    column->addWidget(m_list);
    const auto activate = [this](const QModelIndex& row) {
        if (row.isValid())
            Q_EMIT noteActivated(FilePath::fromNative(row.data(kPathRole).toByteArray()), row.data(kLineRole).toInt());
    };
    connect(m_list, &QListView::clicked, this, activate);
    connect(m_list, &QListView::activated, this, activate); // Return, and double-click where the style says
    connect(m_index, &BacklinkIndex::changed, this, &BacklinksView::refresh);
    hide();
}

void BacklinksView::showNote(const FilePath& note)
{
    m_note = notefile::isNote(note) ? note : FilePath();
    if (!m_note.isEmpty())
        m_index->open(BacklinkIndex::vaultFor(m_note));
    refresh();
}

void BacklinksView::refresh()
{
    if (m_note.isEmpty()) {
        m_model->clear();
        hide();
        return;
    }
    show();
    const bool ready = m_index->isReady() && m_index->vault() == BacklinkIndex::vaultFor(m_note);
    const QList<Backlink> links = ready ? m_index->backlinksOf(m_note) : QList<Backlink>();
    QSet<FilePath> notes;
    for (const Backlink& link : links)
        notes.insert(link.note);
    m_heading->setText(notes.isEmpty() ? QStringLiteral("Linked From")
                       : notes.size() == 1 ? QStringLiteral("Linked From 1 Note")
                                           : QStringLiteral("Linked From %1 Notes").arg(notes.size()));
    m_status->setText(!ready ? QStringLiteral("Reading the notes…") : QStringLiteral("No notes link here."));
    m_status->setVisible(links.isEmpty());

    const int current = m_list->currentIndex().row();
    m_model->clear();
    for (const Backlink& link : links) {
        auto* row = new QStandardItem(titleOf(link.note));
        row->setData(link.note.native(), kPathRole);
        row->setData(link.line, kLineRole);
        row->setData(link.text, kTextRole);
        row->setToolTip(link.note.abbreviated() + QStringLiteral(":%1").arg(link.line));
        m_model->appendRow(row);
    }
    m_list->setVisible(!links.isEmpty());
    const int rowHeight = BacklinkRowDelegate::rowHeight(m_list->fontMetrics());
    m_list->setFixedHeight(std::min<int>(int(links.size()), kRowsShown) * rowHeight + 2 * m_list->frameWidth());
    if (current >= 0 && current < m_model->rowCount())
        m_list->setCurrentIndex(m_model->index(current, 0));
}

QString BacklinksView::headingText() const { return m_heading->text(); }

QStringList BacklinksView::rowTexts() const
{
    QStringList out;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        out.append(QStringLiteral("%1:%2: %3").arg(index.data().toString()).arg(index.data(kLineRole).toInt()).arg(index.data(kTextRole).toString()));
    }
    return out;
}

} // namespace orwick
