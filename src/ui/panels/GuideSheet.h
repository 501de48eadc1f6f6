#pragma once
// GuideSheet: the Orwick Guide — the guide's topics on the left, the chosen topic's article on
// the right, rendered as the preview renders notes. It draws the window's learnArticle(): the
// sheet opens when the window names an article, shows the one named, and clears the field when it
// closes. Up and Down choose a topic (the article follows at once), Tab moves into the article to
// scroll and select it and Shift+Tab comes back, Esc closes. Drawn as the other sheets.

#include "ui/panels/PanelSheet.h"

class QListWidget;
class QMainWindow;
class QTextBrowser;

namespace orwick {

class WindowState;

class GuideSheet : public PanelSheet {
    Q_OBJECT
public:
    GuideSheet(WindowState& state, QWidget* window);

    // Opens, turns or closes the guide over `window` as `state`'s learnArticle() changes.
    static void follow(WindowState& state, QMainWindow* window);

    QListWidget* topicList() const { return m_topics; }
    QTextBrowser* article() const { return m_article; }
    // The id of the topic shown.
    QString shownTopic() const { return m_shown; }

private:
    void showTopic(const QString& topicId);

    WindowState& m_state;
    QListWidget* m_topics;
    QTextBrowser* m_article;
    QString m_shown;
};

} // namespace orwick
