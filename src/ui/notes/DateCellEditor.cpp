#include "ui/notes/DateCellEditor.h"

#include <QKeyEvent>

namespace orwick {

namespace {

// The field's lowest date stands for "no date"; nobody dates a note in the year 1000.
const QDate kNoDate(1000, 1, 1);

} // namespace

DateCellEditor::DateCellEditor(QWidget* parent) : QDateEdit(parent)
{
    setCalendarPopup(true);
    setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    setMinimumDate(kNoDate);
    setSpecialValueText(QStringLiteral("No date"));
}

std::optional<QDate> DateCellEditor::day() const
{
    return date() == kNoDate ? std::nullopt : std::optional(date());
}

void DateCellEditor::setDay(std::optional<QDate> day)
{
    setDate(day.value_or(kNoDate));
}

namespace {

bool isClearKey(const QKeyEvent* event)
{
    return (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) && event->modifiers() == Qt::NoModifier;
}

} // namespace

bool DateCellEditor::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && isClearKey(static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QDateEdit::event(event);
}

void DateCellEditor::keyPressEvent(QKeyEvent* event)
{
    if (isClearKey(event)) {
        setDay(std::nullopt);
        event->accept();
        return;
    }
    // Stepping from an empty field starts at today rather than at the year 1000.
    if (!day() && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        setDay(QDate::currentDate());
        event->accept();
        return;
    }
    QDateEdit::keyPressEvent(event);
}

} // namespace orwick
