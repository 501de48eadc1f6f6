// The space treemap: blocks coloured by their file category in the theme's tints, a folder's
// next level drawn inside it, a legend of the categories shown (largest first) below the
// blocks, and a new theme repainting them.

#include "support/TestMain.h"
#include "theme/ThemeStore.h"
#include "ui/panels/TreemapWidget.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeApplier.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct TreemapWidgetTest : ::testing::Test {
    SpaceNode root;
    TreemapWidget map;
    void SetUp() override
    {
        theme::follow();
        ThemeStore::shared().setAppearanceMode(AppearanceMode::light);
        root.isFolder = true;
        root.name = "Home";
        auto add = [this](const char* name, bool folder, qint64 size) { root.addChild(name, folder)->size = size; };
        add("Photos", true, 50'000'000);
        add("movie.mp4", false, 30'000'000);
        add("song.mp3", false, 10'000'000);
        add("clip.mkv", false, 8'000'000);
        root.smallFiles = 2'000'000;
        root.smallCount = 40;
        root.size = 100'000'000;
        map.resize(600, 400);
        map.setNode(&root);
    }
    void TearDown() override
    {
        ThemeStore::shared().setSelectedName(QStringLiteral("Orwick"));
        ThemeStore::shared().setAppearanceMode(AppearanceMode::system);
    }
    QColor centreOf(const char* name)
    {
        const QImage shot = map.grab().toImage();
        for (const TreemapWidget::Block& block : map.blocks())
            if (block.node && block.node->name == name)
                return shot.pixelColor(block.rect.center().toPoint());
        return {};
    }
    static int distance(const QColor& a, const QColor& b)
    {
        return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
    }
};

TEST_F(TreemapWidgetTest, TheLegendNamesTheCategoriesShownLargestFirst)
{
    EXPECT_EQ(map.legend(), (QList<FileCategory>{FileCategory::folder, FileCategory::video, FileCategory::audio, FileCategory::other}))
        << "the two videos together come second; the small files are “other”";
    EXPECT_EQ(TreemapWidget::legendName(FileCategory::diskImage), "Disk images");
    const qreal legendTop = map.height() - (map.fontMetrics().height() + 8);
    for (const TreemapWidget::Block& block : map.blocks())
        EXPECT_LE(block.rect.bottom(), legendTop) << "the legend has its own line";
}

TEST_F(TreemapWidgetTest, AFoldersNextLevelIsDrawnInsideItInItsCategorysTint)
{
    SpaceNode* photos = root.children.front().get();
    ASSERT_EQ(photos->name, "Photos");
    photos->addChild("beach.jpg", false)->size = 30'000'000;
    photos->addChild("trip.mov", false)->size = 15'000'000;
    map.relayout();
    const TreemapWidget::Block* block = nullptr;
    for (const TreemapWidget::Block& candidate : map.blocks())
        if (candidate.node == photos)
            block = &candidate;
    ASSERT_NE(block, nullptr);
    ASSERT_EQ(block->inside.size(), 2u);
    EXPECT_EQ(block->inside[0].category, FileCategory::image);
    EXPECT_EQ(block->inside[1].category, FileCategory::video);
    for (const TreemapWidget::Block::Inner& inner : block->inside)
        EXPECT_TRUE(block->rect.contains(inner.rect));
    EXPECT_GT(block->inside[0].rect.width() * block->inside[0].rect.height(),
              block->inside[1].rect.width() * block->inside[1].rect.height());
    EXPECT_GT(block->inside[0].rect.top(), block->rect.top() + map.fontMetrics().height()) << "under the folder's label";
    EXPECT_TRUE(map.legend().contains(FileCategory::image)) << "the legend names what is drawn inside";

    // The picture's block is drawn in the images' tint, a shade softer than a block of its own.
    const QColor drawn = map.grab().toImage().pixelColor(block->inside[0].rect.center().toPoint());
    const QColor image = mixColors(theme::background(), theme::categoryTint(FileCategory::image), 0.42);
    const QColor folder = mixColors(theme::background(), theme::categoryTint(FileCategory::folder), 0.42);
    EXPECT_LT(distance(drawn, image), 40);
    EXPECT_GT(distance(drawn, folder), 40);

    // Each is named in its corner, in the text colour over its tint, so the next level reads
    // without going in.
    const QImage shot = map.grab().toImage();
    for (const TreemapWidget::Block::Inner& inner : block->inside) {
        const QRect corner(inner.rect.toAlignedRect().topLeft() + QPoint(4, 2), QSize(40, map.fontMetrics().height()));
        int inked = 0;
        for (int y = corner.top(); y <= corner.bottom(); ++y)
            for (int x = corner.left(); x <= corner.right(); ++x)
                inked += distance(shot.pixelColor(x, y), theme::text()) < 120;
        EXPECT_GT(inked, 10) << inner.node->name.constData() << " is named";
    }
}

TEST_F(TreemapWidgetTest, OnlyTheMouseOpensAMenuThroughTheContextEvent)
{
    // X11 sends a keyboard context event at the pointer beside the Menu key's press, and the press
    // opens the current block's menu: the event must not open a second one for the block below.
    int asked = 0;
    QObject::connect(&map, &TreemapWidget::menuRequested, [&asked] { ++asked; });
    const QPoint onBlock = map.blocks().front().rect.center().toPoint();
    QContextMenuEvent keyboard(QContextMenuEvent::Keyboard, onBlock, map.mapToGlobal(onBlock));
    QApplication::sendEvent(&map, &keyboard);
    EXPECT_EQ(asked, 0);
    QContextMenuEvent mouse(QContextMenuEvent::Mouse, onBlock, map.mapToGlobal(onBlock));
    QApplication::sendEvent(&map, &mouse);
    EXPECT_EQ(asked, 1);
}

TEST_F(TreemapWidgetTest, BlocksTakeTheirCategorysTintAndFollowTheTheme)
{
    const QColor video = centreOf("movie.mp4");
    const QColor audio = centreOf("song.mp3");
    const QColor folder = centreOf("Photos");
    EXPECT_EQ(video, centreOf("clip.mkv")) << "one category, one colour";
    EXPECT_GT(distance(video, audio), 40);
    EXPECT_GT(distance(video, folder), 40);
    const QColor expected = mixColors(theme::background(), theme::categoryTint(FileCategory::video), 0.55);
    EXPECT_LT(distance(video, expected), 40) << "the cushion's middle is the tint itself";

    ThemeStore::shared().setAppearanceMode(AppearanceMode::dark);
    const QColor darkVideo = centreOf("movie.mp4");
    EXPECT_LT(darkVideo.lightness(), video.lightness()) << "laid over the dark ground";
    EXPECT_LT(distance(darkVideo, mixColors(theme::background(), theme::categoryTint(FileCategory::video), 0.55)), 40);
}

TEST_F(TreemapWidgetTest, ABlockIsShadedAsACushion)
{
    const QImage shot = map.grab().toImage();
    const TreemapWidget::Block& big = map.blocks().front();
    ASSERT_TRUE(big.node);
    const QRect r = big.rect.toRect().adjusted(4, 4, -4, -4);
    EXPECT_GT(shot.pixelColor(r.topLeft()).lightness(), shot.pixelColor(r.bottomRight()).lightness());
}

} // namespace
