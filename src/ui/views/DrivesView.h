#pragma once
// "This Computer": the mounted drives with their free and total space, listed in the
// background. Return or a double click opens a drive in the pane.

#include "async/Background.h"
#include "platform/Drives.h"
#include "state/PaneState.h"

#include <QTreeWidget>

namespace orwick {

class DrivesView : public QTreeWidget {
    Q_OBJECT
public:
    explicit DrivesView(PaneState* pane, QWidget* parent = nullptr);
    void refresh();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showDrives(const QList<Drive>& drives);
    void openCurrent();
    PaneState* m_pane;
    TaskSlot m_listing;
};

} // namespace orwick
