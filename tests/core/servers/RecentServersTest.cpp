// The recent servers of "Connect to Server…": order, one entry per server, the cap, and keeping
// them in sidebar.json.

#include "places/SidebarStore.h"
#include "servers/RecentServers.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(RecentServers, NewestComesFirstEachServerOnceUpToTheCapAndABadAddressChangesNothing)
{
    QStringList recent = withRecentServer({}, QStringLiteral("sftp://a.example/"));
    recent = withRecentServer(recent, QStringLiteral("smb://nas/docs"));
    recent = withRecentServer(recent, QStringLiteral("  SFTP://A.example:22  ")); // the same server, typed otherwise
    EXPECT_EQ(recent, (QStringList{QStringLiteral("sftp://a.example/"), QStringLiteral("smb://nas/docs")}));
    // It keeps the newest up to the cap.
    recent.clear();
    for (int i = 0; i < kMaxRecentServers + 3; ++i)
        recent = withRecentServer(recent, QStringLiteral("sftp://host%1/").arg(i));
    ASSERT_EQ(recent.size(), kMaxRecentServers);
    EXPECT_EQ(recent.first(), QStringLiteral("sftp://host%1/").arg(kMaxRecentServers + 2));
    EXPECT_FALSE(recent.contains(QStringLiteral("sftp://host0/")));
    // A bad address changes nothing, and forgetting finds the same server.
    const QStringList two{QStringLiteral("sftp://a/"), QStringLiteral("ftp://b/")};
    EXPECT_EQ(withRecentServer(two, QStringLiteral("not an address")), two);
    EXPECT_EQ(withoutRecentServer(two, QStringLiteral("ftp://B:21")), QStringList{QStringLiteral("sftp://a/")});
    EXPECT_EQ(cleanRecentServers({QStringLiteral("sftp://a"), QStringLiteral("junk"), QStringLiteral("sftp://a/")}),
              QStringList{QStringLiteral("sftp://a/")});
}

TEST(RecentServers, SidebarStoreKeepsThemInItsFile)
{
    TempTree tree;
    const FilePath file = tree.path(QStringLiteral("sidebar.json"));
    {
        SidebarStore store(file);
        int changes = 0;
        QObject::connect(&store, &SidebarStore::serversChanged, [&changes] { ++changes; });
        store.rememberServer(QStringLiteral("sftp://ann@a.example/"));
        store.rememberServer(QStringLiteral("smb://nas/docs"));
        store.rememberServer(QStringLiteral("smb://nas/docs")); // already first: no change
        store.forgetServer(QStringLiteral("sftp://ann@a.example"));
        EXPECT_EQ(changes, 3);
        ASSERT_TRUE(waitUntil([&store] { return !store.isSaving(); }));
    }
    const QJsonObject saved = QJsonDocument::fromJson(readAll(file)).object();
    EXPECT_EQ(saved.value(QStringLiteral("servers")).toObject().value(QStringLiteral("recent")).toArray(),
              QJsonArray{QStringLiteral("smb://nas/docs")});
    SidebarStore again(file);
    EXPECT_EQ(again.recentServers(), QStringList{QStringLiteral("smb://nas/docs")});
}

} // namespace
} // namespace orwick::test
