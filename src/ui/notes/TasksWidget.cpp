#include "ui/notes/TasksWidget.h"

#include "ui/theme/Theme.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace orwick {

namespace {

constexpr int kTaskRole = Qt::UserRole + 1;

QString priorityText(TaskDates::Priority priority)
{
    switch (priority) {
    case TaskDates::Priority::highest: return QStringLiteral("Highest");
    case TaskDates::Priority::high: return QStringLiteral("High");
    case TaskDates::Priority::medium: return QStringLiteral("Medium");
    case TaskDates::Priority::low: return QStringLiteral("Low");
    case TaskDates::Priority::lowest: return QStringLiteral("Lowest");
    case TaskDates::Priority::normal: break;
    }
    return {};
}

QString label(const std::optional<QDate>& date, QDate today) { return date ? TaskDates::label(*date, today) : QString(); }

} // namespace

TasksWidget::TasksWidget(QWidget* parent) : QTreeWidget(parent)
{
    setColumnCount(7);
    setHeaderLabels({QStringLiteral("Task"), QStringLiteral("Due"), QStringLiteral("Scheduled"), QStringLiteral("Start"),
                     QStringLiteral("Priority"), QStringLiteral("Repeats"), QStringLiteral("Note")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setStretchLastSection(false);
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        const QVariant index = item->data(0, kTaskRole);
        if (index.isValid())
            Q_EMIT openRequested(m_tasks.at(index.toInt()).task.note);
    });
}

void TasksWidget::setLoading()
{
    if (topLevelItemCount() == 0)
        addTopLevelItem(new QTreeWidgetItem({QStringLiteral("Reading tasks…")}));
}

void TasksWidget::setTasks(const TaskList& list, QDate today)
{
    // Keep the cursor on the same task (note and line) across readings.
    const std::optional<ListedTask> keep = currentTask();
    m_tasks = list.tasks;
    clear();
    QTreeWidgetItem* restore = nullptr;
    QFont heading = font();
    heading.setBold(true);
    for (const TaskList::Group& group : list.groups(today)) {
        auto* title = new QTreeWidgetItem({QStringLiteral("%1 (%2)").arg(group.title).arg(group.tasks.size())});
        title->setFont(0, heading);
        title->setFlags(Qt::ItemIsEnabled);
        title->setFirstColumnSpanned(false);
        addTopLevelItem(title);
        for (int index : group.tasks) {
            const ListedTask& entry = m_tasks.at(index);
            QString note = entry.task.note.native().startsWith(list.folder.native() + '/')
                             ? QString::fromUtf8(entry.task.note.native().mid(list.folder.native().size() + 1))
                             : entry.task.note.fileName();
            auto* row = new QTreeWidgetItem({(entry.task.isDone ? QStringLiteral("☑  ") : QStringLiteral("☐  ")) + entry.dates.title,
                                             label(entry.dates.due, today), label(entry.dates.scheduled, today),
                                             label(entry.dates.start, today), priorityText(entry.dates.priority),
                                             entry.dates.recurrence.value_or(QString()),
                                             note + QLatin1Char(':') + QString::number(entry.task.line)});
            row->setData(0, kTaskRole, index);
            if (entry.task.isDone)
                for (int column = 0; column < 7; ++column)
                    row->setForeground(column, palette().color(QPalette::PlaceholderText));
            if (!entry.task.isDone && entry.dates.due && *entry.dates.due < today)
                row->setForeground(1, theme::negative());
            addTopLevelItem(row);
            if (keep && keep->task.note == entry.task.note && keep->task.line == entry.task.line)
                restore = row;
            else if (!restore && topLevelItemCount() == 2)
                restore = row;
        }
    }
    if (!list.problems.isEmpty()) {
        auto* title = new QTreeWidgetItem({QStringLiteral("Couldn’t read (%1)").arg(list.problems.size())});
        title->setFont(0, heading);
        addTopLevelItem(title);
        for (const QString& problem : list.problems)
            addTopLevelItem(new QTreeWidgetItem({problem}));
    }
    if (topLevelItemCount() == 0)
        addTopLevelItem(new QTreeWidgetItem({QStringLiteral("No tasks in these notes")}));
    if (restore)
        setCurrentItem(restore);
    for (int column = 1; column < 7; ++column)
        resizeColumnToContents(column);
}

std::optional<ListedTask> TasksWidget::currentTask() const
{
    const QTreeWidgetItem* item = currentItem();
    if (!item || !item->data(0, kTaskRole).isValid())
        return std::nullopt;
    const int index = item->data(0, kTaskRole).toInt();
    return index >= 0 && index < m_tasks.size() ? std::optional(m_tasks.at(index)) : std::nullopt;
}

void TasksWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        if (const auto task = currentTask())
            Q_EMIT toggleRequested(*task);
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

} // namespace orwick
