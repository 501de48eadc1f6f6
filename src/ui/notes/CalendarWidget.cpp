#include "ui/notes/CalendarWidget.h"

#include "commands/ViewKeys.h"

#include "ui/notes/DatabaseCard.h"
#include "ui/notes/DatabaseViewInput.h"
#include "ui/theme/Theme.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>

namespace orwick {

CalendarWidget::CalendarWidget(QWidget* parent) : QWidget(parent)
{
    setUpDatabaseView(this);
}

void CalendarWidget::setCalendar(CalendarView calendar, FileItems items, DatabaseColumns database)
{
    m_calendar = std::move(calendar);
    m_items = std::move(items);
    m_database = std::move(database);
    if (!m_calendar.days.contains(m_day))
        m_day = m_calendar.month;
    m_itemInDay = std::clamp(m_itemInDay, 0, std::max(0, int(itemsOn(m_day).size()) - 1));
    update();
}

std::optional<FilePath> CalendarWidget::currentItem() const
{
    const QList<int> on = itemsOn(m_day);
    if (m_itemInDay < 0 || m_itemInDay >= on.size())
        return std::nullopt;
    return m_items.at(on.at(m_itemInDay)).url;
}

int CalendarWidget::headerHeight() const { return fontMetrics().height() * 3 + 16; }

QRect CalendarWidget::dayRect(int index) const
{
    const int top = headerHeight();
    const int w = (width() - 16) / 7, h = (height() - top - 8) / 6;
    return QRect(8 + (index % 7) * w, top + (index / 7) * h, w, h);
}

int CalendarWidget::dayAt(QPoint point) const
{
    for (int i = 0; i < m_calendar.days.size(); ++i)
        if (dayRect(i).contains(point))
            return i;
    return -1;
}

void CalendarWidget::announceCurrent()
{
    if (const auto item = currentItem())
        Q_EMIT currentChanged(*item);
}

void CalendarWidget::goTo(QDate day)
{
    m_day = day;
    m_itemInDay = 0;
    announceCurrent();
    if (CalendarView::monthOf(day) != m_calendar.month)
        Q_EMIT monthRequested(CalendarView::monthOf(day));
    update();
}

void CalendarWidget::moveCurrentItem(int days)
{
    const std::optional<FilePath> item = currentItem();
    if (!item || !m_calendar.problem.isEmpty())
        return;
    const QDate to = m_day.addDays(days);
    // Drawn on its new day at once; the store's reading follows the engine's write.
    const int index = m_calendar.placed[m_day].takeAt(m_itemInDay);
    if (m_calendar.placed[m_day].isEmpty())
        m_calendar.placed.remove(m_day);
    QList<int>& target = m_calendar.placed[to];
    target.append(index);
    std::sort(target.begin(), target.end());
    Q_EMIT moveRequested(*item, to);
    m_day = to;
    m_itemInDay = int(target.indexOf(index));
    if (CalendarView::monthOf(to) != m_calendar.month && !m_calendar.days.contains(to))
        Q_EMIT monthRequested(CalendarView::monthOf(to));
    update();
}

void CalendarWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QPalette& palette = this->palette();
    const int line = fontMetrics().height();
    QFont big = font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    painter.setFont(big);
    painter.setPen(palette.color(QPalette::Text));
    const QLocale locale;
    painter.drawText(QRect(12, 6, width() - 24, line * 2), Qt::AlignLeft | Qt::AlignVCenter,
                     locale.standaloneMonthName(m_calendar.month.month()) + QLatin1Char(' ') + QString::number(m_calendar.month.year()));
    painter.setFont(font());
    painter.setPen(palette.color(QPalette::PlaceholderText));
    QString note = m_calendar.key.isEmpty() ? QString() : QStringLiteral("by ") + m_calendar.key;
    if (m_calendar.undated > 0)
        note += (note.isEmpty() ? QString() : QStringLiteral(" · ")) + QString::number(m_calendar.undated)
              + (m_calendar.undated == 1 ? QStringLiteral(" item without a date") : QStringLiteral(" items without a date"));
    painter.drawText(QRect(12, 6, width() - 24, line * 2), Qt::AlignRight | Qt::AlignVCenter, note);

    if (!m_calendar.problem.isEmpty()) {
        painter.setPen(palette.color(QPalette::Text));
        painter.drawText(QRect(24, headerHeight(), width() - 48, line * 2), Qt::TextWordWrap, m_calendar.problem);
        int y = headerHeight() + line * 2 + 8;
        for (int i = 0; i < m_calendar.choices.size(); ++i) {
            drawCard(painter, this, QRect(24, y, 240, line + 8), m_calendar.choices.at(i), {}, {i == m_choice, i == m_choice, hasFocus()});
            y += line + 14;
        }
        return;
    }
    for (int column = 0; column < 7 && column < m_calendar.days.size(); ++column) {
        const QRect top = dayRect(column);
        painter.drawText(QRect(top.left(), headerHeight() - line - 6, top.width(), line), Qt::AlignCenter,
                         locale.dayName(m_calendar.days.at(column).dayOfWeek(), QLocale::ShortFormat));
    }
    const QDate today = QDate::currentDate();
    for (int i = 0; i < m_calendar.days.size(); ++i) {
        const QDate day = m_calendar.days.at(i);
        const QRect cell = dayRect(i).adjusted(1, 1, -1, -1);
        const bool inMonth = CalendarView::monthOf(day) == m_calendar.month;
        painter.fillRect(cell, inMonth ? palette.color(QPalette::Base) : palette.color(QPalette::AlternateBase));
        painter.setBrush(Qt::NoBrush);
        if (day == m_day) {
            painter.setPen(QPen(hasFocus() ? theme::cursorRing() : theme::separator(), 2));
            painter.drawRect(cell.adjusted(1, 1, -1, -1));
        } else {
            painter.setPen(theme::separator());
            painter.drawRect(cell);
        }
        const QRect number(cell.left() + 4, cell.top() + 2, cell.width() - 8, line);
        if (day == today) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setBrush(theme::accent());
            painter.setPen(Qt::NoPen);
            painter.drawEllipse(QRect(number.right() - line - 2, number.top(), line + 4, line));
            painter.setPen(theme::onAccent());
            painter.drawText(QRect(number.right() - line - 2, number.top(), line + 4, line), Qt::AlignCenter, QString::number(day.day()));
        } else {
            painter.setPen(inMonth ? palette.color(QPalette::Text) : palette.color(QPalette::PlaceholderText));
            painter.drawText(number, Qt::AlignRight | Qt::AlignVCenter, QString::number(day.day()));
        }
        const QList<int> on = itemsOn(day);
        int y = number.bottom() + 3;
        for (int k = 0; k < on.size(); ++k) {
            const QRect chip(cell.left() + 3, y, cell.width() - 6, line + 2);
            if (chip.bottom() > cell.bottom() - 2) {
                painter.setPen(palette.color(QPalette::PlaceholderText));
                painter.drawText(QRect(cell.left() + 4, cell.bottom() - line - 1, cell.width() - 8, line), Qt::AlignLeft,
                                 QStringLiteral("+%1 more").arg(on.size() - k));
                break;
            }
            const FileItem& item = m_items.at(on.at(k));
            const bool chosen = day == m_day && k == m_itemInDay;
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(chosen ? theme::selection() : theme::accentFill());
            painter.drawRoundedRect(chip, 3, 3);
            painter.setPen(palette.color(QPalette::Text));
            painter.drawText(chip.adjusted(4, 0, -4, 0), Qt::AlignLeft | Qt::AlignVCenter,
                             fontMetrics().elidedText(itemTitle(item, m_database.values.value(item.url)), Qt::ElideRight, chip.width() - 8));
            y += line + 4;
        }
    }
}

void CalendarWidget::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::calendar, event->keyCombination());
    if (!m_calendar.problem.isEmpty()) { // the calendar asks which date to follow: Up, Down and Return choose
        if (action == A::calendarPreviousWeek)
            m_choice = std::max(0, m_choice - 1);
        else if (action == A::calendarNextWeek)
            m_choice = std::min(int(m_calendar.choices.size()) - 1, m_choice + 1);
        else if (action == A::calendarOpen && m_choice >= 0 && m_choice < m_calendar.choices.size())
            Q_EMIT calendarByChosen(m_calendar.choices.at(m_choice));
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
    case A::calendarOpen: openCurrentOnReturn(*this, event); return;
    case A::calendarPreviousDay: return goTo(m_day.addDays(-1));
    case A::calendarNextDay: return goTo(m_day.addDays(1));
    case A::calendarPreviousWeek: return goTo(m_day.addDays(-7));
    case A::calendarNextWeek: return goTo(m_day.addDays(7));
    case A::calendarPreviousMonth: return goTo(m_day.addMonths(-1));
    case A::calendarNextMonth: return goTo(m_day.addMonths(1));
    case A::calendarToday: return goTo(QDate::currentDate());
    case A::calendarItemDayEarlier: return moveCurrentItem(-1);
    case A::calendarItemDayLater: return moveCurrentItem(1);
    case A::calendarItemWeekEarlier: return moveCurrentItem(-7);
    case A::calendarItemWeekLater: return moveCurrentItem(7);
    default: QWidget::keyPressEvent(event); return; // Tab goes through the day's notes (focusNextPrevChild)
    }
}

bool CalendarWidget::focusNextPrevChild(bool next)
{
    // Tab and Shift+Tab go through the day's items, and stay in the calendar.
    const int count = int(itemsOn(m_day).size());
    if (count > 0)
        m_itemInDay = (m_itemInDay + (next ? 1 : count - 1)) % count;
    announceCurrent();
    update();
    return true;
}

void CalendarWidget::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    const int index = dayAt(event->position().toPoint());
    if (index < 0)
        return;
    const QDate day = m_calendar.days.at(index);
    const QRect cell = dayRect(index);
    const int line = fontMetrics().height();
    const int k = (event->position().toPoint().y() - (cell.top() + 3 + line + 3)) / (line + 4);
    m_day = day;
    m_itemInDay = std::clamp(k, 0, std::max(0, int(itemsOn(day).size()) - 1));
    m_dragged = k >= 0 && k < itemsOn(day).size() ? currentItem() : std::nullopt;
    announceCurrent();
    update();
}

void CalendarWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const int index = dayAt(event->position().toPoint());
    if (m_dragged && index >= 0 && m_calendar.days.at(index) != m_day && currentItem() == m_dragged)
        moveCurrentItem(int(m_day.daysTo(m_calendar.days.at(index))));
    m_dragged.reset();
}

void CalendarWidget::mouseDoubleClickEvent(QMouseEvent*)
{
    if (const auto item = currentItem())
        Q_EMIT openRequested(*item);
}

} // namespace orwick
