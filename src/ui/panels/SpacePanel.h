#pragma once
// SpacePanel: "Show Space Used…" on a folder. Scans it in the background with a live count,
// then shows the current folder's children as a treemap: hover names a block and its size, a
// click goes into a folder (or selects a file in the pane), Backspace goes back out, a block's
// menu moves it to the Trash and the map updates. The same by keyboard: the arrows choose a
// block, Return goes in, Delete moves it to the Trash (TreemapWidget). The "Drives" view lists the mounted drives
// and measures the home folder's heavy places. Closing cancels the scan.

#include "async/Background.h"
#include "disktools/SpaceScan.h"
#include "ui/panels/PanelSheet.h"

#include <memory>

class QLabel;
class QPushButton;
class QStackedWidget;
class QTimer;

namespace orwick {

class DrivesBreakdownView;
class PaneState;
class TreemapWidget;

class SpacePanel : public PanelSheet {
    Q_OBJECT
public:
    SpacePanel(PaneState* pane, QWidget* window);
    ~SpacePanel() override;

    // Scans `folder` and shows it, or the folder `showing` below it when that is still there.
    void scan(const FilePath& folder, const std::optional<FilePath>& showing = std::nullopt);
    const SpaceNode* root() const { return m_root.get(); }
    const SpaceNode* current() const { return m_current; }
    void goIn(SpaceNode* node);
    void goOut();
    // Moves a block's file or folder to the Trash (one undo step); the map loses it when it went.
    // The small-files block (null) stands for no one item: the toast says so and nothing moves.
    void trashNode(SpaceNode* node);
    bool isTrashing() const { return m_trashing; }
    int revision() const { return m_revision; } // bumped after every change of the tree

protected:
    void stopWork() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showCurrent();
    void open(SpaceNode* node);
    void offerMenu(SpaceNode* node, const QPoint& at);
    void showDrives(bool drives);

    PaneState* m_pane;
    FilePath m_folder;
    TaskSlot m_task;
    std::shared_ptr<CancelFlag> m_flag;
    std::shared_ptr<SpaceScan::Shared> m_shared;
    std::unique_ptr<SpaceNode> m_root;
    SpaceNode* m_current = nullptr;
    int m_revision = 0;
    qint64 m_items = 0; // the entries under the folder: as scanned, less those trashed since
    bool m_trashing = false;

    QPushButton* m_drivesButton;
    QStackedWidget* m_stack;
    QLabel* m_placeholder;
    QWidget* m_mapPage;
    QLabel* m_where;
    QLabel* m_hover;
    TreemapWidget* m_map;
    DrivesBreakdownView* m_drives = nullptr;
    QString m_footerBeforeDrives; // what the footer said before the drives were shown
    QTimer* m_ticker;
};

} // namespace orwick
