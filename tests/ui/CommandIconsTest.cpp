// Command icons where the desktop names no icon theme (as here: the offscreen platform): Adwaita,
// which the installation brings, is looked in after the desktop's theme, and the commands no
// icon theme has a picture for (the view modes, splits, the filter) get Orwick's own marks.

#include "ui/theme/IconThemeFallback.h"
#include "ui/window/CommandMenus.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QStandardPaths>

using namespace orwick;

namespace {

bool paintsSomething(const QIcon& icon)
{
    const QImage image = icon.pixmap(QSize(24, 24)).toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 0)
                return true;
    return false;
}

bool adwaitaInstalled()
{
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation, QStringLiteral("icons/Adwaita/index.theme")).isEmpty();
}

// Puts the fallback theme and the searched folders back as they were, for the tests that run after.
struct FallbackKept {
    QString before = QIcon::fallbackThemeName();
    QString theme = QIcon::themeName();
    QStringList searched = QIcon::themeSearchPaths();
    ~FallbackKept()
    {
        QIcon::setThemeName(theme);
        QIcon::setFallbackThemeName(before);
        QIcon::setThemeSearchPaths(searched);
    }
};

} // namespace

TEST(CommandIconsTest, CommandsNoIconThemeDrawsGetOrwicksOwnMarks)
{
    for (const char* symbol : {"list.bullet", "square.grid.2x2", "tablecells", "rectangle.split.3x1", "rectangle.split.2x1",
                               "rectangle.bottomhalf.inset.filled", "rectangle.righthalf.inset.filled", "sidebar.left",
                               "sidebar.right", "line.3.horizontal.decrease", "pencil", "circle"}) {
        const QIcon icon = commandIcon(QString::fromLatin1(symbol));
        ASSERT_FALSE(icon.isNull()) << symbol;
        EXPECT_TRUE(paintsSomething(icon)) << symbol;
    }
    EXPECT_TRUE(commandIcon(QStringLiteral("no.such.symbol")).isNull());
}

TEST(CommandIconsTest, WithoutADesktopThemeAdwaitaIsLookedInAfterIt)
{
    if (!adwaitaInstalled())
        GTEST_SKIP() << "Adwaita isn't installed here (scripts/install-deps installs adwaita-icon-theme)";
    const FallbackKept kept;
    QIcon::setFallbackThemeName(QStringLiteral("hicolor")); // what Qt chooses without a desktop
    ASSERT_TRUE(QIcon::fromTheme(QStringLiteral("edit-copy")).isNull()) << "no desktop theme here, and hicolor has no edit-copy";
    useIconFallbackTheme();
    EXPECT_EQ(QIcon::fallbackThemeName(), QStringLiteral("Adwaita"));
    EXPECT_FALSE(commandIcon(QStringLiteral("doc.on.doc")).isNull()) << "Copy's edit-copy";
    EXPECT_FALSE(commandIcon(QStringLiteral("power")).isNull()) << "Quit's application-exit";
}

TEST(CommandIconsTest, AFallbackTheDesktopChoseIsKept)
{
    const FallbackKept kept;
    QIcon::setFallbackThemeName(QStringLiteral("Breeze"));
    useIconFallbackTheme();
    EXPECT_EQ(QIcon::fallbackThemeName(), QStringLiteral("Breeze"));
}
