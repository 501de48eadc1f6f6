#include "places/Shelf.h"

#include "platform/JsonFile.h"
#include "platform/StoreNotices.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

struct ShelfFixture : ::testing::Test {
    TempTree tree;
    FilePath file = tree.path(QStringLiteral("data/shelf.json"));

    void SetUp() override { StoreNotices::takePending(); }

    QStringList onDisk() const
    {
        QStringList texts;
        if (const auto document = readJsonFile(file))
            for (const QJsonValue& value : document->object().value("items").toArray())
                texts.append(value.toString());
        return texts;
    }
    static void waitSaved(const Shelf& shelf) { ASSERT_TRUE(waitUntil([&shelf] { return !shelf.hasUnsavedChanges(); })); }
};

TEST_F(ShelfFixture, ItemsComeBackInTheOrderTheyWereAdded)
{
    const FilePath a = tree.file("one/a.txt", "a"), b = tree.folder(QStringLiteral("two/b")), c = tree.file("c.txt", "c");
    {
        Shelf shelf(file);
        EXPECT_TRUE(shelf.isEmpty());
        EXPECT_EQ(shelf.add({a, b}), (QList<FilePath>{a, b}));
        EXPECT_EQ(shelf.add({c}), QList<FilePath>{c});
        waitSaved(shelf);
        EXPECT_EQ(onDisk(), (QStringList{a.text(), b.text(), c.text()}));
    }
    Shelf again(file);
    EXPECT_EQ(again.items(), (QList<FilePath>{a, b, c}));
    again.remove({b});
    waitSaved(again);
    EXPECT_EQ(Shelf(file).items(), (QList<FilePath>{a, c}));
    again.clear();
    waitSaved(again);
    EXPECT_TRUE(Shelf(file).isEmpty());
    EXPECT_TRUE(StoreNotices::takePending().isEmpty());
}

TEST_F(ShelfFixture, AnItemAlreadyOnTheShelfIsNotAddedTwice)
{
    const FilePath a = tree.file("a.txt", "a"), b = tree.file("b.txt", "b");
    Shelf shelf(file);
    shelf.add({a});
    EXPECT_EQ(shelf.add({a, b, b}), QList<FilePath>{b});
    EXPECT_TRUE(shelf.add({a}).isEmpty());
    EXPECT_EQ(shelf.items(), (QList<FilePath>{a, b}));
    waitSaved(shelf);
    EXPECT_EQ(onDisk(), (QStringList{a.text(), b.text()}));
    // A file that lists a path twice keeps it once.
    writeFile(file, QJsonDocument(QJsonObject{{"items", QJsonArray{a.text(), a.text(), "not a path", 4}}}).toJson());
    EXPECT_EQ(Shelf(file).items(), QList<FilePath>{a});
}

TEST_F(ShelfFixture, ANameThatIsNotUtf8KeepsEveryByte)
{
    const FilePath odd = tree.file(QByteArray("caf\xe9.txt"), "x");
    {
        Shelf shelf(file);
        shelf.add({odd});
        waitSaved(shelf);
    }
    ASSERT_EQ(onDisk().size(), 1);
    EXPECT_TRUE(onDisk().first().startsWith("file:")) << onDisk().first().toStdString();
    const Shelf again(file);
    ASSERT_EQ(again.items().size(), 1);
    EXPECT_EQ(again.items().first().native(), odd.native());
}

TEST_F(ShelfFixture, ADamagedFileGivesAnEmptyShelfIsKeptAsideAndSaysSo)
{
    tree.file("data/shelf.json", "{\"items\": [\"/a\",");
    Shelf shelf(file);
    EXPECT_TRUE(shelf.isEmpty());
    EXPECT_EQ(readAll(tree.path(QStringLiteral("data/shelf.damaged.json"))), "{\"items\": [\"/a\",");
    const QStringList notices = StoreNotices::takePending();
    ASSERT_EQ(notices.size(), 1);
    EXPECT_TRUE(notices.first().contains("shelf")) << notices.first().toStdString();
    // Nothing is written over it until the shelf changes.
    EXPECT_FALSE(exists(file));
    const FilePath a = tree.file("a.txt", "a");
    shelf.add({a});
    waitSaved(shelf);
    EXPECT_EQ(onDisk(), QStringList{a.text()});
    // JSON of another shape is damaged too.
    tree.file("data/shelf.json", "[\"/a\"]");
    EXPECT_TRUE(Shelf(file).isEmpty());
    EXPECT_EQ(readAll(tree.path(QStringLiteral("data/shelf.damaged 2.json"))), "[\"/a\"]");
}

TEST_F(ShelfFixture, ChangesMadeByAnotherProcessAreMergedAndPickedUp)
{
    const FilePath a = tree.file("a.txt", "a"), b = tree.file("b.txt", "b"), c = tree.file("c.txt", "c");
    Shelf shelf(file);
    shelf.add({a});
    waitSaved(shelf);
    // orwick-cli adds b through the same file.
    ASSERT_TRUE(Shelf::update(Shelf::storeAt(file), {{Shelf::Change::Kind::add, {b}}}));
    ASSERT_TRUE(waitUntil([&] { return shelf.items() == QList<FilePath>{a, b}; })) << "the running shelf reads the file again";
    shelf.add({c});
    waitSaved(shelf);
    EXPECT_EQ(onDisk(), (QStringList{a.text(), b.text(), c.text()}));
}

} // namespace
