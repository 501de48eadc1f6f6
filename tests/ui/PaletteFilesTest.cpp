// The palette finds a file anywhere under home by name (the name index) and Return shows it
// selected in its own folder.

#include "support/KeyPress.h"
#include "ui/window/PaletteController.h"
#include "WindowFixture.h"

namespace {

using namespace orwick;

struct PaletteFilesTest : test::WindowTest {};

TEST_F(PaletteFilesTest, AFileElsewhereInHomeIsFoundByNameAndReturnShowsIt)
{
    const FilePath far = test::tempHome().child(QStringLiteral("Archive/2019/Letters/xyzzy-to-the-council.txt"));
    ASSERT_TRUE(test::writeFile(far, {}));
    open(tree.root());
    press(Qt::Key_K, Qt::ControlModifier);
    type(QStringLiteral("xyzzy"));
    PaletteState* palette = window->palette()->palette();
    // The index walks home on the palette's first opening; its rows join when it is done.
    ASSERT_TRUE(test::waitUntil([&] { return palette->selectedItem() && palette->selectedItem()->path == far; }, 20000));
    EXPECT_EQ(palette->sections().last().heading, QStringLiteral("Files Elsewhere"));
    EXPECT_EQ(palette->selectedItem()->subtitle, QStringLiteral("~/Archive/2019/Letters"));
    press(Qt::Key_Return);
    EXPECT_TRUE(test::waitUntil([&] { return pane()->url() == far.parent() && pane()->selection().contains(far); }));
}

} // namespace
