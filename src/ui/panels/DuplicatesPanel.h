#pragma once
// DuplicatesPanel: "Find Duplicates…" on a folder. Searches in the background (three stages,
// progress sampled ten times a second), lists the groups largest waste first with a box per
// file, ticks extra copies by the keep rule, and hands the ticked files to the Trash in one
// undoable step. Changing the minimum size starts a new search; closing cancels the running one.
// By keyboard (ViewKeys' Find Duplicates): Space ticks the file, Return shows it in its folder,
// Delete moves the ticked files to the Trash, as Remove Duplicates does.

#include "async/Background.h"
#include "disktools/DuplicatesChoice.h"
#include "ui/panels/PanelSheet.h"

#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QPushButton;
class QStackedWidget;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

namespace orwick {

class PaneState;

class DuplicatesPanel : public PanelSheet {
    Q_OBJECT
public:
    DuplicatesPanel(PaneState* pane, QWidget* window);
    ~DuplicatesPanel() override;

    const FilePath& folder() const { return m_folder; }
    bool isSearching() const { return !m_scanned; }
    bool isTrashing() const { return m_trashing; }
    const DuplicatesChoice& choice() const { return m_choice; }

    void find();
    void tickExtraCopies();
    void trashChosen();

protected:
    void stopWork() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showProgress();
    void showResult();
    void fillTree();
    void updateFooter();
    void itemChanged(QTreeWidgetItem* item);
    void showInFolder(const FilePath& file);

    PaneState* m_pane;
    FilePath m_folder;
    qint64 m_minimumSize;
    TaskSlot m_task;
    std::shared_ptr<Duplicates::Progress> m_progress;
    bool m_scanned = false;
    DuplicatesChoice m_choice;
    bool m_filling = false;
    bool m_trashing = false; // a Trash step is under way
    bool m_removedAny = false; // files of this result went to the Trash

    QComboBox* m_sizes;
    QPushButton* m_tick;
    QPushButton* m_remove;
    QStackedWidget* m_stack;
    QLabel* m_placeholder;
    QTreeWidget* m_tree;
    QTimer* m_ticker;
};

} // namespace orwick
