#include "ui/notes/BoardWidget.h"

#include "commands/ViewKeys.h"

#include "ui/notes/DatabaseCard.h"
#include "ui/notes/DatabaseViewInput.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <algorithm>

namespace orwick {

BoardWidget::BoardWidget(QWidget* parent) : QWidget(parent)
{
    setUpDatabaseView(this);
}

void BoardWidget::setBoard(BoardView board, FileItems items, DatabaseColumns database)
{
    const std::optional<FilePath> keep = currentItem();
    const std::optional<QString> keepLane = m_lane >= 0 && m_lane < m_board.lanes.size() ? m_board.lanes.at(m_lane).option : std::nullopt;
    if (database.folder != m_database.folder)
        m_placed = false;
    m_board = std::move(board);
    m_items = std::move(items);
    m_database = std::move(database);
    if (!m_placed) {
        // Nothing chose a card yet: the keyboard is on the first one, so that the keys act at once
        // (an empty "No value" lane first would leave them nothing to move).
        const auto first = std::find_if(m_board.lanes.cbegin(), m_board.lanes.cend(),
                                        [](const BoardLane& lane) { return !lane.cards.isEmpty(); });
        m_lane = first == m_board.lanes.cend() ? 0 : int(first - m_board.lanes.cbegin());
        m_position = 0;
    } else {
        // The keyboard stays in its lane (found again by its option), on the same card when the
        // card is still there (a moved card was put in its new lane first), else at the same place.
        m_lane = std::max(0, m_board.laneOf(keepLane));
    }
    if (m_placed && m_lane < m_board.lanes.size()) {
        const QList<int>& cards = m_board.lanes.at(m_lane).cards;
        m_position = std::clamp(m_position, 0, std::max(0, int(cards.size()) - 1));
        for (int position = 0; keep && position < cards.size(); ++position)
            if (m_items.at(cards.at(position)).url == *keep)
                m_position = position;
    }
    m_choice = std::clamp(m_choice, 0, std::max(0, int(choiceRows().size()) - 1));
    updateSize();
    update();
}

std::optional<FilePath> BoardWidget::currentItem() const
{
    if (m_lane < 0 || m_lane >= m_board.lanes.size())
        return std::nullopt;
    const QList<int>& cards = m_board.lanes.at(m_lane).cards;
    if (m_position < 0 || m_position >= cards.size())
        return std::nullopt;
    return m_items.at(cards.at(m_position)).url;
}

QSize BoardWidget::sizeHint() const
{
    int height = 60;
    for (int lane = 0; lane < m_board.lanes.size(); ++lane) {
        const int count = int(m_board.lanes.at(lane).cards.size());
        height = std::max(height, count == 0 ? 80 : cardRect(lane, count - 1).bottom() + kGap);
    }
    return QSize(kGap + int(m_board.lanes.size()) * (kLaneWidth + kGap), height + kGap);
}

void BoardWidget::updateSize()
{
    const QSize wanted = m_board.problem.isEmpty()
        ? sizeHint()
        : QSize(400, std::max(200, choiceRect(int(choiceRows().size()) - 1).bottom() + 24));
    auto* area = qobject_cast<QScrollArea*>(parentWidget() ? parentWidget()->parentWidget() : nullptr);
    const QSize viewport = area ? area->viewport()->size() : QSize();
    resize(std::max(wanted.width(), viewport.width()), std::max(wanted.height(), viewport.height()));
}

QRect BoardWidget::laneRect(int lane) const { return QRect(kGap + lane * (kLaneWidth + kGap), kGap, kLaneWidth, height() - 2 * kGap); }

QRect BoardWidget::cardRect(int lane, int position) const
{
    const int header = fontMetrics().height() + 16;
    const int shown = int(std::min<qsizetype>(m_board.shown.size(), 3));
    const int card = cardHeight(this, shown);
    const QRect area = laneRect(lane);
    return QRect(area.left() + 6, area.top() + header + position * (card + 6), kLaneWidth - 12, card);
}

std::pair<int, int> BoardWidget::hit(QPoint point) const
{
    for (int lane = 0; lane < m_board.lanes.size(); ++lane) {
        if (!laneRect(lane).contains(point))
            continue;
        for (int position = 0; position < m_board.lanes.at(lane).cards.size(); ++position)
            if (cardRect(lane, position).contains(point))
                return {lane, position};
        return {lane, -1};
    }
    return {-1, -1};
}

void BoardWidget::showCurrentItem(const FilePath& item)
{
    if (currentItem() == item) {
        m_placed = true;
        return;
    }
    for (int step = 0; step < m_board.lanes.size(); ++step) {
        const int lane = (m_lane + step) % int(m_board.lanes.size()); // its own lane first
        const QList<int>& cards = m_board.lanes.at(lane).cards;
        for (int position = 0; position < cards.size(); ++position)
            if (m_items.at(cards.at(position)).url == item)
                return placeCursor(lane, position);
    }
}

void BoardWidget::moveCursorTo(int lane, int position)
{
    if (m_board.lanes.isEmpty())
        return;
    placeCursor(lane, position);
    if (const auto item = currentItem())
        Q_EMIT currentChanged(*item);
}

void BoardWidget::placeCursor(int lane, int position)
{
    if (m_board.lanes.isEmpty())
        return;
    m_placed = true;
    m_lane = std::clamp(lane, 0, int(m_board.lanes.size()) - 1);
    const int count = int(m_board.lanes.at(m_lane).cards.size());
    m_position = count == 0 ? 0 : std::clamp(position, 0, count - 1);
    if (auto* area = qobject_cast<QScrollArea*>(parentWidget() ? parentWidget()->parentWidget() : nullptr)) {
        const QRect target = count == 0 ? laneRect(m_lane).adjusted(0, 0, 0, -laneRect(m_lane).height() + 80) : cardRect(m_lane, m_position);
        area->ensureVisible(target.center().x(), target.center().y(), target.width() / 2 + kGap, target.height() / 2 + kGap);
    }
    update();
}

void BoardWidget::moveCurrentCard(int by)
{
    const std::optional<FilePath> item = currentItem();
    const int to = m_lane + by;
    if (!item || to < 0 || to >= m_board.lanes.size())
        return;
    // Drawn in the new lane at once; the store's reading follows the engine's write.
    const int index = m_board.lanes[m_lane].cards.takeAt(m_position);
    const int from = m_lane;
    QList<int>& target = m_board.lanes[to].cards;
    if (!target.contains(index)) {
        target.append(index);
        std::sort(target.begin(), target.end());
    }
    m_lane = to;
    m_position = int(target.indexOf(index));
    updateSize();
    moveCursorTo(m_lane, m_position);
    // Last: the owner may hand this board a new BoardView at once.
    Q_EMIT moveRequested(*item, from, to);
}

void BoardWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const QPalette& palette = this->palette();
    const bool focused = hasFocus();
    if (!m_board.problem.isEmpty()) {
        const int line = fontMetrics().height();
        painter.setPen(palette.color(QPalette::Text));
        painter.drawText(QRect(24, 24, width() - 48, line * 2), Qt::TextWordWrap, m_board.problem);
        const QStringList rows = choiceRows();
        const int firstKey = m_board.convertible ? 1 : 0;
        if (!m_board.choices.isEmpty()) {
            painter.setPen(palette.color(QPalette::PlaceholderText));
            const QRect above = choiceRect(firstKey).translated(0, -(line + 6));
            painter.drawText(QRect(24, above.top(), width() - 48, line), m_board.convertible ? QStringLiteral("Or group by:")
                                                                                            : QStringLiteral("Group by:"));
        }
        for (int i = 0; i < rows.size(); ++i)
            drawCard(painter, this, choiceRect(i), rows.at(i), {}, {i == m_choice, i == m_choice, focused});
        return;
    }
    const int header = fontMetrics().height();
    for (int lane = 0; lane < m_board.lanes.size(); ++lane) {
        const BoardLane& data = m_board.lanes.at(lane);
        const QRect area = laneRect(lane);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_dropLane == lane ? theme::accentFill() : palette.color(QPalette::AlternateBase));
        painter.drawRoundedRect(area, theme::cornerRadius(), theme::cornerRadius());
        QRect title(area.left() + 10, area.top() + 8, area.width() - 20, header);
        if (data.option) {
            painter.setBrush(theme::optionColor(data.color));
            painter.drawEllipse(QRect(title.left(), title.center().y() - 5, 10, 10));
            title.setLeft(title.left() + 16);
        }
        painter.setPen(data.option ? palette.color(QPalette::Text) : palette.color(QPalette::PlaceholderText));
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        painter.drawText(title, Qt::AlignLeft | Qt::AlignVCenter,
                         QFontMetrics(bold).elidedText(data.title, Qt::ElideRight, title.width() - 40));
        painter.setFont(font());
        painter.setPen(palette.color(QPalette::PlaceholderText));
        painter.drawText(title, Qt::AlignRight | Qt::AlignVCenter, QString::number(data.cards.size()));
        for (int position = 0; position < data.cards.size(); ++position) {
            const QRect rect = cardRect(lane, position);
            if (!rect.intersects(event->rect()))
                continue;
            const FileItem& item = m_items.at(data.cards.at(position));
            const bool isCursor = lane == m_lane && position == m_position;
            drawCard(painter, this, rect, itemTitle(item, m_database.values.value(item.url)),
                     cardLines(m_database, item.url, m_board.shown.mid(0, 3)), {isCursor, isCursor, focused});
        }
        if (data.cards.isEmpty() && lane == m_lane) {
            painter.setPen(QPen(focused ? theme::cursorRing() : theme::separator(), 1, Qt::DashLine));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(cardRect(lane, 0), theme::cornerRadius(), theme::cornerRadius());
        }
    }
}

void BoardWidget::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::board, event->keyCombination());
    if (!m_board.problem.isEmpty()) { // the board asks what to group by: Up, Down and Return choose
        if (action == A::boardCardAbove)
            m_choice = std::max(0, m_choice - 1);
        else if (action == A::boardCardBelow)
            m_choice = std::min(int(choiceRows().size()) - 1, m_choice + 1);
        else if (action == A::boardOpen)
            choose(m_choice);
        else
            QWidget::keyPressEvent(event);
        update();
        return;
    }
    if (!action) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (*action) {
    case A::boardCardToPreviousLane: moveCurrentCard(-1); return;
    case A::boardCardToNextLane: moveCurrentCard(1); return;
    case A::boardOpen: openCurrentOnReturn(*this, event); return;
    case A::boardPreviousLane: moveCursorTo(m_lane - 1, m_position); return;
    case A::boardNextLane: moveCursorTo(m_lane + 1, m_position); return;
    case A::boardCardAbove: moveCursorTo(m_lane, m_position - 1); return;
    case A::boardCardBelow: moveCursorTo(m_lane, m_position + 1); return;
    case A::boardFirstCard: moveCursorTo(m_lane, 0); return;
    case A::boardLastCard: moveCursorTo(m_lane, 1 << 20); return;
    default: QWidget::keyPressEvent(event); return;
    }
}

QStringList BoardWidget::choiceRows() const
{
    QStringList rows;
    if (m_board.convertible)
        rows.append(QStringLiteral("Make “%1” a select").arg(*m_board.convertible));
    return rows + m_board.choices;
}

QRect BoardWidget::choiceRect(int row) const
{
    const int line = fontMetrics().height();
    // Under the sentence (two lines); the keys to group by under a heading of their own.
    int y = 24 + line * 2 + 8 + row * (line + 14);
    if (!m_board.choices.isEmpty() && row >= (m_board.convertible ? 1 : 0))
        y += line + 6;
    return QRect(24, y, 240, line + 8);
}

void BoardWidget::choose(int row)
{
    if (row < 0 || row >= choiceRows().size())
        return;
    if (m_board.convertible && row == 0)
        Q_EMIT makeSelectRequested(*m_board.convertible, m_board.foundValues);
    else
        Q_EMIT groupByChosen(m_board.choices.at(row - (m_board.convertible ? 1 : 0)));
}

void BoardWidget::mousePressEvent(QMouseEvent* event)
{
    if (!m_board.problem.isEmpty()) {
        setFocus(Qt::MouseFocusReason);
        for (int row = 0; row < choiceRows().size(); ++row)
            if (choiceRect(row).contains(event->position().toPoint())) {
                m_choice = row;
                update();
                choose(row);
            }
        return;
    }
    const auto [lane, position] = hit(event->position().toPoint());
    if (lane >= 0) {
        moveCursorTo(lane, position < 0 ? m_position : position);
        if (position >= 0) {
            m_pressed = std::pair{lane, position};
            m_pressAt = event->position().toPoint();
        }
    }
    setFocus(Qt::MouseFocusReason);
}

void BoardWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_pressed || (event->position().toPoint() - m_pressAt).manhattanLength() < QApplication::startDragDistance())
        return;
    const int lane = hit(event->position().toPoint()).first;
    m_dropLane = lane >= 0 ? std::optional(lane) : std::nullopt;
    update();
}

void BoardWidget::mouseReleaseEvent(QMouseEvent*)
{
    if (m_pressed && m_dropLane && *m_dropLane != m_pressed->first) {
        m_lane = m_pressed->first;
        m_position = m_pressed->second;
        moveCurrentCard(*m_dropLane - m_lane);
    }
    m_pressed.reset();
    m_dropLane.reset();
    update();
}

void BoardWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    const auto [lane, position] = hit(event->position().toPoint());
    if (lane >= 0 && position >= 0)
        Q_EMIT openRequested(m_items.at(m_board.lanes.at(lane).cards.at(position)).url);
}

void BoardWidget::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    update();
}

void BoardWidget::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
}

} // namespace orwick
