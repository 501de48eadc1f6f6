#pragma once
// FindInFilesPanel: "Find in Files…" on the active pane's folder. Typing searches (after a short
// pause) with the tool ContentSearch chooses; results stream in grouped by file with the matched
// text marked; a new search replaces the one in flight, whose late output is dropped. Up and
// Down move through the matches, Return opens the highlighted file, Ctrl+Return opens it in the
// code editor at its line, in the query field and in the results alike (typing in the results
// goes on with the query). Tab goes round the query, the two switches and the results. Alt+R
// switches regular expressions and Alt+C matching case from anywhere in the panel, searching
// again. The keys are ViewKeys' Find in Files. The empty state says why there is nothing: no query yet, no match, the tool's
// complaint, or no tool. Closing stops the running search.

#include "async/Background.h"
#include "disktools/ContentSearchResults.h"
#include "disktools/ContentSearchRun.h"
#include "ui/panels/PanelSheet.h"

class QLabel;
class QLineEdit;
class QListView;
class QStackedWidget;
class QTimer;
class QToolButton;

namespace orwick {

class FindResultsModel;
class MatchLineDelegate;
class PaneState;

class FindInFilesPanel : public PanelSheet {
    Q_OBJECT
public:
    FindInFilesPanel(PaneState* pane, QWidget* window);
    ~FindInFilesPanel() override;

    const FilePath& folder() const { return m_folder; }
    QString query() const;
    void setQuery(const QString& query); // searches at once
    ContentSearch::Options options() const { return m_options; }
    void setOptions(const ContentSearch::Options& options);
    const ContentSearch::Results& results() const { return m_results; }
    bool isSearching() const { return m_task.isRunning(); }
    qint64 highlighted() const { return m_highlighted; }
    QString emptyText() const;

    void moveHighlight(int step);
    void openHighlighted();
    void openHighlightedInEditor();

Q_SIGNALS:
    void searchFinished(); // after the last batch of a search that was not replaced

protected:
    void stopWork() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void search();
    void receive(std::vector<ContentSearch::FileMatches>&& batch, bool done, const ContentSearch::RunOutcome& outcome);
    void setHighlighted(qint64 index);
    void showState();
    void updateFooter();
    std::optional<std::pair<FilePath, qint64>> highlightedMatch() const;

    PaneState* m_pane;
    FilePath m_folder;
    ContentSearch::Options m_options;
    ContentSearch::Results m_results;
    std::optional<ContentSearch::RunOutcome> m_outcome; // of the last search that ended
    QString m_searched; // the query of the results shown
    qint64 m_highlighted = -1;
    TaskSlot m_task;

    QLineEdit* m_field;
    QToolButton* m_regex;
    QToolButton* m_matchCase;
    QStackedWidget* m_stack;
    QLabel* m_empty;
    QListView* m_list;
    FindResultsModel* m_model;
    MatchLineDelegate* m_delegate;
    QTimer* m_pause;
};

} // namespace orwick
