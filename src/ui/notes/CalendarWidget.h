#pragma once
// The calendar: a month grid (weekday names on top, six weeks), each day listing the titles of
// the items on it. Draws a CalendarView and forwards input: the arrows move the keyboard's day
// (a day, a week), Page Up/Down a month, Home today; Tab goes through the day's items; Ctrl+Shift
// with an arrow moves the chosen item by a day or a week (drawn there at once: the change is the
// owner's, moveRequested), Return opens it; dragging an item onto a day moves it there. A
// calendar that can't place items shows its sentence and the date properties to choose from.

#include "notes/CalendarView.h"

#include <QWidget>

namespace orwick {

class CalendarWidget : public QWidget {
    Q_OBJECT
public:
    explicit CalendarWidget(QWidget* parent = nullptr);

    void setCalendar(CalendarView calendar, FileItems items, DatabaseColumns database);
    const CalendarView& calendar() const { return m_calendar; }
    QDate currentDay() const { return m_day; }
    std::optional<FilePath> currentItem() const;
    void moveCurrentItem(int days);

Q_SIGNALS:
    // The keyboard's item changed (the pane selects it, so the window's commands act on it).
    void currentChanged(const orwick::FilePath& item);
    // The month shown should change (the owner builds the new month's CalendarView).
    void monthRequested(QDate month);
    void openRequested(const orwick::FilePath& item);
    void moveRequested(const orwick::FilePath& item, QDate day);
    void calendarByChosen(const QString& key);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QRect dayRect(int index) const;
    int dayAt(QPoint point) const;
    int headerHeight() const;
    void goTo(QDate day);
    void announceCurrent();
    QList<int> itemsOn(QDate day) const { return m_calendar.placed.value(day); }

    CalendarView m_calendar;
    FileItems m_items;
    DatabaseColumns m_database;
    QDate m_day = QDate::currentDate();
    int m_itemInDay = 0;
    int m_choice = 0;
    std::optional<FilePath> m_dragged;
};

} // namespace orwick
