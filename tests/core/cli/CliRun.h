#pragma once
// Runs the built orwick-cli with arguments given as bytes (names need not be UTF-8) and keeps
// its exit status and what it printed, for the command-line tests.

#include <QByteArray>
#include <QList>

#include <algorithm>

namespace orwick::test {

struct CliRun {
    int status = -1;    // the exit status; -1 when it didn't exit normally
    QByteArray out;     // standard output
    QByteArray err;     // standard error

    QList<QByteArray> outLines() const;
    QList<QByteArray> errLines() const;
};

// `input` is its standard input (a regular file, as a shell's "< file" gives).
CliRun runCli(const QList<QByteArray>& arguments, const QByteArray& input = {});
// The same for another program (orwick-cli-full, or a copy of orwick-cli elsewhere).
CliRun runProgram(const QByteArray& program, const QList<QByteArray>& arguments, const QByteArray& input = {});

// `lines` in byte order: for comparing output whose order the command does not promise (a walk).
inline QList<QByteArray> sorted(QList<QByteArray> lines)
{
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace orwick::test
