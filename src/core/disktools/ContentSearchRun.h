#pragma once
// Running a content search: the tool is started in the searched folder (stdin from /dev/null,
// its own process group), its output read as it comes and handed over in batches of
// FileMatches. runSearch() blocks its thread (orwick-cli prints from it); startSearch() runs it
// on the thread pool for a panel and delivers on the GUI thread.
//
// Delivery guarantees of startSearch(): batches arrive in output order, the first as soon as
// the tool printed it and the rest at most about twenty times a second; exactly one call has
// `done` set, and it is the last; nothing arrives once the token is cancelled or `receiver` is
// gone. Cancelling stops the tool (and what it started) within about 50 ms.

#include "base/CancelFlag.h"
#include "disktools/ContentSearch.h"

#include <QObject>
#include <functional>

namespace orwick::ContentSearch {

struct RunOutcome {
    bool started = false;       // false: no tool, or it could not be run
    Tool tool = Tool::ripgrep;
    int exitStatus = -1;
    qint64 matches = 0;
    bool isCapped = false;      // stopped at the match limit
    std::optional<QString> failure; // the tool's complaint, tidied, when the search as a whole failed
};

using BatchSink = std::function<void(std::vector<FileMatches>&& batch)>;

// Runs `command` in `folder`, giving `sink` each batch read. `maxMatches` 0 keeps every match.
RunOutcome runCommand(const Command& command, const FilePath& folder, const CancelFlag& cancel, const BatchSink& sink,
                      qint64 maxMatches = 0);

// Chooses the tool (git grep only when `folder` lies in a working tree) and runs it. With no tool
// at all, `failure` says which tools it looks for.
RunOutcome runSearch(const QString& query, const FilePath& folder, const Options& options, const CancelFlag& cancel,
                     const BatchSink& sink, qint64 maxMatches = 0, const Tools& tools = Tools::installed());

// Called on the GUI thread: a batch (possibly empty), whether it is the last, and the outcome
// with the last.
using Update = std::function<void(std::vector<FileMatches>&& batch, bool done, const RunOutcome& outcome)>;

// The panel's search, off the GUI thread.
void startSearch(QObject* receiver, const QString& query, const FilePath& folder, const Options& options,
                 CancelToken cancel, Update update, qint64 maxMatches);

// For timing the window from the tool's first output on (bench/ui_find_in_files.cpp): `probe` is
// called on the search's thread the moment a run first reads the tool's output, before parsing
// it. None by default; set it before the searches it should see start.
void setFirstOutputProbe(void (*probe)());

// The panel's cap on matches kept.
inline constexpr qint64 kPanelMatchLimit = 20000;

} // namespace orwick::ContentSearch
