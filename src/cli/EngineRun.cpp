#include "cli/EngineRun.h"

#include <QEventLoop>

namespace orwick::cli {

EngineRun::EngineRun(bool followLinks)
{
    if (!followLinks)
        return;
    // Made before the counters are connected, so the updater hears of each move first; an
    // update that ends at once (nothing to read) is then counted before its move is.
    m_links = std::make_unique<LinkUpdater>(&m_operations);
    QObject::connect(&m_operations, &FileOperations::itemsRelocated, [this] { ++m_relocations; });
    QObject::connect(m_links.get(), &LinkUpdater::linksUpdated, [this](LinkUpdateCount count) {
        ++m_linkUpdates;
        LinkUpdateCount sum = m_linkCount.value_or(LinkUpdateCount{});
        sum.updated += count.updated;
        sum.skipped += count.skipped;
        m_linkCount = sum;
    });
}

EngineRun::~EngineRun()
{
    // The updater goes before the engine it follows.
    m_links.reset();
}

bool EngineRun::isDone() const
{
    return m_operations.isIdle() && m_linkUpdates >= m_relocations;
}

void EngineRun::wait()
{
    if (isDone())
        return;
    QEventLoop loop;
    const auto quitWhenDone = [&] {
        if (isDone())
            loop.quit();
    };
    QObject::connect(&m_operations, &FileOperations::operationFinished, &loop, quitWhenDone);
    if (m_links)
        QObject::connect(m_links.get(), &LinkUpdater::linksUpdated, &loop, quitWhenDone);
    loop.exec();
}

void EngineRun::sayLinks() const
{
    if (!m_linkCount)
        return;
    if (m_linkCount->updated > 0)
        out() << "Updated links in " << counted(m_linkCount->updated, "note") << Qt::endl;
    if (m_linkCount->skipped > 0)
        err() << "Left the links in " << counted(m_linkCount->skipped, "note")
              << " alone (not UTF-8, too large or read-only)" << Qt::endl;
}

void EngineRun::sayReports(std::function<void(const OperationOutcome&)> seen)
{
    m_operations.setReportErrors([seen = std::move(seen)](const OperationOutcome& outcome) {
        for (const QString& error : outcome.errors)
            err() << error << Qt::endl;
        if (outcome.skipped > 0)
            err() << skippedText(outcome.skipped) << "." << Qt::endl;
        if (seen)
            seen(outcome);
    });
    QObject::connect(&m_operations, &FileOperations::announced, [this](const Toast& toast) {
        if (m_announcement.isEmpty())
            m_announcement = toast.text;
    });
}

bool EngineRun::followsLinks(Arguments& arguments)
{
    return arguments.removeAll("--no-links") == 0 && LinkUpdater::isEnabled();
}

} // namespace orwick::cli
