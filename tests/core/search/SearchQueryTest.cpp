#include "search/SearchQuery.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

FileItem itemNamed(const QString& name, bool isFolder = false, Timestamp modified = 0)
{
    FileItem item;
    item.url = FilePath::fromText(QStringLiteral("/tmp/") + name);
    item.name = name;
    item.isFolder = isFolder;
    item.category = categorize(item.url, isFolder, false);
    item.modified = modified;
    return item;
}

SearchQuery named(const QString& text)
{
    SearchQuery query;
    query.text = text;
    query.folder = FilePath::fromText(QStringLiteral("/tmp"));
    return query;
}

} // namespace

TEST(SearchQuery, TodayAtFiveAfterMidnightPassesOnlyWhatChangedSinceMidnight)
{
    const QDateTime now(QDate(2026, 3, 14), QTime(0, 5), Qt::LocalTime);
    const QDateTime midnight(QDate(2026, 3, 14), QTime(0, 0), Qt::LocalTime);
    EXPECT_EQ(SearchQuery::since(SearchQuery::Changed::today, now), midnight.toMSecsSinceEpoch());

    SearchQuery query = named(QStringLiteral("report"));
    query.changed = SearchQuery::Changed::today;
    EXPECT_TRUE(query.matches(itemNamed("report.txt", false, midnight.addSecs(60).toMSecsSinceEpoch()), now));
    EXPECT_TRUE(query.matches(itemNamed("report.txt", false, midnight.toMSecsSinceEpoch()), now));
    EXPECT_FALSE(query.matches(itemNamed("report.txt", false, midnight.addSecs(-60).toMSecsSinceEpoch()), now));
    // A day that started five minutes ago is not "the last 24 hours".
    EXPECT_FALSE(query.matches(itemNamed("report.txt", false, now.addSecs(-3600).toMSecsSinceEpoch()), now));
}

TEST(SearchQuery, WeekIsSevenDaysAndMonthAndYearAreCalendarSteps)
{
    const QDateTime now(QDate(2026, 3, 31), QTime(15, 30), Qt::LocalTime);
    EXPECT_EQ(SearchQuery::since(SearchQuery::Changed::any, now), std::nullopt);
    EXPECT_EQ(SearchQuery::since(SearchQuery::Changed::week, now), now.addDays(-7).toMSecsSinceEpoch());
    // One calendar month before 31 March is the last day of February.
    EXPECT_EQ(SearchQuery::since(SearchQuery::Changed::month, now),
              QDateTime(QDate(2026, 2, 28), QTime(15, 30), Qt::LocalTime).toMSecsSinceEpoch());
    EXPECT_EQ(SearchQuery::since(SearchQuery::Changed::year, now),
              QDateTime(QDate(2025, 3, 31), QTime(15, 30), Qt::LocalTime).toMSecsSinceEpoch());
}

TEST(SearchQuery, AccentsAndLetterCaseAreFoldedOnBothSides)
{
    EXPECT_TRUE(named("resume").matches(itemNamed(QStringLiteral("Résumé 2024.pdf"))));
    EXPECT_TRUE(named(QStringLiteral("RÉSUMÉ")).matches(itemNamed("resume.txt")));
    EXPECT_FALSE(named("resume").matches(itemNamed("result.txt")));
}

TEST(SearchQuery, PatternCharactersAreTakenLiterally)
{
    EXPECT_TRUE(named("a*b").matches(itemNamed("xa*by")));
    EXPECT_FALSE(named("a*b").matches(itemNamed("axxb")));
    EXPECT_FALSE(named("a?c").matches(itemNamed("abc")));
    EXPECT_TRUE(named("[1]").matches(itemNamed("photo[1].jpg")));
    EXPECT_FALSE(named("[12]").matches(itemNamed("photo1.jpg")));
    EXPECT_TRUE(named(R"(a\b)").matches(itemNamed(R"(a\b.txt)")));
    EXPECT_FALSE(named(".").matches(itemNamed("Makefile")));
    EXPECT_TRUE(named(".").matches(itemNamed("notes.txt")));
}

TEST(SearchQuery, EachKindKeepsItsOwnFiles)
{
    using K = SearchQuery::Kind;
    struct Case { K kind; QString yes; QString no; bool yesIsFolder = false; };
    const QList<Case> cases{
        {K::folders, "Projects", "Projects.txt", true},
        {K::documents, "letter.odt", "photo.jpg"},
        {K::documents, "notes.txt", "song.mp3"},
        {K::images, "photo.jpg", "photo.pdf"},
        {K::media, "song.mp3", "cover.png"},
        {K::media, "film.mkv", "film.srt.zip"},
        {K::code, "main.cpp", "readme.txt"},
        {K::pdfs, "paper.pdf", "paper.docx"},
    };
    for (const Case& c : cases) {
        SearchQuery query = named({});
        query.kind = c.kind;
        EXPECT_TRUE(query.matches(itemNamed(c.yes, c.yesIsFolder))) << SearchQuery::kindName(c.kind).toStdString() << " " << c.yes.toStdString();
        EXPECT_FALSE(query.matches(itemNamed(c.no))) << SearchQuery::kindName(c.kind).toStdString() << " " << c.no.toStdString();
    }
    SearchQuery any = named({});
    EXPECT_TRUE(any.matches(itemNamed("whatever.bin")));
    SearchQuery folders = named({});
    folders.kind = K::folders;
    EXPECT_FALSE(folders.matches(itemNamed("file")));
}

TEST(SearchQuery, RunnableWithTextOrAFilter)
{
    EXPECT_FALSE(named("").isRunnable());
    EXPECT_FALSE(named("   ").isRunnable());
    EXPECT_TRUE(named("x").isRunnable());
    SearchQuery images = named("");
    images.kind = SearchQuery::Kind::images;
    EXPECT_TRUE(images.isRunnable());
}

TEST(SearchQuery, SavedSearchRoundTripsAndUnknownChoicesBecomeTheFirst)
{
    SearchQuery query = named("tax");
    query.scope = SearchQuery::Scope::mac;
    query.kind = SearchQuery::Kind::pdfs;
    query.changed = SearchQuery::Changed::year;
    const SavedSearch saved = query.toSaved(QStringLiteral("Taxes"), QStringLiteral("id-1"));
    EXPECT_EQ(saved.scope, "mac");
    EXPECT_EQ(saved.kind, "pdfs");
    EXPECT_EQ(saved.changed, "year");
    EXPECT_EQ(saved.folderPath, "/tmp");
    const auto back = SavedSearch::fromJson(saved.toJson());
    ASSERT_TRUE(back);
    SearchQuery again = SearchQuery::fromSaved(*back);
    EXPECT_EQ(again.name, QStringLiteral("Taxes"));
    again.name.reset();
    EXPECT_EQ(again, query);

    SavedSearch odd = saved;
    odd.scope = "everywhere";
    odd.kind = "spreadsheets";
    odd.changed = "decade";
    const SearchQuery fallback = SearchQuery::fromSaved(odd);
    EXPECT_EQ(fallback.scope, SearchQuery::Scope::here);
    EXPECT_EQ(fallback.kind, SearchQuery::Kind::any);
    EXPECT_EQ(fallback.changed, SearchQuery::Changed::any);
}

TEST(SearchQuery, TitleAndSummary)
{
    SearchQuery query = named(" tax ");
    query.folder = FilePath::fromText("/home/ann/Documents");
    query.kind = SearchQuery::Kind::pdfs;
    query.changed = SearchQuery::Changed::week;
    EXPECT_EQ(query.title(), QStringLiteral("Search “tax”"));
    EXPECT_EQ(query.filterSummary(), QStringLiteral("Below Documents · PDFs · Changed this week"));
    query.name = QStringLiteral("Taxes");
    EXPECT_EQ(query.title(), QStringLiteral("Taxes"));
    EXPECT_EQ(SearchQuery::savedDetail(query.toSaved("Taxes", "id")), QStringLiteral("“tax” · Below Documents · PDFs · Changed this week"));
}
