#include "search/NameQuery.h"
#include "search/NameTable.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

FilePath path(const char* text) { return FilePath::fromNative(text); }

QStringList found(const NameTable& table, const QString& query, qsizetype candidateLimit = 5000)
{
    QStringList names;
    for (const NameQuery::Hit& hit : NameQuery::best(table, FuzzyQuery(query), candidateLimit, 100))
        names << visibleName(table.name(hit.entry));
    return names;
}

} // namespace

TEST(NameTable, FindsEntriesAndMakesTheirPathsFromTheArena)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/home/ann"));
    const quint32 docs = table.add(home, "Documents", true);
    const quint32 report = table.add(docs, "report.txt", false);
    const quint32 odd = table.add(docs, QByteArray("caf\xe9.txt"), false); // not UTF-8
    EXPECT_EQ(table.path(report), path("/home/ann/Documents/report.txt"));
    EXPECT_EQ(table.path(odd).native(), QByteArray("/home/ann/Documents/caf\xe9.txt"));
    EXPECT_EQ(table.find(path("/home/ann/Documents/report.txt")), report);
    EXPECT_EQ(table.find(FilePath::fromNative(QByteArray("/home/ann/Documents/caf\xe9.txt"))), odd);
    EXPECT_EQ(table.find(path("/home/ann")), home);
    EXPECT_EQ(table.find(path("/home/ann/Documents/missing.txt")), NameTable::kNone);
    EXPECT_EQ(table.find(path("/home/annex/Documents")), NameTable::kNone);
    EXPECT_EQ(table.liveCount(), 4);
    EXPECT_EQ(table.fileCount(), 2);
}

TEST(NameTable, AtTheRootOfTheDiskPathsHaveOneSlash)
{
    NameTable table;
    const quint32 root = table.addRoot(path("/"));
    const quint32 file = table.add(table.add(root, "srv", true), "notes.md", false);
    EXPECT_EQ(table.path(file), path("/srv/notes.md"));
    EXPECT_EQ(table.find(path("/srv/notes.md")), file);
}

TEST(NameTable, RemovingAFolderTakesEverythingUnderItAndARootKeepsItself)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    const quint32 a = table.add(home, "a", true);
    table.add(table.add(a, "b", true), "deep.txt", false);
    const quint32 kept = table.add(home, "kept.txt", false);
    table.remove(a);
    EXPECT_EQ(table.find(path("/h/a/b/deep.txt")), NameTable::kNone);
    EXPECT_EQ(table.find(path("/h/a")), NameTable::kNone);
    EXPECT_EQ(table.find(path("/h/kept.txt")), kept);
    EXPECT_EQ(table.liveCount(), 2);
    EXPECT_TRUE(found(table, "deep").isEmpty());

    table.remove(home);
    EXPECT_EQ(table.find(path("/h")), home);
    EXPECT_EQ(table.liveCount(), 1);
}

TEST(NameTable, ACopyStaysAsItWasWhileTheOriginalChanges)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    table.add(home, "one.txt", false);
    const NameTable copy = table;
    table.add(home, "two.txt", false);
    table.remove(table.find(path("/h/one.txt")));
    EXPECT_NE(copy.find(path("/h/one.txt")), NameTable::kNone);
    EXPECT_EQ(copy.find(path("/h/two.txt")), NameTable::kNone);
    EXPECT_EQ(copy.liveCount(), 2);
}

TEST(NameTable, CompactingDropsRemovedNamesAndPutsShallowOnesFirst)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    const quint32 a = table.add(home, "a", true);
    table.add(table.add(a, "b", true), "deep.txt", false);
    table.add(home, "gone.txt", false);
    table.add(home, "top.txt", false);
    table.remove(table.find(path("/h/gone.txt")));
    const NameTable compact = table.compacted();
    EXPECT_EQ(compact.size(), 5);
    EXPECT_EQ(compact.liveCount(), 5);
    QStringList order;
    for (quint32 i = 0; i < quint32(compact.size()); ++i)
        order << compact.path(i).text();
    EXPECT_EQ(order, (QStringList{"/h", "/h/a", "/h/top.txt", "/h/a/b", "/h/a/b/deep.txt"}));
    EXPECT_NE(compact.find(path("/h/a/b/deep.txt")), NameTable::kNone);
}

TEST(NameTable, ColumnsMakeTheSameTableAndBrokenOnesNone)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    table.add(table.add(home, "Docs", true), QByteArray("r\xe9sum\xe9.odt"), false);
    const auto again = NameTable::fromColumns(table.columns());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->path(2).native(), QByteArray("/h/Docs/r\xe9sum\xe9.odt"));
    EXPECT_EQ(again->fileCount(), 1);

    NameTable::Columns loop = table.columns();
    loop.parents[1] = 2; // a folder inside its own file: no tree
    EXPECT_FALSE(NameTable::fromColumns(loop));
    NameTable::Columns outside = table.columns();
    outside.lengths[2] = 200; // past the arena
    EXPECT_FALSE(NameTable::fromColumns(outside));
    NameTable::Columns inFile = table.columns();
    inFile.folderFlags[1] = 0; // a name inside a file
    EXPECT_FALSE(NameTable::fromColumns(inFile));
    NameTable::Columns inClosed = table.columns();
    inClosed.folderFlags[1] = 2; // a name inside a folder the walks don't enter
    EXPECT_FALSE(NameTable::fromColumns(inClosed));

    NameTable withBuildFolder;
    withBuildFolder.add(withBuildFolder.addRoot(path("/h")), "node_modules", true, false);
    const auto kept = NameTable::fromColumns(withBuildFolder.columns());
    ASSERT_TRUE(kept);
    EXPECT_TRUE(kept->isFolder(1));
    EXPECT_FALSE(kept->isEntered(1));
}

TEST(NameQuery, FindsWhatTheFuzzyScorerMatchesAndRanksItTheSameWay)
{
    const QList<QByteArray> names{"report.txt", "Annual Report 2024.pdf", "rpt.md", "portrait.jpg", "r e p o r t",
                                  "REPORTS.csv", "Résumé.odt", "resume.txt", "\xe2\x84\xaa" "elvin.txt" /* Kelvin sign */,
                                  "kelp.txt", QByteArray("caf\xe9 report.txt"), "tab\there.txt", "9 lives.txt"};
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    for (const QByteArray& name : names)
        table.add(home, name, false);
    table.add(home, "reportfolder", true); // folders are not offered

    for (const QString& query : {QStringLiteral("report"), QStringLiteral("rep"), QStringLiteral("RS"), QStringLiteral("é"),
                                 QStringLiteral("k"), QStringLiteral("res"), QStringLiteral("9"), QStringLiteral("t h"),
                                 QStringLiteral("xyz"), QStringLiteral("r\u00e9s"),
                                 QStringLiteral("resume"), QStringLiteral("cafe")}) {
        QList<std::pair<int, QString>> expected;
        for (const QByteArray& name : names)
            if (const auto score = FuzzyMatch::score(query, visibleName(name)))
                expected.append({*score, visibleName(name)});
        std::stable_sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
        QStringList wanted;
        for (const auto& [score, name] : expected)
            wanted << name;
        EXPECT_EQ(found(table, query), wanted) << query.toStdString();
    }
}

TEST(NameQuery, AccentsFoldInThePreChecksAsInTheScore)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    table.add(home, "r\xc3\xa9sum\xc3\xa9 final.txt", false);
    table.add(home, "Cr\xc3\xa8me.txt", false);
    EXPECT_EQ(found(table, "resume"), QStringList{QStringLiteral("r\u00e9sum\u00e9 final.txt")});
    EXPECT_EQ(found(table, "CREME"), QStringList{QStringLiteral("Cr\u00e8me.txt")});
    EXPECT_EQ(found(table, QStringLiteral("cr\u00e9me")), QStringList{QStringLiteral("Cr\u00e8me.txt")});
}

TEST(NameQuery, ScoresOnlyAsManyCandidatesAsAllowedShallowOnesFirst)
{
    NameTable table;
    const quint32 home = table.addRoot(path("/h"));
    const quint32 deep = table.add(home, "deep", true);
    table.add(home, "note one.txt", false);
    table.add(deep, "note.txt", false); // the better match, but further in
    const NameTable compact = table.compacted();
    EXPECT_EQ(found(compact, "note", 1), QStringList{"note one.txt"});
    EXPECT_EQ(found(compact, "note", 2), (QStringList{"note.txt", "note one.txt"}));
    EXPECT_TRUE(found(compact, "").isEmpty());
}
