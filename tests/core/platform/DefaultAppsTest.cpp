// Which applications open a type of file, from real desktop files and mimeapps.list files in
// temporary data and config folders (the system's own folders are kept out of sight).

#include "platform/DefaultApps.h"
#include "support/SystemFolders.h"

#include <QFile>
#include <gtest/gtest.h>

namespace orwick {
namespace {

struct DefaultAppsTest : ::testing::Test {
    test::SystemFolders system;
    void install(const char* id, const char* mimeTypes)
    {
        system.install(QString::fromLatin1(id), QByteArray("Name=") + id + "\nExec=true %f\nMimeType=" + mimeTypes + "\n");
    }
};

TEST_F(DefaultAppsTest, AVisibleApplicationListingTheTypeOpensIt)
{
    EXPECT_TRUE(defaultApps::applicationsFor(QStringLiteral("application/x-orwick-nothing")).isEmpty());
    EXPECT_FALSE(defaultApps::canOpen(QStringLiteral("application/x-orwick-nothing"))) << "nothing installed";
    install("viewer.desktop", "image/png;image/jpeg;");
    system.install(QStringLiteral("hidden.desktop"), "Name=H\nHidden=true\nMimeType=image/gif;\n");
    EXPECT_EQ(defaultApps::applicationsFor(QStringLiteral("image/png")), QStringList{QStringLiteral("viewer.desktop")});
    EXPECT_TRUE(defaultApps::canOpen(QStringLiteral("image/jpeg")));
    EXPECT_FALSE(defaultApps::canOpen(QStringLiteral("application/pdf")));
    EXPECT_FALSE(defaultApps::canOpen(QStringLiteral("image/gif"))) << "a hidden desktop file opens nothing";
}

TEST_F(DefaultAppsTest, TheDefaultComesFirstAndRemovedAssociationsGo)
{
    install("editor.desktop", "text/plain;");
    install("other.desktop", "text/plain;");
    install("gone.desktop", "text/plain;");
    const FilePath list = test::SystemFolders::mimeAppsList();
    ASSERT_TRUE(test::writeFile(list, "[Default Applications]\ntext/plain=other.desktop;missing.desktop;\n[Removed Associations]\ntext/plain=gone.desktop;\n"));
    const QStringList apps = defaultApps::applicationsFor(QStringLiteral("text/plain"));
    ASSERT_FALSE(apps.isEmpty());
    EXPECT_EQ(apps.first(), QStringLiteral("other.desktop"));
    EXPECT_TRUE(apps.contains(QStringLiteral("editor.desktop")));
    EXPECT_FALSE(apps.contains(QStringLiteral("gone.desktop")));
    EXPECT_FALSE(apps.contains(QStringLiteral("missing.desktop"))) << "not installed";
    QFile::remove(list.text());
}

TEST_F(DefaultAppsTest, ATypeIsOpenedByWhatOpensTheTypeItInherits)
{
    if (!QFile::exists(QStringLiteral("/usr/share/mime/packages/freedesktop.org.xml")))
        GTEST_SKIP() << "no shared MIME database here to say what a C source file inherits";
    install("editor.desktop", "text/plain;");
    EXPECT_TRUE(defaultApps::canOpen(QStringLiteral("text/x-csrc"))); // C source is text
    EXPECT_FALSE(defaultApps::canOpen(QStringLiteral("image/png")));
}

} // namespace
} // namespace orwick
