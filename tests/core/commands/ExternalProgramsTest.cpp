#include "app/Services.h"
#include "app/Settings.h"
#include "commands/CommandCatalog.h"
#include "commands/ExternalPrograms.h"
#include "platform/XdgPaths.h"
#include "support/ProgramsOnPath.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

void writeSettings(const QByteArray& content) { ASSERT_TRUE(test::writeFile(xdg::orwickConfigFile(), content)); }

QStringList ids(const QList<ExternalPrograms::Program>& programs)
{
    QStringList list;
    for (const auto& program : programs)
        list << program.id;
    return list;
}

} // namespace

TEST(ExternalPrograms, FindsTheEnvironmentsChoiceFirstThenTheKnownOnesOnPath)
{
    writeSettings({});
    test::ProgramsOnPath path{"kate", "code", "vim", "kitty", "foot"};
    qputenv("EDITOR", "vim -p");
    qputenv("TERMINAL", "foot");
    ExternalPrograms programs;
    EXPECT_EQ(ids(programs.editors()), (QStringList{"vim", "code", "kate"}));
    EXPECT_EQ(ids(programs.terminals()), (QStringList{"foot", "kitty"}));
    EXPECT_EQ(programs.editor().id, "vim") << "automatic is the first found";
    EXPECT_TRUE(programs.editor().needsTerminal);
    EXPECT_EQ(programs.editor().executable, path.folder().child(QStringLiteral("vim")).text());
    EXPECT_EQ(programs.editors()[1].name, "VS Code");
    EXPECT_EQ(programs.terminal().name, "foot");
}

TEST(ExternalPrograms, APreferenceIsUsedKeptAndReadBack)
{
    writeSettings({});
    test::ProgramsOnPath path{"code", "kate", "xterm", "kitty"};
    ExternalPrograms programs;
    int changes = 0;
    QObject::connect(&programs, &ExternalPrograms::changed, [&] { ++changes; });
    EXPECT_EQ(programs.editor().id, "code");

    programs.setPreferredEditor("kate");
    programs.setPreferredTerminal("xterm");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(programs.editor().name, "Kate");
    EXPECT_EQ(programs.terminal().name, "XTerm");
    EXPECT_EQ(openSettings()->value("preferredEditor").toString(), "kate");
    EXPECT_EQ(openSettings()->value("preferredTerminal").toString(), "xterm");
    EXPECT_EQ(ExternalPrograms().preferredEditor(), "kate") << "a new start reads the choice";

    programs.setPreferredEditor(QString()); // back to automatic
    EXPECT_EQ(programs.editor().id, "code");
    EXPECT_EQ(openSettings()->value("preferredEditor").toString(), "");
    programs.setPreferredEditor(QString());
    EXPECT_EQ(changes, 3) << "choosing what is chosen already changes nothing";
}

TEST(ExternalPrograms, AProgramThatIsNotInstalledOrADamagedValueMeansAutomatic)
{
    test::ProgramsOnPath path{"zed", "konsole"};
    writeSettings("[General]\npreferredEditor=sublime-from-long-ago\npreferredTerminal=@Variant(\\0\\0\\x7f\\xff\n");
    ExternalPrograms programs;
    EXPECT_EQ(programs.preferredEditor(), "");
    EXPECT_EQ(programs.preferredTerminal(), "");
    EXPECT_EQ(programs.editor().name, "Zed");
    EXPECT_EQ(programs.terminal().name, "Konsole");
    programs.setPreferredEditor("emacs"); // not installed
    EXPECT_EQ(programs.editor().name, "Zed");
}

TEST(ExternalPrograms, NothingInstalledMeansNoProgram)
{
    writeSettings({});
    test::ProgramsOnPath path{};
    ExternalPrograms programs;
    EXPECT_TRUE(programs.editors().isEmpty());
    EXPECT_TRUE(programs.editor().isEmpty());
    EXPECT_TRUE(programs.terminal().isEmpty());
}

// The "Open in …" commands name the program in use, and follow a new choice at once.
TEST(ExternalPrograms, TheOpenInCommandsNameTheChosenProgram)
{
    writeSettings({});
    test::ProgramsOnPath path{"code", "kate", "alacritty", "kitty"};
    ExternalPrograms programs;
    services().programs = &programs;
    EXPECT_EQ(CommandCatalog::find("openInEditor")->title, "Open in VS Code");
    EXPECT_EQ(CommandCatalog::find("openInExternalTerminal")->title, "Open in Alacritty");
    programs.setPreferredEditor("kate");
    programs.setPreferredTerminal("kitty");
    EXPECT_EQ(CommandCatalog::find("openInEditor")->title, "Open in Kate");
    EXPECT_EQ(CommandCatalog::find("openInExternalTerminal")->title, "Open in kitty");
    services().programs = nullptr;
    EXPECT_EQ(CommandCatalog::find("openInEditor")->title, "Open in Code Editor");
}
