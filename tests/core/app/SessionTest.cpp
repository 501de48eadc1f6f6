#include "app/Session.h"
#include "app/Settings.h"
#include "platform/XdgPaths.h"
#include "support/TempHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

QStringList keysOf(const QJsonObject& object)
{
    QStringList keys = object.keys();
    keys.sort();
    return keys;
}

Session twoTabs(const test::TempTree& tree)
{
    Session session;
    session.tabs.append(Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 1));
    session.tabs.append(Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B"), tree.path("C")}, {tree.path("D")}}, 2));
    session.selected = 1;
    session.showPreview = true;
    return session;
}

struct SessionFixture : ::testing::Test {
    test::TempTree tree;
    void SetUp() override
    {
        for (const char* name : {"A", "B", "C", "D"})
            tree.folder(name);
        openSettings()->remove(Session::kSettingsKey);
        Session::beginRun();
    }
};

} // namespace

TEST_F(SessionFixture, WritesExactlyTheKeysOfTheLayout)
{
    const QJsonObject json = twoTabs(tree).toJson();
    EXPECT_EQ(keysOf(json), (QStringList{"selected", "showPreview", "tabs"}));
    EXPECT_EQ(json["selected"].toInt(), 1);
    EXPECT_TRUE(json["showPreview"].toBool());

    // Two panes side by side need only "left" and "right".
    const QJsonObject pair = json["tabs"].toArray()[0].toObject();
    EXPECT_EQ(keysOf(pair), (QStringList{"left", "right", "rightIsActive"}));
    EXPECT_EQ(pair["left"].toString(), tree.path("A").text());
    EXPECT_EQ(pair["right"].toString(), tree.path("B").text());
    EXPECT_TRUE(pair["rightIsActive"].toBool());

    // A larger grid is carried whole by "columns" and "active", counted column by column.
    const QJsonObject grid = json["tabs"].toArray()[1].toObject();
    EXPECT_EQ(keysOf(grid), (QStringList{"active", "columns", "left", "right", "rightIsActive"}));
    EXPECT_EQ(grid["active"].toInt(), 2);
    EXPECT_FALSE(grid["rightIsActive"].toBool());
    EXPECT_EQ(grid["columns"].toArray().size(), 3);
    EXPECT_EQ(grid["columns"].toArray()[1].toArray()[1].toString(), tree.path("C").text());
    EXPECT_EQ(grid["right"].toString(), tree.path("B").text()); // the grid's second pane
}

TEST_F(SessionFixture, DecodesWhatItEncodes)
{
    const Session session = twoTabs(tree);
    const auto decoded = Session::decode(session.encoded());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, session);
    EXPECT_EQ(decoded->tabs[1].grid(), (QList<QList<FilePath>>{{tree.path("A")}, {tree.path("B"), tree.path("C")}, {tree.path("D")}}));
    EXPECT_EQ(decoded->tabs[1].activeIndex(), 2);
    EXPECT_EQ(decoded->tabs[0].activeIndex(), 1);
}

TEST_F(SessionFixture, DecodingFallsBackToAPaneThatIsThere)
{
    // Only "left" with "rightIsActive" is a single pane.
    const QByteArray json = R"({"tabs":[{"left":")" + tree.path("A").native() + R"(","rightIsActive":true}],"selected":0,"showPreview":false})";
    const auto session = Session::decode(json);
    ASSERT_TRUE(session);
    EXPECT_EQ(session->tabs[0].grid(), (QList<QList<FilePath>>{{tree.path("A")}}));
    EXPECT_EQ(session->tabs[0].activeIndex(), 0); // no second pane to be active
    // Columns without panes fall back to left and right.
    const QByteArray noColumns = R"({"tabs":[{"left":"/a","right":"/b","rightIsActive":true,"columns":[[],[]],"active":3}],"selected":0,"showPreview":false})";
    const auto fallback = Session::decode(noColumns);
    ASSERT_TRUE(fallback);
    EXPECT_EQ(fallback->tabs[0].grid(), (QList<QList<FilePath>>{{FilePath::fromNative("/a")}, {FilePath::fromNative("/b")}}));
    EXPECT_EQ(fallback->tabs[0].activeIndex(), 1);
    // An active index outside the grid picks the first pane.
    Session::Tab tab = Session::Tab::ofGrid({{tree.path("A"), tree.path("B")}, {tree.path("C")}}, 2);
    tab.active = 7;
    EXPECT_EQ(tab.activeIndex(), 0);
    tab.active = -1;
    EXPECT_EQ(tab.activeIndex(), 0);
}

TEST_F(SessionFixture, UndecodableDataIsNoSession)
{
    const char* broken[] = {
        "",
        "not json",
        "[]",
        R"({"tabs":[],"selected":0,"showPreview":false})",                                  // no tabs
        R"({"tabs":[{"left":"/a","rightIsActive":false}],"showPreview":false})",            // no "selected"
        R"({"tabs":[{"left":"/a","rightIsActive":false}],"selected":"0","showPreview":false})",
        R"({"tabs":[{"left":"/a","rightIsActive":false}],"selected":0.5,"showPreview":false})",
        R"({"tabs":[{"left":"/a","rightIsActive":false}],"selected":0})",                   // no "showPreview"
        R"({"tabs":[{"left":"/a"}],"selected":0,"showPreview":false})",                      // no "rightIsActive"
        R"({"tabs":[{"rightIsActive":false}],"selected":0,"showPreview":false})",           // no "left"
        R"({"tabs":[{"left":3,"rightIsActive":false}],"selected":0,"showPreview":false})",
        R"({"tabs":[{"left":"/a","right":null,"rightIsActive":false}],"selected":0,"showPreview":false})",
        R"({"tabs":[{"left":"/a","rightIsActive":false,"columns":["/a"]}],"selected":0,"showPreview":false})",
        R"({"tabs":[{"left":"/a","rightIsActive":false,"active":"1"}],"selected":0,"showPreview":false})",
        R"({"tabs":["/a"],"selected":0,"showPreview":false})",
    };
    for (const char* bytes : broken)
        EXPECT_FALSE(Session::decode(bytes)) << bytes;
    EXPECT_TRUE(Session::decode(R"({"tabs":[{"left":"/a","rightIsActive":false}],"selected":0,"showPreview":false})"));
}

TEST_F(SessionFixture, SavesUnderTheSessionKeyAndOnlyTheFirstWindowOfARunTakesIt)
{
    const Session session = twoTabs(tree);
    ASSERT_TRUE(session.save());
    EXPECT_EQ(openSettings()->value("session").toByteArray(), session.encoded());
    EXPECT_TRUE(test::readAll(xdg::orwickConfigFile()).contains("session="));
    // Only the first window of a run takes the saved session.
    const auto first = Session::forNewWindow();
    ASSERT_TRUE(first);
    EXPECT_EQ(*first, session);
    EXPECT_FALSE(Session::forNewWindow()); // a second window starts fresh
    Session::beginRun();
    EXPECT_TRUE(Session::forNewWindow());
    // A first window opening folders of its own passes its turn: a later window starts fresh too.
    Session::beginRun();
    EXPECT_FALSE(Session::forNewWindow(false));
    EXPECT_FALSE(Session::forNewWindow());
}

TEST_F(SessionFixture, NoneOrDamagedStoredSessionGivesAFreshWindow)
{
    EXPECT_FALSE(Session::forNewWindow());
    Session::beginRun();
    openSettings()->setValue("session", QByteArray("{\"tabs\": [oops"));
    EXPECT_FALSE(Session::forNewWindow());
}

TEST_F(SessionFixture, AFolderGoneSinceOpensAsHome)
{
    EXPECT_EQ(Session::folder(tree.path("A")), tree.path("A"));
    EXPECT_EQ(Session::folder(tree.path("Gone")), xdg::home());
    EXPECT_EQ(Session::folder(tree.file("file.txt")), xdg::home());
    EXPECT_EQ(Session::folder({}), xdg::home());
    tree.link("ToA", "A");
    EXPECT_EQ(Session::folder(tree.path("ToA")), tree.path("ToA")); // a link to a folder is a folder
}

TEST_F(SessionFixture, APathThatIsNotUtf8ComesBackByteForByte)
{
    const FilePath odd = tree.root().child(QByteArrayView("caf\xe9 \xff"));
    Session session;
    session.tabs.append(Session::Tab::ofGrid({{tree.path("A")}, {odd}}, 1));
    session.tabs.append(Session::Tab::ofGrid({{odd, tree.path("B")}, {tree.path("C")}}, 0));
    const QJsonObject json = session.toJson();
    EXPECT_TRUE(json["tabs"].toArray()[0].toObject()["right"].toString().startsWith("file:"));
    ASSERT_TRUE(session.save());
    const auto back = Session::forNewWindow();
    ASSERT_TRUE(back);
    EXPECT_EQ(back->tabs[0].right->native(), odd.native());
    EXPECT_EQ(back->tabs[1].grid()[0][0].native(), odd.native());
    EXPECT_EQ(*back, session);
}
