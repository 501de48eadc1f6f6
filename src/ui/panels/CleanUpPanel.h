#pragma once
// CleanUpPanel: "Clean Up Build Folders…" on a folder. Finds the folders build tools regenerate
// (seven levels down), lists each with its kind, measures them all in the background, and moves
// the ticked ones to the Trash in one undoable step; rows that could not be moved stay.
// Closing cancels the search and the measuring. By keyboard: the arrows move through the rows,
// Space ticks, Delete moves the ticked folders to the Trash, Return shows the row's folder in
// the pane (ViewKeys' Clean Up Build Folders).

#include "async/Background.h"
#include "disktools/BuildJunk.h"
#include "ui/panels/PanelSheet.h"

class QLabel;
class QPushButton;
class QStackedWidget;
class QTreeWidget;

namespace orwick {

class PaneState;

class CleanUpPanel : public PanelSheet {
    Q_OBJECT
public:
    CleanUpPanel(PaneState* pane, QWidget* window);
    ~CleanUpPanel() override;

    struct Row {
        BuildJunk::Found found;
        std::optional<qint64> size;
        bool ticked = true;
    };
    const std::vector<Row>& rows() const { return m_rows; }
    bool isScanning() const { return m_isScanning; }
    bool isTrashing() const { return m_trashing; }
    void trashTicked();

protected:
    void stopWork() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void search();
    void measure();
    void fill();
    void updateFooter();

    PaneState* m_pane;
    FilePath m_folder;
    TaskSlot m_task;
    std::vector<Row> m_rows;
    bool m_isScanning = false;
    bool m_filling = false;
    bool m_trashing = false; // a Trash step is under way
    QPushButton* m_trash;
    QStackedWidget* m_stack;
    QLabel* m_placeholder;
    QTreeWidget* m_list;
    QLabel* m_totals;
};

} // namespace orwick
