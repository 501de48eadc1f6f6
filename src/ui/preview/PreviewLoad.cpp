#include "ui/preview/PreviewLoad.h"

#include "preview/FolderSummary.h"
#include "ui/preview/DocumentDisposal.h"

namespace orwick {

namespace {
// While a load runs, a new request waits this long for a newer one before it starts.
constexpr int kCoalesceMs = 40;
} // namespace

PreviewLoad::PreviewLoad(QObject* parent) : QObject(parent)
{
    m_delay.setSingleShot(true);
    connect(&m_delay, &QTimer::timeout, this, &PreviewLoad::start);
}

void PreviewLoad::show(const FilePath& path, bool force)
{
    if (path == m_path && !force)
        return;
    m_path = path;
    m_sizeTask.cancel();
    // With nothing loading the item loads at once; while a load runs (the cursor is moving
    // faster than items load), only the last of a quick run is loaded.
    const bool busy = m_delay.isActive() || m_task.isRunning();
    m_task.cancel();
    m_delay.start(busy ? kCoalesceMs : 0);
}

void PreviewLoad::clear()
{
    m_delay.stop();
    m_task.cancel();
    m_sizeTask.cancel();
    m_path = {};
}

void PreviewLoad::start()
{
    const TaskSlot::Ticket ticket = m_task.start();
    PreviewRequest request;
    request.path = m_path;
    request.box = m_box;
    request.columnWidth = m_columnWidth;
    PreviewStyle style = PreviewStyle::fromApplication();
    style.pictureRoom = m_pictureRoom;
    request.ink = style.text;
    runInBackground(
        this, [request, style, token = ticket.token] { return std::make_shared<PreparedPreview>(preparePreview(request, style, *token)); },
        [this, ticket](std::shared_ptr<PreparedPreview> prepared) {
            if (!m_task.isCurrent(ticket)) {
                disposeInBackground(std::move(prepared->document));
                return;
            }
            m_task.finish(ticket);
            const bool measures = prepared->content.measuresSize;
            const FilePath path = prepared->content.path;
            Q_EMIT ready(std::move(prepared));
            if (measures)
                measure(path);
        },
        WorkPriority::low);
}

void PreviewLoad::measure(const FilePath& folder)
{
    const TaskSlot::Ticket ticket = m_sizeTask.start();
    runInBackground(
        this,
        [folder, token = ticket.token] {
            const PreviewBudget budget(*token, PreviewLimits{}.milliseconds);
            return preview::measureFolder(folder, budget);
        },
        [this, ticket, folder](preview::FolderSize size) {
            if (!m_sizeTask.isCurrent(ticket))
                return;
            m_sizeTask.finish(ticket);
            Q_EMIT sizeMeasured(folder, preview::describeSize(size));
        },
        WorkPriority::low);
}

} // namespace orwick
