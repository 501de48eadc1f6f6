// A dimmed command's key in a real window: its chord (Ctrl+Z with nothing to undo) says why in a
// toast, while a plain key pressed where it doesn't apply (Delete, Esc, Space, Return in an empty
// folder) stays quiet.

#include "WindowFixture.h"

using namespace orwick;

namespace {

struct DimmedCommandKeysTest : test::WindowTest {};

TEST_F(DimmedCommandKeysTest, AChordSaysWhyAndAPlainKeyStaysQuiet)
{
    tree.folder("Empty");
    open(tree.path(QStringLiteral("Empty")));
    ASSERT_TRUE(pane()->items().isEmpty());

    for (const int key : {Qt::Key_Delete, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return}) {
        press(key);
        QApplication::processEvents();
        EXPECT_TRUE(toast().isEmpty()) << "key " << key << ": " << toast().toStdString();
    }

    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(toast().toStdString(), "Undo: Nothing to undo");
    press(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(toast().toStdString(), "Move to Trash: Select the items to move to the Trash");
}

} // namespace
