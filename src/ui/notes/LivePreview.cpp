#include "ui/notes/LivePreview.h"

#include "ui/preview/DocumentDisposal.h"
#include "ui/preview/PreparedPreview.h"
#include "ui/preview/PreviewView.h"

namespace orwick {

LivePreview::LivePreview(const FilePath& note, PreviewView* view, QObject* parent) : QObject(parent), m_note(note), m_view(view)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(kDelayMs);
    connect(&m_delay, &QTimer::timeout, this, &LivePreview::render);
}

void LivePreview::setText(const QString& text, bool now)
{
    m_text = text;
    m_delay.start(now ? 0 : kDelayMs);
}

void LivePreview::render()
{
    const TaskSlot::Ticket ticket = m_task.start();
    PreviewRequest request;
    request.path = m_note;
    request.columnWidth = std::max(120, m_view->width() - 48);
    const PreviewStyle style = PreviewStyle::fromApplication();
    runInBackground(
        this,
        [text = m_text, request, style, token = ticket.token] {
            return std::make_shared<PreparedPreview>(prepareNoteText(text, request, style, *token));
        },
        [this, ticket](std::shared_ptr<PreparedPreview> prepared) {
            if (!m_task.isCurrent(ticket) || prepared->content.isEmpty()) {
                disposeInBackground(std::move(prepared->document));
                return;
            }
            m_task.finish(ticket);
            m_view->showPrepared(std::move(*prepared));
            Q_EMIT shown();
        });
}

} // namespace orwick
