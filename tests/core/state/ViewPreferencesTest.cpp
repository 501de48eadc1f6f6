#include "app/Settings.h"
#include "platform/XdgPaths.h"
#include "state/PaneState.h"
#include "state/ViewPreferences.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace orwick;

namespace {
FileItem itemOf(FileCategory category, bool folder = false)
{
    FileItem item;
    item.category = category;
    item.isFolder = folder;
    return item;
}
void resetSettings(const QByteArray& content)
{
    QDir().mkpath(xdg::orwickConfigFile().parent().text());
    QFile file(xdg::orwickConfigFile().text());
    file.open(QIODevice::WriteOnly);
    file.write(content);
}
} // namespace

TEST(ViewPreferences, MostlyMediaNeedsThreeFilesAndSixtyPercent)
{
    using C = FileCategory;
    EXPECT_FALSE(ViewPreferences::isMostlyMedia({itemOf(C::image), itemOf(C::image)}));
    EXPECT_TRUE(ViewPreferences::isMostlyMedia({itemOf(C::image), itemOf(C::video), itemOf(C::image), itemOf(C::text), itemOf(C::text)}));
    EXPECT_FALSE(ViewPreferences::isMostlyMedia({itemOf(C::image), itemOf(C::image), itemOf(C::text), itemOf(C::text)}));
    // Folders do not count either way.
    EXPECT_TRUE(ViewPreferences::isMostlyMedia({itemOf(C::image), itemOf(C::image), itemOf(C::image),
                                                itemOf(C::folder, true), itemOf(C::folder, true), itemOf(C::folder, true)}));
}

TEST(ViewPreferences, RememberedBeatsMediaBeatsDefaultAndPersists)
{
    resetSettings({});
    const FilePath photos = FilePath::fromNative("/data/photos");
    {
        ViewPreferences preferences;
        EXPECT_EQ(preferences.mode(photos, true), std::pair(ViewMode::grid, ViewPreferences::Reason::media));
        EXPECT_EQ(preferences.mode(photos, false), std::pair(ViewMode::list, ViewPreferences::Reason::defaultMode));
        preferences.remember(ViewMode::table, photos);
        preferences.setGridForMedia(false);
    }
    ViewPreferences reread;
    EXPECT_EQ(reread.mode(photos, true), std::pair(ViewMode::table, ViewPreferences::Reason::saved));
    EXPECT_EQ(reread.mode(FilePath::fromNative("/other"), true).first, ViewMode::list);
}

TEST(ViewPreferences, ADamagedSettingsFileGivesDefaults)
{
    resetSettings("\x01\xff[[[General\ndefaultViewMode=sideways\ngridForMedia=perhaps\nfolderViewModes=@Variant(garbage\n"
                  "iconSize=huge\n");
    ViewPreferences preferences;
    EXPECT_EQ(preferences.defaultViewMode(), ViewMode::list);
    EXPECT_TRUE(preferences.gridForMedia());
    EXPECT_FALSE(preferences.vimKeys());
    EXPECT_TRUE(preferences.folderViewModes().isEmpty());
    EXPECT_EQ(preferences.iconSize(), ViewPreferences::kDefaultIconSize);
    resetSettings("[General]\niconSize=100000\n");
    EXPECT_EQ(ViewPreferences().iconSize(), ViewPreferences::kDefaultIconSize);
}

TEST(ViewPreferences, FallsBackToTheOlderViewModeKey)
{
    resetSettings("[General]\nviewMode=columns\n");
    EXPECT_EQ(ViewPreferences().defaultViewMode(), ViewMode::columns);
}

// Zooming a pane's grid is kept for the next pane and the next start, within the range.
TEST(ViewPreferences, TheGridTileSizeChosenInAPaneIsKept)
{
    resetSettings({});
    ViewPreferences preferences;
    PaneState pane(FilePath::fromNative("/"), &preferences);
    pane.zoomIcons(2);
    EXPECT_GT(pane.iconSize(), ViewPreferences::kDefaultIconSize);
    EXPECT_EQ(ViewPreferences().iconSize(), pane.iconSize());
    EXPECT_EQ(PaneState(FilePath::fromNative("/"), &preferences).iconSize(), pane.iconSize());
    pane.zoomIcons(-50);
    EXPECT_EQ(ViewPreferences().iconSize(), ViewPreferences::kMinIconSize);
}
