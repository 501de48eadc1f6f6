#pragma once
// EngineRun: the window's file operations engine on the command line, run to its end. It owns
// one FileOperations and, when links are followed, the LinkUpdater on it — the same updater the
// window has on its engine, following itemsRelocated() — so a move, rename or batch rename made
// from the command line rewrites notes' links exactly as the same change made in the window.
//
// The command starts its jobs on operations(), then wait() runs the event loop until every job
// has ended and every link update that followed a move has written its notes (or found none to
// change). sayReports() prints the reports' errors and keeps the job's announcement; conflict
// questions are the command's own to hook up.

#include "cli/CliCommand.h"
#include "fileops/FileOperations.h"
#include "fileops/LinkUpdater.h"

#include <functional>
#include <memory>
#include <optional>

namespace orwick::cli {

class EngineRun {
public:
    explicit EngineRun(bool followLinks);
    ~EngineRun();

    FileOperations& operations() { return m_operations; }
    // Returns once the engine is idle and no link update is still to come.
    void wait();
    // What the link updates did, summed; nothing when none ran.
    std::optional<LinkUpdateCount> linkCount() const { return m_linkCount; }
    // "Updated links in 2 notes" on standard output and the notes left alone on standard error;
    // nothing when no note changed or was left alone.
    void sayLinks() const;

    // From now on each report's errors and skipped count go to standard error, and the first
    // toast announced (the job's own, not a link update's after it) is kept as announcement().
    // `seen`, when given, is shown each report too.
    void sayReports(std::function<void(const OperationOutcome&)> seen = {});
    // The first toast's text since sayReports(); empty when none came.
    const QString& announcement() const { return m_announcement; }

    // Takes "--no-links" out of `arguments`: true when links are to be followed (it wasn't
    // given, and the setting "updateLinksOnMove" is on).
    static bool followsLinks(Arguments& arguments);

private:
    bool isDone() const;

    FileOperations m_operations;
    std::unique_ptr<LinkUpdater> m_links;
    int m_relocations = 0;   // moves the updater was told of
    int m_linkUpdates = 0;   // link updates finished
    std::optional<LinkUpdateCount> m_linkCount;
    QString m_announcement;
};

} // namespace orwick::cli
