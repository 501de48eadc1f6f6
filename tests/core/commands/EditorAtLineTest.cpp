#include "commands/EditorAtLine.h"

#include <gtest/gtest.h>

using namespace orwick;

TEST(EditorAtLine, EachEditorTakesTheLineItsOwnWay)
{
    const FilePath file = FilePath::fromNative("/src/a b.c");
    EXPECT_EQ(editorArgumentsAtLine("code", file, 12), QStringList({"--goto", "/src/a b.c:12"}));
    EXPECT_EQ(editorArgumentsAtLine("codium", file, 12), QStringList({"--goto", "/src/a b.c:12"}));
    EXPECT_EQ(editorArgumentsAtLine("zed", file, 12), QStringList({"/src/a b.c:12"}));
    EXPECT_EQ(editorArgumentsAtLine("subl", file, 12), QStringList({"/src/a b.c:12"}));
    EXPECT_EQ(editorArgumentsAtLine("kate", file, 12), QStringList({"--line", "12", "/src/a b.c"}));
    EXPECT_EQ(editorArgumentsAtLine("vim", file, 12), QStringList({"+12", "/src/a b.c"}));
    EXPECT_EQ(editorArgumentsAtLine("gedit", file, 12), QStringList({"+12", "/src/a b.c"}));
    EXPECT_EQ(editorArgumentsAtLine("nano", file, 0), QStringList({"+1", "/src/a b.c"})) << "lines count from 1";
}
