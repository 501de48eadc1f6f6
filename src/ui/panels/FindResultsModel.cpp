#include "ui/panels/FindResultsModel.h"

#include "ui/theme/TextLine.h"
#include "ui/theme/Theme.h"

#include <QPainter>

namespace orwick {

void FindResultsModel::update(const ContentSearch::Results& results)
{
    std::vector<Row> rows;
    std::vector<int> headings;
    rows.reserve(size_t(results.matchCount()) + results.files().size());
    for (size_t f = 0; f < results.files().size(); ++f) {
        headings.push_back(int(rows.size()));
        rows.push_back({int(f), -1});
        for (size_t m = 0; m < results.files()[f].matches.size(); ++m)
            rows.push_back({int(f), int(m)});
    }
    // Only appended rows: insert them; anything else: start over.
    const bool appended = m_results == &results && rows.size() >= m_rows.size()
                       && std::equal(m_rows.begin(), m_rows.end(), rows.begin(),
                                     [](const Row& a, const Row& b) { return a.file == b.file && a.match == b.match; });
    if (appended) {
        if (rows.size() == m_rows.size())
            return;
        beginInsertRows({}, int(m_rows.size()), int(rows.size()) - 1);
        m_rows = std::move(rows);
        m_headingRows = std::move(headings);
        endInsertRows();
        // A heading's count changed with its file's new matches.
        if (!m_headingRows.empty())
            Q_EMIT dataChanged(index(m_headingRows.back()), index(m_headingRows.back()));
        return;
    }
    beginResetModel();
    m_results = &results;
    m_rows = std::move(rows);
    m_headingRows = std::move(headings);
    endResetModel();
}

int FindResultsModel::rowOfMatch(qint64 matchIndex) const
{
    if (!m_results)
        return -1;
    const auto position = m_results->position(matchIndex);
    if (position.file < 0)
        return -1;
    return m_headingRows[size_t(position.file)] + 1 + position.match;
}

QVariant FindResultsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || size_t(index.row()) >= m_rows.size() || !m_results)
        return {};
    const Row row = m_rows[size_t(index.row())];
    const ContentSearch::FileMatches& file = m_results->files()[size_t(row.file)];
    const bool heading = row.match < 0;
    switch (role) {
    case Qt::DisplayRole:
        if (heading)
            return file.pathText();
        return file.matches[size_t(row.match)].text();
    case Qt::ToolTipRole:
        return heading ? file.url.text() : QVariant();
    case kIsHeadingRole:
        return heading;
    case kLineRole:
        return heading ? QVariant(qlonglong(file.matches.size())) : QVariant(file.matches[size_t(row.match)].line);
    case kMatchIndexRole:
        return heading ? qint64(-1) : m_results->firstIndexOf(row.file) + row.match;
    default:
        return {};
    }
}

void MatchLineDelegate::setQuery(const QString& query, const ContentSearch::Options& options)
{
    m_query = query;
    m_options = options;
}

void MatchLineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    const bool heading = index.data(FindResultsModel::kIsHeadingRole).toBool();
    const bool selected = opt.state & QStyle::State_Selected;
    painter->save();
    if (selected)
        painter->fillRect(opt.rect, theme::selection());
    if (opt.state & QStyle::State_HasFocus) { // the results have the keyboard: the highlighted row is ringed
        painter->setPen(QPen(theme::cursorRing(), 2));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(QRectF(opt.rect).adjusted(1, 1, -1, -1));
    }
    painter->setClipRect(opt.rect);
    const QRect area = opt.rect.adjusted(8, 0, -8, 0);
    const QFontMetrics metrics(opt.font);
    if (heading) {
        QFont bold = opt.font;
        bold.setBold(true);
        painter->setFont(bold);
        painter->setPen(theme::text());
        const QString count = QStringLiteral("  %1").arg(index.data(FindResultsModel::kLineRole).toLongLong());
        const int countWidth = QFontMetrics(bold).horizontalAdvance(count);
        painter->drawText(area.adjusted(0, 0, -countWidth, 0), Qt::AlignVCenter | Qt::AlignLeft,
                          QFontMetrics(bold).elidedText(opt.text, Qt::ElideMiddle, area.width() - countWidth));
        painter->setPen(theme::dimText());
        painter->drawText(area, Qt::AlignVCenter | Qt::AlignRight, count);
        painter->restore();
        return;
    }
    // The line number in a dim gutter, then the text with each match on an accent tint.
    const QString number = index.data(FindResultsModel::kLineRole).toString();
    const int gutter = metrics.horizontalAdvance(QStringLiteral("000000"));
    painter->setPen(theme::dimText());
    painter->drawText(QRect(area.left(), area.top(), gutter - 8, area.height()), Qt::AlignVCenter | Qt::AlignRight, number);
    QString text = opt.text;
    text.replace(QLatin1Char('\t'), QLatin1String("    ")); // tabs as four spaces, the same width as the marks
    int x = area.left() + gutter;
    const int baseline = centredBaseline(metrics, area);
    int drawn = 0;
    auto drawRun = [&](int from, int to, bool marked) {
        if (to <= from || x > area.right())
            return;
        const QString run = text.mid(from, to - from);
        const int width = metrics.horizontalAdvance(run);
        if (marked)
            painter->fillRect(QRect(x, area.top() + 2, width, area.height() - 4), theme::accentFill());
        painter->setPen(theme::text());
        painter->drawText(x, baseline, run);
        x += width;
    };
    for (const auto& [start, length] : ContentSearch::matchedRanges(text, m_query, m_options)) {
        drawRun(drawn, start, false);
        drawRun(start, start + length, true);
        drawn = start + length;
    }
    drawRun(drawn, int(text.size()), false);
    painter->restore();
}

} // namespace orwick
