#include "files/Arrangement.h"
#include "base/NaturalCompare.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

const FilePath kFolder = FilePath::fromNative("/data/folder");

FileItem file(const QString& name, qint64 size = 0, Timestamp modified = 0, const QString& kind = "Text")
{
    FileItem item;
    item.url = kFolder.child(name);
    item.destination = item.url;
    item.name = name;
    item.size = size;
    item.modified = modified;
    item.kind = kind;
    item.isHidden = name.startsWith('.');
    return item;
}

FileItem folder(const QString& name, Timestamp modified = 0)
{
    FileItem item = file(name, 0, modified, "Folder");
    item.isFolder = true;
    item.size.reset();
    return item;
}

QStringList names(const Arrangement& a)
{
    QStringList result;
    for (const FileItem& item : a.items)
        result << item.name;
    return result;
}

Arrangement arranged(ArrangeInput input)
{
    auto result = arrange(input);
    EXPECT_TRUE(result);
    return result ? *result : Arrangement{};
}

QStringList sorted(const FileItems& items, SortKey key, bool ascending)
{
    ArrangeInput input;
    input.items = items;
    input.sortKey = key;
    input.ascending = ascending;
    return names(arranged(input));
}

} // namespace

// Names naturally and regardless of case; folders first in both directions; equal keys keep
// the load order in both directions; an unknown size or date sorts as the smallest.
TEST(Arrangement, SortsByEachKeyInBothDirections)
{
    FileItem unknown = file("unknown");
    unknown.size.reset();
    const FileItems names{file("file10"), file("File2"), file("file1"), file("apple"), file("Banana")};
    const FileItems equalNames{file("b"), file("A.txt"), file("a.TXT"), file("a.txt")};
    const FileItems equalSizes{file("x", 5), file("y", 5), file("z", 1)};
    const FileItems folders{file("small", 1), folder("zeta"), file("big", 100), folder("alpha"), file("mid", 10)};
    const FileItems dated{file("old", 3, 100, "PNG image"), file("new", 2, 300, "Markdown"), unknown, file("mid", 1, 200, "image 10")};
    const struct {
        const FileItems& items;
        SortKey key;
        bool ascending;
        QStringList expected;
    } rows[] = {
        {names, SortKey::name, true, {"apple", "Banana", "file1", "File2", "file10"}},
        {names, SortKey::name, false, {"file10", "File2", "file1", "Banana", "apple"}},
        {equalNames, SortKey::name, true, {"A.txt", "a.TXT", "a.txt", "b"}},
        {equalNames, SortKey::name, false, {"b", "A.txt", "a.TXT", "a.txt"}},
        {equalSizes, SortKey::size, false, {"x", "y", "z"}},
        {equalSizes, SortKey::kind, false, {"x", "y", "z"}},
        {folders, SortKey::size, true, {"zeta", "alpha", "small", "mid", "big"}},
        {folders, SortKey::size, false, {"zeta", "alpha", "big", "mid", "small"}},
        {folders, SortKey::name, false, {"zeta", "alpha", "small", "mid", "big"}},
        {dated, SortKey::modified, false, {"new", "mid", "old", "unknown"}},
        {dated, SortKey::modified, true, {"unknown", "old", "mid", "new"}},
        {dated, SortKey::size, true, {"unknown", "mid", "new", "old"}},
        {dated, SortKey::kind, true, {"mid", "new", "old", "unknown"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(sorted(row.items, row.key, row.ascending), row.expected) << int(row.key) << (row.ascending ? " up" : " down");
}

TEST(Arrangement, FilterKeepsNamesTheMatcherScores)
{
    ArrangeInput input;
    input.items = {file("report.pdf"), file("photo.jpg"), file("Recipes.md"), folder("projects")};
    input.filter = "rp";
    EXPECT_EQ(names(arranged(input)), QStringList({"Recipes.md", "report.pdf"}));
    input.filter = "   ";
    EXPECT_EQ(arranged(input).items.size(), 4);
    input.filter = "a name longer than every item";
    EXPECT_TRUE(arranged(input).items.isEmpty());
    input.filter = "zzz";
    EXPECT_TRUE(arranged(input).items.isEmpty());
}

TEST(Arrangement, FilterAndSortWorkOnNamesThatAreNotUtf8)
{
    FileItem broken;
    broken.url = kFolder.child(QByteArrayView("caf\xe9.txt"));
    broken.destination = broken.url;
    broken.name = broken.url.fileName();
    ArrangeInput input;
    input.items = {file("cab.txt"), broken, file("cafe.txt")};
    input.filter = "caf";
    const Arrangement a = arranged(input);
    ASSERT_EQ(a.items.size(), 2);
    EXPECT_TRUE(a.items.contains(broken));
    EXPECT_EQ(a.positions.value(broken.url, -1), a.items.indexOf(broken));
}

TEST(Arrangement, HiddenItemsDropWhenNotShown)
{
    ArrangeInput input;
    input.items = {file(".config"), file("visible")};
    EXPECT_EQ(arranged(input).items.size(), 2);
    input.showHidden = false;
    EXPECT_EQ(names(arranged(input)), QStringList({"visible"}));
}

TEST(Arrangement, IgnoredPathsDropItemsAndWhatIsUnderThem)
{
    ArrangeInput input;
    input.folder = kFolder;
    FileItem deep = file("deep.o");
    deep.url = kFolder.child(QStringLiteral("build/obj/deep.o"));
    input.items = {file("main.cpp"), folder("build"), file("core.o"), deep};
    input.ignored = std::make_shared<QSet<FilePath>>(QSet<FilePath>{kFolder.child(QStringLiteral("build")),
                                                                    kFolder.child(QStringLiteral("core.o"))});
    EXPECT_EQ(names(arranged(input)), QStringList({"main.cpp"}));

    // The folder itself ignored hides everything in it; an ancestor shorter than it does not count.
    input.ignored = std::make_shared<QSet<FilePath>>(QSet<FilePath>{kFolder});
    EXPECT_TRUE(arranged(input).items.isEmpty());
    input.ignored = std::make_shared<QSet<FilePath>>(QSet<FilePath>{kFolder.parent()});
    EXPECT_EQ(arranged(input).items.size(), 4);
}

TEST(Arrangement, PropertySortPutsItemsWithoutValueLastInBothDirections)
{
    const QHash<QString, SortValue> values{{"ten.md", 10.0}, {"two.md", 2.0}, {"b-text.md", QString("beta 10")},
                                           {"a-text.md", QString("Beta 2")}, {"also-two.md", 2.0}};
    ArrangeInput input;
    input.items = {file("zz-none.md"), file("ten.md"), file("b-text.md"), file("two.md"), file("a-none.md"),
                   file("a-text.md"), file("also-two.md"), folder("notes")};
    input.propertySort = "rank";
    input.propertyValue = [&](const FilePath& path) -> std::optional<SortValue> {
        const auto it = values.find(path.fileName());
        return it == values.end() ? std::nullopt : std::optional<SortValue>(*it);
    };
    // Numbers numerically, texts naturally; equal values and missing ones by name, ascending.
    EXPECT_EQ(names(arranged(input)), QStringList({"notes", "also-two.md", "two.md", "ten.md", "a-text.md",
                                                   "b-text.md", "a-none.md", "zz-none.md"}));
    input.ascending = false;
    EXPECT_EQ(names(arranged(input)), QStringList({"notes", "ten.md", "also-two.md", "two.md", "b-text.md",
                                                   "a-text.md", "a-none.md", "zz-none.md"}));
}

TEST(Arrangement, GroupsByDayWithHeadingsAndCounts)
{
    const QDateTime now(QDate(2026, 11, 18), QTime(15, 0)); // a Wednesday
    auto at = [](QDate day) { return QDateTime(day, QTime(9, 30)).toMSecsSinceEpoch(); };
    ArrangeInput input;
    input.now = now.toMSecsSinceEpoch();
    input.groupByDate = true;
    input.sortKey = SortKey::name;
    input.items = {file("b-today", 0, at(QDate(2026, 11, 18))), file("yesterday", 0, at(QDate(2026, 11, 17))),
                   file("a-today", 0, at(QDate(2026, 11, 18))), folder("dir-today", at(QDate(2026, 11, 18))),
                   file("last-year", 0, at(QDate(2025, 3, 1))), file("march", 0, at(QDate(2026, 3, 1))),
                   file("undated", 0, kDistantPast)};
    const Arrangement a = arranged(input);
    EXPECT_EQ(names(a), QStringList({"dir-today", "a-today", "b-today", "yesterday", "march", "last-year", "undated"}));
    const QHash<int, Heading> expected{{0, {"Today", 3}}, {3, {"Yesterday", 1}}, {4, {"Earlier this year", 1}},
                                       {5, {"2025", 1}}, {6, {"No date", 1}}};
    EXPECT_EQ(a.headings, expected);
    input.groupByDate = false;
    EXPECT_TRUE(arranged(input).headings.isEmpty());
}

TEST(Arrangement, PositionsAndSourceRowsDescribeTheRows)
{
    ArrangeInput input;
    input.items = {file("c"), file("a"), file("b")};
    const Arrangement a = arranged(input);
    ASSERT_EQ(a.items.size(), 3);
    EXPECT_EQ(a.sourceRows, (std::vector<int>{1, 2, 0}));
    for (int row = 0; row < a.items.size(); ++row)
        EXPECT_EQ(a.positions.value(a.items[row].url, -1), row);
    EXPECT_FALSE(a.positions.contains(kFolder.child(QStringLiteral("d"))));

    input.filter = "b";
    const Arrangement filtered = arranged(input);
    EXPECT_EQ(filtered.positions.value(input.items[1].url), -1);
    EXPECT_EQ(filtered.positions.value(input.items[2].url), 0);
}

TEST(Arrangement, ReusesPreparedDataOnlyForTheSameLoad)
{
    ArrangeInput input;
    input.items = {file("b"), file("a")};
    const Arrangement first = arranged(input);
    ASSERT_TRUE(first.prepared);
    EXPECT_TRUE(first.prepared->isFor(input.items));

    input.prepared = first.prepared;
    input.filter = "a";
    EXPECT_EQ(arranged(input).prepared, first.prepared);

    // A new load with the prepared data of the old one: not trusted, prepared again.
    input.items = {file("c"), file("a"), file("b")};
    input.filter.clear();
    const Arrangement second = arranged(input);
    EXPECT_NE(second.prepared, first.prepared);
    EXPECT_EQ(names(second), QStringList({"a", "b", "c"}));
}

TEST(Arrangement, CancelledArrangementGivesNothing)
{
    ArrangeInput input;
    input.items = {file("a")};
    CancelFlag cancel;
    cancel.cancel();
    EXPECT_FALSE(arrange(input, &cancel));
    EXPECT_FALSE(prepareItems(input.items, &cancel));
}

TEST(Arrangement, ALoadAlreadyInNameOrderIsSharedNotCopied)
{
    ArrangeInput input;
    input.items = {file("a"), file("B"), file("file2"), file("file10")};
    const Arrangement inOrder = arranged(input);
    EXPECT_EQ(inOrder.items.constData(), input.items.constData());
    EXPECT_EQ(names(inOrder), QStringList({"a", "B", "file2", "file10"}));
    EXPECT_EQ(inOrder.positions.value(input.items[3].url), 3);

    // Any other order, or any row dropped, gives rows of its own.
    input.ascending = false;
    const Arrangement reversed = arranged(input);
    EXPECT_NE(reversed.items.constData(), input.items.constData());
    EXPECT_EQ(names(reversed), QStringList({"file10", "file2", "B", "a"}));
    input.ascending = true;
    input.filter = "file";
    EXPECT_EQ(names(arranged(input)), QStringList({"file2", "file10"}));
    input.filter.clear();
    input.items.prepend(folder("z"));
    EXPECT_EQ(names(arranged(input)), QStringList({"z", "a", "B", "file2", "file10"}));
}

TEST(Arrangement, LargeLoadsSortTheSameInOrderOrShuffled)
{
    // Large enough that the names are prepared on a thread of their own.
    FileItems shuffled;
    const int count = 30000;
    for (int i = 0; i < count; ++i) {
        const int n = (i * 7919) % count; // a permutation of 0..count-1
        shuffled.append(file(QStringLiteral("item%1.").arg(n / 2) + (n % 2 ? QStringLiteral("txt") : QStringLiteral("md")), n, n,
                             n % 3 ? QStringLiteral("Text") : QStringLiteral("Markdown")));
    }
    ArrangeInput input;
    input.items = shuffled;
    const Arrangement byName = arranged(input);
    ASSERT_EQ(byName.items.size(), count);
    for (int row = 1; row < count; ++row)
        ASSERT_LT(naturalCompare(byName.items[row - 1].name, byName.items[row].name), 0) << row;

    // The same items loaded in that order: recognised as sorted, arranged the same way.
    input.items = byName.items;
    const Arrangement again = arranged(input);
    EXPECT_EQ(again.items.constData(), byName.items.constData());
    for (int row = 0; row < count; row += 997)
        EXPECT_EQ(again.positions.value(byName.items[row].url), row);

    input.sortKey = SortKey::kind;
    const Arrangement byKind = arranged(input);
    EXPECT_EQ(byKind.items.first().kind, "Markdown");
    EXPECT_EQ(byKind.items.last().kind, "Text");
    EXPECT_EQ(byKind.items.first().name, "item0.md"); // ties keep the (name) load order
}

// The Trash's keys: by when each item was deleted, and by the folder it came from with names
// breaking ties; an item whose record is missing comes last by folder in both directions.
TEST(Arrangement, TrashItemsSortByDeletionDateAndOriginalLocation)
{
    const auto trashed = [](const QString& name, const char* from, Timestamp deleted) {
        FileItem item = file(name);
        item.trashedFrom = from ? FilePath::fromNative(from) : FilePath();
        item.deleted = deleted;
        return item;
    };
    const FileItems items{trashed("b.txt", "/home/u/Work/b.txt", 200), trashed("a.txt", "/home/u/zoo/a.txt", 100),
                          trashed("stray", nullptr, kDistantPast), trashed("c.txt", "/home/u/Art/c.txt", 300),
                          trashed("a2.txt", "/home/u/Work/a2.txt", 150)};
    EXPECT_EQ(sorted(items, SortKey::dateDeleted, false), QStringList({"c.txt", "b.txt", "a2.txt", "a.txt", "stray"}));
    EXPECT_EQ(sorted(items, SortKey::dateDeleted, true), QStringList({"stray", "a.txt", "a2.txt", "b.txt", "c.txt"}));
    EXPECT_EQ(sorted(items, SortKey::originalLocation, true), QStringList({"c.txt", "a2.txt", "b.txt", "a.txt", "stray"}));
    EXPECT_EQ(sorted(items, SortKey::originalLocation, false), QStringList({"a.txt", "a2.txt", "b.txt", "c.txt", "stray"}));
}
