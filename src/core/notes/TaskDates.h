#pragma once
// TaskDates: what a task's text says after its checkbox — dates behind 📅 (due), ⏳ (scheduled),
// 🛫 (start) and ✅ (done), a priority marker (🔺 ⏫ 🔼 🔽 ⏬) and a recurrence behind 🔁 — and
// the two things done with it: labelling a date relative to today, and toggling the task's line.
// Pure; safe on any thread.

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace orwick {

struct TaskDates {
    enum class Priority { lowest, low, normal, medium, high, highest };
    enum class Field { due, scheduled, start, done };

    struct Marker {
        QString symbol;
        Field field;
    };
    // 📅 ⏳ 🛫 ✅, in this order.
    static const QList<Marker>& markers();
    struct PriorityMarker {
        QString symbol;
        Priority priority;
    };
    // 🔺 highest, ⏫ high, 🔼 medium, 🔽 low, ⏬ lowest.
    static const QList<PriorityMarker>& priorities();
    static const QString& recurrenceMarker(); // 🔁

    QString title; // the text without markers and their values
    std::optional<QDate> due;
    std::optional<QDate> scheduled;
    std::optional<QDate> start;
    std::optional<QDate> done;
    Priority priority = Priority::normal;
    std::optional<QString> recurrence;

    // Reads a task's text. A marker's date may follow after spaces; the first of a repeated
    // marker counts. A marker whose date can't be read stays in the title.
    static TaskDates parse(const QString& text);

    // A date written after a marker: exactly ten characters "yyyy-MM-dd" (numbers split by "-").
    static std::optional<QDate> date(QStringView text);

    // "Today", "Yesterday", "Tomorrow", the weekday for two to six days ahead, else a date (with
    // the year when it differs from today's).
    static QString label(QDate date, QDate today);

    // The task line toggled: the checkbox flipped and the rest kept. Completing adds "✅ today";
    // reopening drops the done date. Completing a recurring task ("every day", "every 2 weeks",
    // "every month"…) also gives the next open occurrence, first, with its dates moved on.
    // Nothing when the line isn't a task.
    static std::optional<QStringList> toggle(const QString& line, QDate today);

    bool operator==(const TaskDates&) const = default;
};

} // namespace orwick
