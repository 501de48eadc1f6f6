#pragma once
// DrivesBreakdownView: the space tools' drives view. Lists the mounted drives with free and
// total space (an eject button for removable ones) and, for the drive holding the home folder,
// rows for the places that fill a home plus the remainder line. "Show What's Using Space"
// measures the rows in the background and saves the result under "spaceBreakdown"; the saved
// result shows again when the view opens. stop(), or destroying the view, cancels a running
// measurement.

#include "async/Background.h"
#include "disktools/SpaceBreakdown.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QPushButton;

namespace orwick {

class DrivesBreakdownView : public QWidget {
    Q_OBJECT
public:
    explicit DrivesBreakdownView(QWidget* parent = nullptr);
    ~DrivesBreakdownView() override;

    void measure();
    void stop();
    bool isMeasuring() const { return m_task.isRunning(); }

Q_SIGNALS:
    void mapHomeRequested();

private:
    void showDrives();
    void showRows();

    TaskSlot m_task;
    QList<Drive> m_drives;
    QGridLayout* m_drivesGrid;
    std::vector<SpaceBreakdown::Row> m_rows;
    std::optional<QDateTime> m_measuredAt;
    QGridLayout* m_rowsGrid;
    QLabel* m_status;
    QPushButton* m_measure;
};

} // namespace orwick
