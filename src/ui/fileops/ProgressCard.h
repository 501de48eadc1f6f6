#pragma once
// The progress card: running file jobs, bottom right of the window. Collapsed it shows the
// first job and how many more run; expanded, one row per job with bytes done of total, the
// current file and a cancel button. Hidden while no job runs. Redraws on FileOperations'
// progress ticks (about ten a second), never polls by itself.

#include "fileops/FileOperations.h"

#include <QWidget>

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace orwick {

class ProgressCard : public QWidget {
    Q_OBJECT
public:
    ProgressCard(FileOperations* operations, QWidget* window);

    bool isExpanded() const { return m_expanded; }
    void setExpanded(bool expanded);
    // The text of each shown row, for tests: "title — 1.2 MB of 3 MB — file".
    QStringList rowTexts() const;

    // "1.2 MB of 3.4 MB" (or "12 of 40" items when a job counts items).
    static QString progressText(const CopyProgress::Snapshot& snapshot);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void rebuild();
    void refresh();
    void place();

    FileOperations* m_operations;
    QVBoxLayout* m_rows;
    QToolButton* m_toggle;
    bool m_expanded = false;
    struct Row {
        quint64 id;
        QWidget* widget;
        QLabel* title;
        QLabel* detail;
    };
    QList<Row> m_shown;
};

} // namespace orwick
