#include "app/Settings.h"
#include "app/SettingsSheet.h"
#include "app/ShowInFolderService.h"
#include "commands/ExternalPrograms.h"
#include "git/Git.h"
#include "places/SidebarStore.h"
#include "platform/XdgPaths.h"
#include "state/ViewPreferences.h"
#include "support/ProgramsOnPath.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

void writeSettings(const QByteArray& content) { ASSERT_TRUE(test::writeFile(xdg::orwickConfigFile(), content)); }

// What a new start would read: the file itself, not a handle that might cache.
QString stored(const char* key) { return QSettings(xdg::orwickConfigFile().text(), QSettings::IniFormat).value(key).toString(); }

// Every owner real, over a settings file and a PATH of the test's own.
struct SheetFixture : ::testing::Test {
    void SetUp() override { writeSettings({}); }
    void make()
    {
        views = std::make_unique<ViewPreferences>();
        git = std::make_unique<Git>(std::optional(FilePath::fromNative("/usr/bin/git")), nullptr);
        programs = std::make_unique<ExternalPrograms>();
        sidebar = std::make_unique<SidebarStore>(xdg::orwickDataDir().child(QStringLiteral("sidebar.json")));
        sheet = std::make_unique<SettingsSheet>(SettingsSheet::Owners{views.get(), git.get(), programs.get(), nullptr, sidebar.get()});
    }
    const SettingRow& row(const char* key)
    {
        const SettingRow* found = sheet->row(QString::fromUtf8(key));
        EXPECT_TRUE(found) << key;
        static const SettingRow none;
        return found ? *found : none;
    }

    test::ProgramsOnPath path{"code", "kate", "kitty", "xterm"};
    std::unique_ptr<ViewPreferences> views;
    std::unique_ptr<Git> git;
    std::unique_ptr<ExternalPrograms> programs;
    std::unique_ptr<SidebarStore> sidebar;
    std::unique_ptr<SettingsSheet> sheet;
};

} // namespace

TEST_F(SheetFixture, ListsEverySettingWithItsLabelAndHelp)
{
    make();
    QStringList keys;
    for (const SettingsSection& section : sheet->sections()) {
        EXPECT_FALSE(section.title.isEmpty());
        for (const SettingRow& row : section.rows) {
            keys << row.key;
            EXPECT_FALSE(row.label.isEmpty()) << row.key.toStdString();
            EXPECT_FALSE(row.help.isEmpty()) << row.key.toStdString();
        }
    }
    EXPECT_EQ(keys, (QStringList{"theme", "appearanceMode", "accentColor", "defaultViewMode", "gridForMedia", "vimKeys", "hideIgnored",
                                 "updateLinksOnMove", "preferredEditor", "preferredTerminal", "takeOverShowInFolder", "terminalFollowsPane",
                                 "paneFollowsTerminal", "showFavorites", "showRecent",
                                 "showLocations", "showTags"}));
    EXPECT_EQ(row("gridForMedia").label, "Grid for image and video folders");
    EXPECT_EQ(row("vimKeys").label, "Vim keys in the file list");
    EXPECT_TRUE(row("vimKeys").help.startsWith("With Vim keys on, letters move instead of jumping to a name: j and k down and up"));
    EXPECT_TRUE(row("vimKeys").help.endsWith("Arrows and everything else work as before."));
    EXPECT_EQ(row("hideIgnored").label, "Hide Git-Ignored Files");
    EXPECT_EQ(row("defaultViewMode").kind, SettingRow::Kind::choice);
    EXPECT_EQ(row("defaultViewMode").choices.size(), 4);
    // The programs: automatic (naming the one it takes), then each installed one.
    const SettingRow& editor = row("preferredEditor");
    ASSERT_EQ(editor.choices.size(), 3);
    EXPECT_EQ(editor.choices[0].value, "");
    EXPECT_EQ(editor.choices[0].title, "Automatic (VS Code)");
    EXPECT_EQ(editor.choices[2].title, "Kate");
    EXPECT_EQ(row("preferredTerminal").choices.size(), 3);
}

TEST_F(SheetFixture, EachRowReadsAndWritesItsOwnerAndTheStore)
{
    make();
    int changes = 0;
    QObject::connect(sheet.get(), &SettingsSheet::changed, [&] { ++changes; });

    EXPECT_FALSE(row("vimKeys").isOn());
    row("vimKeys").setOn(true);
    EXPECT_TRUE(views->vimKeys());
    EXPECT_EQ(stored("vimKeys"), "true");

    EXPECT_TRUE(row("gridForMedia").isOn());
    row("gridForMedia").setOn(false);
    EXPECT_FALSE(views->gridForMedia());
    EXPECT_EQ(stored("gridForMedia"), "false");

    EXPECT_EQ(row("defaultViewMode").chosen(), "list");
    row("defaultViewMode").choose("table");
    EXPECT_EQ(views->defaultViewMode(), ViewMode::table);
    EXPECT_EQ(stored("defaultViewMode"), "table");
    row("defaultViewMode").choose("sideways");
    EXPECT_EQ(views->defaultViewMode(), ViewMode::table) << "a value that is not a view changes nothing";

    row("hideIgnored").setOn(true);
    EXPECT_TRUE(git->hidesIgnored());
    EXPECT_EQ(stored("hideIgnored"), "true");
    EXPECT_EQ(row("hideIgnored").noteText(), "");

    EXPECT_EQ(row("preferredEditor").chosen(), "");
    row("preferredEditor").choose("kate");
    EXPECT_EQ(programs->editor().name, "Kate");
    EXPECT_EQ(stored("preferredEditor"), "kate");
    row("preferredTerminal").choose("xterm");
    EXPECT_EQ(programs->terminal().name, "XTerm");
    EXPECT_EQ(stored("preferredTerminal"), "xterm");
    EXPECT_EQ(changes, 6);

    // A new start reads every choice back.
    make();
    EXPECT_TRUE(row("vimKeys").isOn());
    EXPECT_FALSE(row("gridForMedia").isOn());
    EXPECT_EQ(row("defaultViewMode").chosen(), "table");
    EXPECT_TRUE(row("hideIgnored").isOn());
    EXPECT_EQ(row("preferredEditor").chosen(), "kate");
    EXPECT_EQ(row("preferredTerminal").chosen(), "xterm");
}

TEST_F(SheetFixture, AChangeMadeElsewhereIsAnnounced)
{
    make();
    int changes = 0;
    QObject::connect(sheet.get(), &SettingsSheet::changed, [&] { ++changes; });
    views->setVimKeys(true); // Another window's sheet, say.
    git->setHidesIgnored(true); // The View menu's switch.
    programs->setPreferredTerminal("kitty");
    EXPECT_EQ(changes, 3);
    EXPECT_TRUE(row("vimKeys").isOn());
    EXPECT_TRUE(row("hideIgnored").isOn());
    EXPECT_EQ(row("preferredTerminal").chosen(), "kitty");
}

TEST_F(SheetFixture, ADamagedSettingsFileGivesTheDefaults)
{
    writeSettings("[General]\ndefaultViewMode=sideways\ngridForMedia=perhaps\nvimKeys=yes please\nhideIgnored=maybe\n"
                  "preferredEditor=\\x1\\x2\npreferredTerminal=@Variant(\\0\\0\\x7f\n");
    make();
    EXPECT_EQ(row("defaultViewMode").chosen(), "list");
    EXPECT_TRUE(row("gridForMedia").isOn());
    EXPECT_FALSE(row("vimKeys").isOn());
    EXPECT_FALSE(row("hideIgnored").isOn());
    EXPECT_EQ(row("preferredEditor").chosen(), "");
    EXPECT_EQ(row("preferredTerminal").chosen(), "");
    EXPECT_EQ(programs->editor().name, "VS Code");
}

TEST_F(SheetFixture, AnAbsentOwnerLeavesItsRowListedButUnavailable)
{
    test::ProgramsOnPath nothing{};
    ExternalPrograms none;
    const SettingsSheet sheet({nullptr, nullptr, &none, nullptr});
    for (const char* key : {"vimKeys", "defaultViewMode", "hideIgnored", "takeOverShowInFolder"}) {
        const SettingRow* row = sheet.row(QString::fromUtf8(key));
        ASSERT_TRUE(row) << key;
        EXPECT_FALSE(row->isAvailable()) << key;
        EXPECT_FALSE(row->noteText().isEmpty()) << key;
    }
    EXPECT_FALSE(sheet.row("takeOverShowInFolder")->help.isEmpty());
    // With no editor installed, the only choice is automatic, and the row says why.
    const SettingRow* editor = sheet.row("preferredEditor");
    EXPECT_TRUE(editor->isAvailable());
    EXPECT_EQ(editor->choices.size(), 1);
    EXPECT_EQ(editor->noteText(), "No code editor was found on PATH");
}

TEST_F(SheetFixture, GitMissingKeepsTheSwitchAndSaysSo)
{
    Git noGit(std::nullopt, nullptr);
    const SettingsSheet sheet({nullptr, &noGit, nullptr, nullptr});
    const SettingRow* row = sheet.row("hideIgnored");
    EXPECT_TRUE(row->isAvailable());
    EXPECT_EQ(row->noteText(), "git isn’t installed, so nothing is hidden for now");
}

// "Show in folder" goes through its service; with no message bus to claim the name on, the
// switch still stores the choice and the row shows the service's reason under it.
TEST_F(SheetFixture, TheShowInFolderRowWorksThroughItsServiceAndShowsItsProblem)
{
    ShowInFolderService service(nullptr, nullptr, QDBusConnection(QStringLiteral("orwick-test-no-bus")));
    make();
    sheet = std::make_unique<SettingsSheet>(SettingsSheet::Owners{views.get(), git.get(), programs.get(), &service});
    int changes = 0;
    QObject::connect(sheet.get(), &SettingsSheet::changed, [&] { ++changes; });
    const SettingRow& showInFolder = row("takeOverShowInFolder");
    EXPECT_TRUE(showInFolder.isAvailable());
    EXPECT_EQ(showInFolder.help, QStringLiteral("Other apps' “Show in folder” opens Orwick instead. Change it any time in Customize."));
    EXPECT_FALSE(showInFolder.isOn());
    EXPECT_EQ(showInFolder.noteText(), "");

    showInFolder.setOn(true);
    EXPECT_TRUE(service.isOn());
    EXPECT_EQ(stored("takeOverShowInFolder"), "true");
    EXPECT_GE(changes, 1);
    EXPECT_FALSE(service.isClaimed());
    EXPECT_EQ(showInFolder.noteText(), service.problem());
    EXPECT_FALSE(showInFolder.noteText().isEmpty());

    showInFolder.setOn(false);
    EXPECT_EQ(stored("takeOverShowInFolder"), "false");
    EXPECT_EQ(showInFolder.noteText(), "");
}

TEST_F(SheetFixture, TheSidebarSwitchesShowAndHideItsSectionsAndKeepThemInItsFile)
{
    make();
    const SettingRow& tags = row("showTags");
    ASSERT_TRUE(tags.isAvailable());
    EXPECT_TRUE(tags.isOn());
    int announced = 0;
    QObject::connect(sheet.get(), &SettingsSheet::changed, [&] { ++announced; });
    tags.setOn(false);
    EXPECT_FALSE(sidebar->isShown(section::tags));
    EXPECT_FALSE(tags.isOn());
    EXPECT_EQ(announced, 1);
    sidebar.reset(); // writes what is unsaved
    SidebarStore reread(xdg::orwickDataDir().child(QStringLiteral("sidebar.json")));
    EXPECT_FALSE(reread.isShown(section::tags));
    EXPECT_TRUE(reread.isShown(section::favorites));
}

TEST_F(SheetFixture, UpdateLinksIsOnUntilTurnedOffAndKeptInTheStore)
{
    make();
    EXPECT_EQ(row("updateLinksOnMove").label, "Update links when notes move");
    EXPECT_TRUE(row("updateLinksOnMove").isOn());
    row("updateLinksOnMove").setOn(false);
    EXPECT_EQ(stored("updateLinksOnMove"), "false");
    EXPECT_FALSE(row("updateLinksOnMove").isOn());
    writeSettings("[General]\nupdateLinksOnMove=perhaps\n"); // not the length of "false": a file of the same size and second may be read from the cache
    EXPECT_TRUE(row("updateLinksOnMove").isOn()); // damaged: the default
}
