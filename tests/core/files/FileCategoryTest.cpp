#include "files/FileCategory.h"
#include "files/FileItem.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;

TEST(FileCategory, FollowsTheRulesInOrder)
{
    struct Row {
        const char* name;
        bool isFolder, isPackage;
        FileCategory expected;
    } rows[] = {
        {"Makefile", false, false, FileCategory::other},   // no extension, no type
        {"x.TS", false, false, FileCategory::code},        // lower-cased first
        {"Cargo.lock", false, false, FileCategory::code},  // fixed code set beats data
        {"config.toml", false, false, FileCategory::code},
        {"a.json", false, false, FileCategory::data},
        {"a.csv", false, false, FileCategory::data},
        {"a.md", false, false, FileCategory::text},
        {"a.txt", false, false, FileCategory::text},
        {"a.png", false, false, FileCategory::image},
        {"a.svg", false, false, FileCategory::image},
        {"a.mp4", false, false, FileCategory::video},
        {"a.mp3", false, false, FileCategory::audio},
        {"a.pdf", false, false, FileCategory::pdf},
        {"a.iso", false, false, FileCategory::diskImage},  // disk image before archive
        {"a.zip", false, false, FileCategory::archive},
        {"a.tar.gz", false, false, FileCategory::archive},
        {"a.docx", false, false, FileCategory::other},     // a zip inside, but a document
        {"a.py", false, false, FileCategory::code},
        {"a.sh", false, false, FileCategory::code},
        {"a.cpp", false, false, FileCategory::code},
        {"a.zzqq", false, false, FileCategory::other},
        {"Foo.app", false, true, FileCategory::app},      // a package is never a folder
        {"Foo.bundle", false, true, FileCategory::package},
        {"Docs", true, false, FileCategory::folder},
        {"Docs.png", true, false, FileCategory::folder},  // folders first, whatever the name
    };
    for (const Row& row : rows)
        EXPECT_EQ(categorize(FilePath::fromNative("/x").child(QByteArrayView(row.name)), row.isFolder, row.isPackage), row.expected)
            << row.name;
}

TEST(FileItem, ReadsLinksPackagesAndHiddenNames)
{
    test::TempTree tree;
    tree.folder("Real");
    tree.folder("Tool.app/Contents");
    tree.file("plain.txt", "hello");
    tree.link("toFolder", "Real");
    tree.link("dangling", "gone/away.txt");

    const FileItem folderLink = FileItem::make(tree.path("toFolder"));
    EXPECT_TRUE(folderLink.isFolder);
    EXPECT_EQ(folderLink.destination, tree.path("Real"));
    EXPECT_EQ(folderLink.name, "toFolder"); // the row keeps the link's own name
    EXPECT_FALSE(folderLink.size.has_value());

    const FileItem broken = FileItem::make(tree.path("dangling"));
    EXPECT_EQ(broken.kind, "Broken link");
    EXPECT_EQ(broken.brokenTarget, QString("gone/away.txt"));
    EXPECT_FALSE(broken.isFolder);
    EXPECT_EQ(broken.destination, broken.url);
    EXPECT_EQ(brokenLinkMessage(broken), "“dangling” is a broken link");

    const FileItem package = FileItem::make(tree.path("Tool.app"));
    EXPECT_TRUE(package.isPackage);
    EXPECT_FALSE(package.isFolder);
    EXPECT_EQ(package.category, FileCategory::app);

    const FileItem plain = FileItem::make(tree.path("plain.txt"));
    EXPECT_EQ(plain.size, 5);
    EXPECT_GT(plain.modified, 0);
    EXPECT_FALSE(plain.isHidden);

    const FileItem vanished = FileItem::make(tree.path("never-there.bin"));
    EXPECT_EQ(vanished.modified, kDistantPast); // unknown dates sort as oldest
    EXPECT_FALSE(vanished.size.has_value());
}

TEST(FileKinds, AreWrittenInSentenceCase)
{
    // The MIME database writes some descriptions with a small first letter.
    EXPECT_EQ(kindOfMimeComment("plain text document"), "Plain text document");
    EXPECT_EQ(kindOfMimeComment("PNG image"), "PNG image");
    EXPECT_EQ(kindOfMimeComment(""), "");
    const QString text = typeOfExtension("txt").kind;
    ASSERT_FALSE(text.isEmpty());
    EXPECT_TRUE(text.front().isUpper()) << text.toStdString();
}
