// orwick-cli starts light: it loads no Qt itself, its commands library loads QtCore but not Qt
// Gui, it runs its own commands and hands every other command line to orwick-cli-full with the
// same result as calling that directly; without the library or orwick-cli-full it says so
// instead of failing quietly.

#include "CliRun.h"
#include "support/TempHome.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

QByteArray neededLibraries(const char* program)
{
    QProcess readelf;
    readelf.start(QStringLiteral("readelf"), {QStringLiteral("--dynamic"), QString::fromUtf8(program)});
    EXPECT_TRUE(readelf.waitForFinished(30000)) << "readelf (binutils, installed with the compiler) did not run";
    return readelf.readAllStandardOutput();
}

TEST(CliLightProgramTest, LoadsNoQtAndItsLibraryOnlyQtCore)
{
    const QByteArray front = neededLibraries(ORWICK_CLI_PATH);
    EXPECT_TRUE(front.contains("libc.so")) << front.toStdString();
    EXPECT_FALSE(front.contains("libQt6")) << "orwick-cli loads Qt before it knows it needs it";
    const QByteArray library = neededLibraries(ORWICK_CLI_COMMANDS_PATH);
    EXPECT_TRUE(library.contains("libQt6Core.so")) << library.toStdString();
    for (const char* heavy : {"libQt6Gui.so", "libQt6DBus.so", "libQt6Network.so", "libQt6Pdf.so", "libexiv2.so", "libvterm.so", "libarchive.so"})
        EXPECT_FALSE(library.contains(heavy)) << heavy << " is loaded by every start of orwick-cli's commands";
}

TEST(CliLightProgramTest, HandsOtherCommandsOnWithTheSameResult)
{
    TempTree tree;
    tree.file("a.txt", "one\n");
    const QByteArray file = tree.path(QStringLiteral("a.txt")).native();
    const QList<QList<QByteArray>> commandLines{
        {"help"},                          // the overview names every command
        {},                                // … and is a usage error when nothing is asked
        {"highlight", file},               // a command only the full program has
        {"tag", "list", "Red", tree.root().native()},
        {"nosuch"},                        // an unknown command: the full program's message
        {"image", "--help"},
    };
    for (const QList<QByteArray>& arguments : commandLines) {
        const CliRun light = runCli(arguments);
        const CliRun full = runProgram(ORWICK_CLI_FULL_PATH, arguments);
        const std::string shown = arguments.isEmpty() ? std::string("(nothing)") : arguments.join(' ').toStdString();
        EXPECT_EQ(light.status, full.status) << shown;
        EXPECT_EQ(light.out, full.out) << shown;
        EXPECT_EQ(light.err, full.err) << shown;
    }
    EXPECT_TRUE(runCli({"help"}).out.contains("  highlight")) << "the overview lists the full program's commands";
}

TEST(CliLightProgramTest, WithoutItsPartsSaysSoAndStillRunsWhatItHolds)
{
    TempTree tree;
    const QString alone = tree.path(QStringLiteral("orwick-cli")).text();
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORWICK_CLI_PATH), alone));
    QFile::setPermissions(alone, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    // No commands library: only the plain status runs.
    const CliRun noLibrary = runProgram(alone.toUtf8(), {"list", tree.root().native()});
    EXPECT_EQ(noLibrary.status, 127);
    EXPECT_TRUE(noLibrary.err.contains("orwick-cli-commands.so isn't beside orwick-cli")) << noLibrary.err.toStdString();
    EXPECT_TRUE(noLibrary.out.isEmpty());

    // The library but no orwick-cli-full: the library's own commands run, the others say why not.
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORWICK_CLI_COMMANDS_PATH), tree.path(QStringLiteral("orwick-cli-commands.so")).text()));
    const CliRun handedOn = runProgram(alone.toUtf8(), {"highlight", alone.toUtf8()});
    EXPECT_EQ(handedOn.status, 127);
    EXPECT_TRUE(handedOn.err.contains("orwick-cli-full isn't beside orwick-cli")) << handedOn.err.toStdString();
    EXPECT_TRUE(handedOn.out.isEmpty());

    const CliRun own = runProgram(alone.toUtf8(), {"list", tree.root().native()});
    EXPECT_EQ(own.status, 0) << own.err.toStdString();
    EXPECT_TRUE(own.out.contains("orwick-cli")) << own.out.toStdString();
}

} // namespace
} // namespace orwick::test
