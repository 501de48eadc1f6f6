#pragma once
// FolderComparisonView: two folders compared (FolderDiff) — a heading with the summary, a filter
// by status (every difference, or one status), the list of entries and the sync actions. The
// comparison runs in the background when the view opens and again after every sync, undo or
// redo (once the file operations are idle). A sync asks first with the plan's own sentence and
// runs as one undoable step of the file operations engine; the keyboard comes back to the view
// when the question closes, so Ctrl+Z can undo it at once. Return on a changed file pair asks
// for the two versions to be compared (pairOpened). Tab goes round the list, the filter and the
// Sync button; S opens Sync's choices from anywhere in the view.

#include "async/Background.h"
#include "disktools/FolderDiff.h"

#include <QWidget>
#include <optional>

class QAction;
class QComboBox;
class QLabel;
class QStackedWidget;
class QToolButton;
class QTreeWidget;

namespace orwick {

class WindowState;

class FolderComparisonView : public QWidget {
    Q_OBJECT
public:
    FolderComparisonView(WindowState& state, const FilePath& left, const FilePath& right, QWidget* parent);
    ~FolderComparisonView() override;

    // The filter: a status, or none for every difference.
    std::optional<FolderDiff::Status> filter() const { return m_filter; }
    void setFilter(std::optional<FolderDiff::Status> filter);
    const std::optional<FolderDiff::Result>& result() const { return m_result; }
    QString heading() const;
    bool isComparing() const { return m_task.isRunning(); }
    int revision() const { return m_revision; }
    QTreeWidget* list() const { return m_list; }
    // The Sync button's choices: copy what's missing either way, both ways, mirror either way.
    QList<QAction*> syncActions() const;

    // Confirms (unless `confirmed`) and runs one sync.
    void sync(FolderDiff::SyncMode mode, bool confirmed = false);
    // Shows Sync's choices under its button (what S does); nothing while there is nothing to sync.
    void showSyncChoices();
    void compareAgain();
    void stop();

Q_SIGNALS:
    void footerChanged(const QString& text);
    void pairOpened(const FilePath& left, const FilePath& right);
    void compared(); // a comparison's result is shown

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Tab stays among the view's own parts instead of reaching the panes under the sheet.
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void fill();
    void openPair(const QByteArray& path);
    void watchUndo();
    void runSync(const FolderDiff::SyncPlan& plan, const QString& title);

    WindowState& m_state;
    FilePath m_left;
    FilePath m_right;
    std::optional<QString> m_problem;
    std::optional<FolderDiff::Result> m_result;
    std::optional<FolderDiff::Status> m_filter;
    TaskSlot m_task;
    int m_revision = 0;
    bool m_replayPending = false;

    QLabel* m_heading;
    QComboBox* m_filterBox;
    QToolButton* m_syncButton;
    QStackedWidget* m_stack;
    QLabel* m_placeholder;
    QTreeWidget* m_list;
};

} // namespace orwick
