#include "ui/panels/GuideSheet.h"

#include "base/CancelFlag.h"
#include "help/GuideTopics.h"
#include "state/WindowState.h"
#include "ui/preview/PreparedPreview.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QMainWindow>
#include <QPointer>
#include <QTextBrowser>

namespace orwick {

namespace {
constexpr int kTopicListWidth = 220;
}

GuideSheet::GuideSheet(WindowState& state, QWidget* window)
    : PanelSheet(QStringLiteral("Orwick Guide"), QStringLiteral("what Orwick does, and the keys for it"), window), m_state(state)
{
    m_topics = new QListWidget(this);
    m_topics->setFixedWidth(kTopicListWidth);
    for (const GuideTopic& topic : guide::topics()) {
        auto* row = new QListWidgetItem(topic.title, m_topics);
        row->setData(Qt::UserRole, topic.id);
    }
    m_article = new QTextBrowser(this);
    m_article->setOpenLinks(false); // the articles name commands; they link nowhere
    m_article->setFrameShape(QFrame::NoFrame);
    m_article->setTabChangesFocus(true); // Tab in the article goes on round the sheet
    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(m_topics);
    row->addWidget(m_article, 1);
    body()->addLayout(row, 1);
    setFooter(QStringLiteral("↑↓ choose a topic · Tab reads the article · Esc closes"));

    showTopic(state.learnArticle().value_or(guide::topics().first().id));
    connect(m_topics, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0 && row < guide::topics().size())
            m_state.setLearnArticle(guide::topics()[row].id); // the window's field turns the sheet
    });
    connect(this, &PanelSheet::closed, this, [this] { m_state.setLearnArticle(std::nullopt); });
    present(m_topics);
}

void GuideSheet::showTopic(const QString& topicId)
{
    const GuideTopic* topic = guide::find(topicId);
    if (!topic || topic->id == m_shown)
        return;
    m_shown = topic->id;
    m_topics->setCurrentRow(int(topic - guide::topics().data()));
    PreviewRequest request;
    request.path = FilePath::fromText(topic->resource);
    PreviewStyle style = PreviewStyle::fromApplication();
    const PreparedPreview prepared = prepareNoteText(guide::articleText(*topic), request, style, CancelFlag());
    if (prepared.document) {
        // The browser lets go of its own first document itself; an article before is ours to free.
        QPointer<QTextDocument> before = m_article->document();
        m_article->setDocument(prepared.document->clone(m_article));
        if (before && before->parent() == m_article)
            delete before;
    } else {
        m_article->setPlainText(QStringLiteral("This article is missing from this build of Orwick."));
    }
}

void GuideSheet::follow(WindowState& state, QMainWindow* window)
{
    QObject::connect(&state, &WindowState::learnArticleChanged, window, [&state, window] {
        GuideSheet* open = nullptr;
        for (GuideSheet* sheet : window->findChildren<GuideSheet*>(Qt::FindDirectChildrenOnly))
            if (!sheet->isHidden())
                open = sheet;
        const std::optional<QString>& topic = state.learnArticle();
        if (!topic) {
            if (open)
                open->closeSheet();
        } else if (open) {
            open->showTopic(*topic);
        } else {
            PanelSheet::closeOpenSheet(window);
            new GuideSheet(state, window);
        }
    });
}

} // namespace orwick
