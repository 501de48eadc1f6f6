// A palette row whose command can't run here looks dimmed whether or not it is selected: the
// selection moves onto it in the theme's muted selection colour, with the title and the reason in
// the dim text colour, readable in the light and the dark theme; a row that runs is selected in
// the accent with the highlighted text colour.

#include "WindowFixture.h"
#include "theme/ThemeStore.h"
#include "ui/theme/Theme.h"
#include "ui/window/PaletteController.h"
#include "ui/window/PaletteRowDelegate.h"

#include <QListWidget>
#include <QSet>

using namespace orwick;

namespace {

// The contrast of two colours as the accessibility guidelines measure it (1 to 21).
double contrast(const QColor& a, const QColor& b)
{
    const auto luminance = [](const QColor& c) {
        const auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
        return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
    };
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

struct PaletteDimmedRowTest : test::WindowTest {
    void SetUp() override
    {
        tree.file("a.txt");
        open(tree.root());
    }
    void TearDown() override { ThemeStore::shared().setAppearanceMode(AppearanceMode::system); }
    // The selected row as drawn, with plain (not smoothed) text so each letter is the pen's colour.
    QImage selectedRow(const QString& id)
    {
        const int row = paletteRow(id);
        EXPECT_GE(row, 0) << id.toStdString();
        palette()->selectRow(row);
        auto* list = window->findChild<QListWidget*>();
        QFont plain = list->font();
        plain.setStyleStrategy(QFont::NoAntialias);
        list->setFont(plain);
        QApplication::processEvents();
        const QRect rect = list->visualItemRect(list->currentItem());
        return list->viewport()->grab(rect).toImage();
    }
    static QSet<QRgb> colors(const QImage& image)
    {
        QSet<QRgb> found;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found.insert(image.pixel(x, y) | 0xFF000000u);
        return found;
    }
};

TEST_F(PaletteDimmedRowTest, ASelectedDimmedRowStaysDimmedInLightAndDark)
{
    for (const AppearanceMode mode : {AppearanceMode::light, AppearanceMode::dark}) {
        SCOPED_TRACE(appearanceModeName(mode).toStdString());
        ThemeStore::shared().setAppearanceMode(mode);
        press(Qt::Key_K, Qt::ControlModifier);
        ASSERT_TRUE(palette()->isOpen());
        type(QStringLiteral("tab"));
        const int reopen = paletteRow(QStringLiteral("cmd.reopenTab"));
        const int newTab = paletteRow(QStringLiteral("cmd.newTab"));
        ASSERT_GE(reopen, 0);
        ASSERT_GE(newTab, 0);
        ASSERT_FALSE(palette()->rows()[reopen].isEnabled) << "no tab was closed";
        ASSERT_FALSE(palette()->rows()[reopen].subtitle.isEmpty()) << "it says why";
        ASSERT_TRUE(palette()->rows()[newTab].isEnabled);

        const QPalette colours = QApplication::palette();
        const QColor mutedSelection = colours.color(QPalette::Disabled, QPalette::Highlight);
        const QColor accent = colours.color(QPalette::Active, QPalette::Highlight);
        const QColor onAccent = colours.color(QPalette::Active, QPalette::HighlightedText);
        const QColor dim = theme::dimText();

        const QImage dimmed = selectedRow(QStringLiteral("cmd.reopenTab"));
        const QSet<QRgb> dimmedColors = colors(dimmed);
        EXPECT_EQ(dimmed.pixelColor(2, dimmed.height() / 2), mutedSelection) << "selected, in the muted selection colour";
        EXPECT_TRUE(dimmedColors.contains(dim.rgb())) << "the title and reason in the dim text colour";
        EXPECT_FALSE(dimmedColors.contains(onAccent.rgb())) << "not in the colour of a row that runs";
        EXPECT_GE(contrast(dim, mutedSelection), 4.0) << "readable";

        const QImage runs = selectedRow(QStringLiteral("cmd.newTab"));
        EXPECT_EQ(runs.pixelColor(2, runs.height() / 2), accent);
        EXPECT_TRUE(colors(runs).contains(onAccent.rgb()));
        EXPECT_NE(dimmed.pixelColor(2, dimmed.height() / 2), runs.pixelColor(2, runs.height() / 2));

        press(Qt::Key_Escape);
        ASSERT_FALSE(palette()->isOpen());
    }
}

} // namespace
