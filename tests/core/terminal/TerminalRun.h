#pragma once
// Helpers for the terminal tests: a session running a real program, waited on through the
// event loop, and the text it shows.

#include "support/TempHome.h"
#include "support/TestMain.h"
#include "terminal/LineText.h"
#include "terminal/TerminalSession.h"

#include <memory>

namespace orwick::test {

inline std::unique_ptr<TerminalSession> startIn(const FilePath& folder, QList<QByteArray> command, int rows = 24, int cols = 80)
{
    TerminalSession::Options options;
    options.folder = folder;
    options.command = std::move(command);
    options.rows = rows;
    options.cols = cols;
    return std::make_unique<TerminalSession>(options);
}

// /bin/sh -c SCRIPT in the temporary home.
inline std::unique_ptr<TerminalSession> shell(const QByteArray& script, int rows = 24, int cols = 80)
{
    return startIn(tempHome(), {"/bin/sh", "-c", script}, rows, cols);
}

inline bool waitFinished(TerminalSession& session, int timeoutMs = 10000)
{
    return waitUntil([&] { return !session.isRunning(); }, timeoutMs);
}

inline bool waitForText(TerminalSession& session, const QString& text, int timeoutMs = 10000)
{
    return waitUntil([&] { return session.screen().screenText().contains(text); }, timeoutMs);
}

// Every kept line, history and screen, as text without trailing blanks.
inline QStringList allLines(const TerminalScreen& screen)
{
    QStringList lines;
    for (int64_t n = screen.firstLine(); n < screen.endLine(); ++n)
        lines.append(lineText(screen.lineAt(n)));
    return lines;
}

} // namespace orwick::test
