#pragma once
// The Tasks view: every task under the folder, grouped by due date (TaskList::groups) — the box,
// the title without markers, its due, scheduled and start dates labelled relative to today, its
// priority, recurrence and note. Space toggles the task under the cursor (the change is the
// owner's: toggleRequested), Return opens its note. Notes that couldn't be read are listed last,
// by their sentence.

#include "notes/TaskList.h"

#include <QTreeWidget>

namespace orwick {

class TasksWidget : public QTreeWidget {
    Q_OBJECT
public:
    explicit TasksWidget(QWidget* parent = nullptr);

    void setTasks(const TaskList& list, QDate today);
    void setLoading();
    std::optional<ListedTask> currentTask() const;

Q_SIGNALS:
    void toggleRequested(const orwick::ListedTask& task);
    void openRequested(const orwick::FilePath& note);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QList<ListedTask> m_tasks;
};

} // namespace orwick
