#pragma once
// ContentSearch: "Find in Files" — the text of every file under a folder searched by an external
// tool whose output is read as it comes. The tool is ripgrep when `rg` is on PATH, else `git grep`
// inside a git working tree, else grep on PATH; command() gives the exact argument list each
// takes, and every one prints a match as its path, a NUL byte, the line number and the line
// (ContentSearchOutput.h reads that). Matches are grouped by file in the order files first
// appear. run() (ContentSearchRun.h) runs a command and hands the matches over in batches.
//
// Values only: safe to copy between threads.

#include "base/FilePath.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace orwick::ContentSearch {

struct Options {
    bool regex = false;     // the query is a regular expression; otherwise a literal string
    bool matchCase = false;
    bool operator==(const Options&) const = default;
};

struct Match {
    qint64 line = 0;  // 1-based
    QByteArray bytes; // the line as the tool printed it (at most kMaxColumns characters)
    QString text() const { return QString::fromUtf8(bytes); }
    bool operator==(const Match&) const = default;
};

struct FileMatches {
    FilePath url;           // the file
    QByteArray path;        // relative to the searched folder, as the tool printed it ("src/a.c")
    std::vector<Match> matches; // in output order
    QString pathText() const { return visibleName(path); }
};

// Lines longer than this are cut (ripgrep says "[Omitted long line…]" in their place).
inline constexpr int kMaxColumns = 400;

// Folder names the grep fallback leaves out (ripgrep and git apply their own ignore rules).
inline constexpr const char* kGrepExcludedFolders[] = {
    "node_modules", ".git", "build", "dist", ".next", ".nuxt", "DerivedData", ".build",
    "Pods", "target", ".venv", "venv", "__pycache__", ".gradle", ".cache", "coverage"};

enum class Tool { ripgrep, gitGrep, grep };

// The search tools found on PATH (absolute paths; empty when missing).
struct Tools {
    QString ripgrep;
    QString git;
    QString grep;
    // Looked up once per process.
    static const Tools& installed();
    // Looked up now, on the PATH of the moment.
    static Tools find();
};

struct Command {
    Tool tool = Tool::ripgrep;
    QString executable;
    QStringList arguments; // run with the searched folder as the working directory
};

// The command for a search, or none when no tool applies (no rg, not a repository or no git,
// no grep). `isRepository`: the folder lies in a git working tree.
std::optional<Command> command(const QString& query, const Options& options, bool isRepository,
                               const Tools& tools = Tools::installed());

// The empty state's words when no tool is there to search with.
QString noToolMessage();

} // namespace orwick::ContentSearch
