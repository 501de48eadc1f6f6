#include "app/Workspaces.h"
#include "platform/StoreNotices.h"
#include "support/TempHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct WorkspacesFixture : ::testing::Test {
    test::TempTree tree;
    FilePath file;

    void SetUp() override
    {
        file = tree.path("data/workspaces.json");
        StoreNotices::takePending();
    }
    Session sessionOn(const FilePath& folder) const
    {
        Session session;
        session.tabs.append(Session::Tab::ofGrid({{folder}}, 0));
        return session;
    }
    QStringList names(Workspaces& workspaces) const
    {
        QStringList list;
        for (const Workspace& workspace : workspaces.all())
            list << workspace.name;
        return list;
    }
    QJsonDocument onDisk() const { return QJsonDocument::fromJson(test::readAll(file)); }
};

} // namespace

TEST_F(WorkspacesFixture, AMissingFileIsAnEmptyListAndSavingASameNameIgnoringCaseReplacesIt)
{
    Workspaces workspaces(file);
    EXPECT_TRUE(workspaces.all().isEmpty());
    EXPECT_FALSE(test::exists(file));
    ASSERT_TRUE(workspaces.save({"work", sessionOn(tree.path("one"))}));
    ASSERT_TRUE(workspaces.save({"beta", sessionOn(tree.path("two"))}));
    ASSERT_TRUE(workspaces.save({"Alpha", sessionOn(tree.path("three"))}));
    EXPECT_EQ(names(workspaces), (QStringList{"Alpha", "beta", "work"}));

    ASSERT_TRUE(workspaces.save({"Work", sessionOn(tree.path("four"))}));
    EXPECT_EQ(names(workspaces), (QStringList{"Alpha", "beta", "Work"}));
    EXPECT_EQ(workspaces.all()[2].session, sessionOn(tree.path("four")));

    // The whole list is in the file, as an array of {"name", "session"}, in that order.
    const QJsonArray array = onDisk().array();
    ASSERT_EQ(array.size(), 3);
    EXPECT_EQ(array[0].toObject().keys(), (QStringList{"name", "session"}));
    EXPECT_EQ(array[2].toObject()["name"].toString(), "Work");
    Workspaces again(file);
    EXPECT_EQ(again.all(), workspaces.all());
}

TEST_F(WorkspacesFixture, RemovingDeletesTheNamedOneAndWritesTheList)
{
    Workspaces workspaces(file);
    ASSERT_TRUE(workspaces.save({"Home", sessionOn(tree.path("one"))}));
    ASSERT_TRUE(workspaces.save({"Work", sessionOn(tree.path("two"))}));
    ASSERT_TRUE(workspaces.remove("home"));
    EXPECT_EQ(names(workspaces), QStringList{"Work"});
    EXPECT_EQ(onDisk().array().size(), 1);
}

TEST_F(WorkspacesFixture, TwoProgramsKeepEachOthersWorkspaces)
{
    Workspaces first(file), second(file);
    EXPECT_TRUE(second.all().isEmpty()); // read before the first one saves
    ASSERT_TRUE(first.save({"One", sessionOn(tree.path("one"))}));
    ASSERT_TRUE(second.save({"Two", sessionOn(tree.path("two"))}));
    EXPECT_EQ(names(second), (QStringList{"One", "Two"}));
    EXPECT_EQ(Workspaces(file).all().size(), 2);
}

TEST_F(WorkspacesFixture, ADamagedFileIsSetAsideAndKeptUntilTheNextSave)
{
    const char* damaged[] = {"not json at all", R"({"name":"Work"})",
                             R"([{"name":"Work","session":{"tabs":[{"left":"/a","rightIsActive":false}],"selected":0,"showPreview":false}},{"name":"Bad"}])"};
    for (const char* bytes : damaged) {
        tree.file("data/workspaces.json", QByteArray(bytes));
        Workspaces workspaces(file);
        EXPECT_TRUE(workspaces.all().isEmpty()) << bytes;
        // Kept aside, byte for byte, with a notice; nothing is written meanwhile.
        const FilePath aside = StoreFile(file, {}).damagedPath();
        EXPECT_EQ(test::readAll(aside), QByteArray(bytes));
        EXPECT_FALSE(test::exists(file));
        const QStringList notices = StoreNotices::takePending();
        ASSERT_EQ(notices.size(), 1);
        EXPECT_TRUE(notices.first().contains("workspaces")) << notices.first().toStdString();

        ASSERT_TRUE(workspaces.save({"Fresh", sessionOn(tree.path("one"))}));
        EXPECT_EQ(names(workspaces), QStringList{"Fresh"});
        EXPECT_EQ(test::readAll(aside), QByteArray(bytes));
        QFile::remove(aside.text());
        QFile::remove(file.text());
    }
}

TEST_F(WorkspacesFixture, FoldersThatAreNotUtf8ComeBackByteForByte)
{
    const FilePath odd = tree.root().child(QByteArrayView("\xff\xfe old"));
    Workspaces workspaces(file);
    ASSERT_TRUE(workspaces.save({"Odd", sessionOn(odd)}));
    Workspaces again(file);
    ASSERT_EQ(again.all().size(), 1);
    EXPECT_EQ(again.all()[0].session.tabs[0].left.native(), odd.native());
}
