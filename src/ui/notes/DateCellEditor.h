#pragma once
// DateCellEditor: the in-place editor of a date property — a date field with a calendar that can
// also hold no date. Delete or Backspace empties it (it reads "No date"), and an empty field
// removes the property from the note when it is committed; picking or typing a date fills it
// again.

#include <QDateEdit>

namespace orwick {

class DateCellEditor : public QDateEdit {
    Q_OBJECT
public:
    explicit DateCellEditor(QWidget* parent = nullptr);

    // The date shown, or nothing when the field is empty.
    std::optional<QDate> day() const;
    void setDay(std::optional<QDate> day);

protected:
    // Delete and Backspace belong to the field while it edits, ahead of the window's shortcuts.
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace orwick
