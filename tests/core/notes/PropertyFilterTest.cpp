// Filter rows against values, their chip text and stored form, and date group titles.

#include "notes/DateGroup.h"
#include "notes/PropertyFilter.h"

#include <QTimeZone>
#include <gtest/gtest.h>

using namespace orwick;
using C = PropertyFilter::Condition;

namespace {

std::optional<PropertyValue> text(const QString& t) { return PropertyValue::ofText(t); }

const auto list = [](QStringList items) { return std::optional(PropertyValue::ofList(std::move(items))); };
const auto number = [](double n) { return std::optional(PropertyValue::ofNumber(n)); };
const auto flag = [](bool b) { return std::optional(PropertyValue::ofBool(b)); };

TEST(PropertyFilter, Matches)
{
    const struct {
        const char* name;
        C condition;
        QString operand;
        PropertyType type;
        std::optional<PropertyValue> value;
        bool matches;
    } rows[] = {
        {"blankOperandPassesEquals", C::equals, "  ", PropertyType::text, text("x"), true},
        {"blankOperandPassesBefore", C::before, "", PropertyType::date, std::nullopt, true},
        {"equalsIgnoresCase", C::equals, " Done ", PropertyType::select, text("done"), true},
        {"equalsOther", C::equals, "done", PropertyType::select, text("doing"), false},
        {"equalsMissing", C::equals, "done", PropertyType::select, std::nullopt, false},
        {"differsMissing", C::differs, "done", PropertyType::select, std::nullopt, true},
        {"equalsListItem", C::equals, "B", PropertyType::list, list({"a", "b"}), true},
        {"equalsListNotWhole", C::equals, "a, b", PropertyType::list, list({"a", "b"}), false},
        {"equalsTextOfList", C::equals, "a, b", PropertyType::text, list({"a", "b"}), true},
        {"containsListItem", C::contains, "OJE", PropertyType::list, list({"x", "project"}), true},
        {"containsNoItem", C::contains, "q", PropertyType::list, list({"x", "project"}), false},
        {"containsSplitsText", C::contains, "ea", PropertyType::list, text("tea, coffee"), true},
        {"lacks", C::lacks, "z", PropertyType::text, text("abc"), true},
        {"lacksFound", C::lacks, "B", PropertyType::text, text("abc"), false},
        {"beforeByDay", C::before, "2024-06-01", PropertyType::date, text("2024-05-31T23:59"), true},
        {"beforeSameDay", C::before, "2024-06-01", PropertyType::date, text("2024-06-01"), false},
        {"afterDay", C::after, "2024-06-01", PropertyType::date, text("2024-06-02"), true},
        {"afterWithoutDate", C::after, "2024-06-01", PropertyType::date, text("soon"), false},
        {"beforeWithoutDate", C::before, "2024-06-01", PropertyType::date, text("soon"), false},
        {"operandNotADate", C::before, "June", PropertyType::date, text("2024-01-01"), false},
        {"greater", C::greater, "2", PropertyType::number, number(2.5), true},
        {"greaterNumericText", C::greater, "10", PropertyType::number, text(" 9 "), false},
        {"lessMissing", C::less, "10", PropertyType::number, std::nullopt, false},
        {"lessNotANumber", C::less, "many", PropertyType::number, number(1), false},
        {"emptyMissing", C::empty, "", PropertyType::text, std::nullopt, true},
        {"emptyEmptyText", C::empty, "", PropertyType::text, text(""), true},
        {"emptyEmptyList", C::empty, "", PropertyType::list, list({}), true},
        {"emptyFilled", C::empty, "x", PropertyType::text, text("a"), false},
        {"filled", C::filled, "", PropertyType::text, text("a"), true},
        {"checkedX", C::checked, "", PropertyType::text, text("x"), true},
        {"checkedYes", C::checked, "", PropertyType::text, text("Yes"), true},
        {"checkedNo", C::checked, "", PropertyType::text, text("no"), false},
        {"checkedOne", C::checked, "", PropertyType::number, number(1), true},
        {"checkedBool", C::checked, "", PropertyType::checkbox, flag(false), false},
        {"checkedMissing", C::checked, "", PropertyType::checkbox, std::nullopt, false},
        {"uncheckedMissing", C::unchecked, "", PropertyType::checkbox, std::nullopt, true},
        {"uncheckedTrue", C::unchecked, "", PropertyType::checkbox, flag(true), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const PropertyFilter filter{QUuid::createUuid(), "k", row.condition, row.operand};
        EXPECT_EQ(filter.matches(row.value, row.type), row.matches);
    }
}

TEST(PropertyFilter, ConditionsInOrderWithTitles)
{
    QStringList titles;
    for (C condition : PropertyFilter::allCases())
        titles << PropertyFilter::title(condition);
    EXPECT_EQ(titles, (QStringList{"is", "is not", "contains", "doesn't contain", "is before", "is after", ">", "<",
                                   "is empty", "is not empty", "is checked", "is not checked"}));
    EXPECT_TRUE(PropertyFilter::needsValue(C::less));
    EXPECT_FALSE(PropertyFilter::needsValue(C::filled));
}

TEST(PropertyFilter, EachTypeOffersTheConditionsThatFitIt)
{
    auto titles = [](PropertyType type) {
        QStringList words;
        for (C condition : PropertyFilter::conditions(type))
            words << PropertyFilter::title(condition);
        return words;
    };
    EXPECT_EQ(titles(PropertyType::checkbox), (QStringList{"is checked", "is not checked", "is empty", "is not empty"}));
    EXPECT_EQ(titles(PropertyType::number), (QStringList{"is", "is not", ">", "<", "is empty", "is not empty"}));
    EXPECT_EQ(titles(PropertyType::date), (QStringList{"is", "is before", "is after", "is empty", "is not empty"}));
    const QStringList texts{"is", "is not", "contains", "doesn't contain", "is empty", "is not empty"};
    EXPECT_EQ(titles(PropertyType::text), texts);
    EXPECT_EQ(titles(PropertyType::select), texts);
    EXPECT_EQ(titles(PropertyType::list), texts);
}

TEST(PropertyFilter, Summary)
{
    EXPECT_EQ((PropertyFilter{QUuid(), "status", C::differs, " done "}.summary(PropertyType::select)), "status is not done");
    EXPECT_EQ((PropertyFilter{QUuid(), "done", C::checked, "ignored"}.summary(PropertyType::checkbox)), "done is checked");
    const QString dated = PropertyFilter{QUuid(), "due", C::before, "2024-06-01"}.summary(PropertyType::date);
    EXPECT_TRUE(dated.startsWith("due is before "));
    EXPECT_NE(dated, "due is before 2024-06-01"); // shown as a formatted date
}

TEST(PropertyFilter, StoredByFieldNames)
{
    const PropertyFilter filter{QUuid::createUuid(), "due", C::lacks, "x"};
    const QJsonObject json = filter.toJson();
    EXPECT_EQ(json.value("condition").toString(), "lacks");
    EXPECT_EQ(PropertyFilter::fromJson(json), filter);
    QJsonObject unknown = json;
    unknown.insert("condition", "near");
    EXPECT_EQ(PropertyFilter::fromJson(unknown), std::nullopt);
    QJsonObject noId = json;
    noId.remove("id");
    EXPECT_EQ(PropertyFilter::fromJson(noId), std::nullopt);
}

// Wednesday 15 May 2024, 12:00 UTC; weeks start on Monday.
const QDateTime kNow(QDate(2024, 5, 15), QTime(12, 0), QTimeZone::utc());
QDateTime at(int y, int m, int d, int h = 12) { return QDateTime(QDate(y, m, d), QTime(h, 0), QTimeZone::utc()); }

TEST(DateGroup, Titles)
{
    const struct {
        const char* name;
        QDateTime date;
        const char* title;
    } rows[] = {
        {"laterToday", kNow.addSecs(3600), "Today"},
        {"earlierToday", at(2024, 5, 15, 0), "Today"},
        {"tomorrow", at(2024, 5, 16), "Upcoming"},
        {"yesterday", at(2024, 5, 14, 1), "Yesterday"},
        {"monday", at(2024, 5, 13), "Earlier this week"},
        {"sundayBefore", at(2024, 5, 12), "Last week"},
        {"lastMonday", at(2024, 5, 6), "Last week"},
        {"earlierThisMonth", at(2024, 5, 1), "Earlier this month"},
        {"lastMonth", at(2024, 4, 2), "Last month"},
        {"thisYear", at(2024, 1, 1), "Earlier this year"},
        {"olderYear", at(2023, 12, 31), "2023"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(DateGroup::title(row.date, kNow, Qt::Monday), row.title);
    }
}

TEST(DateGroup, WeekStartMatters)
{
    // Sunday 12 May is "last week" when weeks start on Monday, this week when on Sunday.
    EXPECT_EQ(DateGroup::title(at(2024, 5, 12), kNow, Qt::Sunday), "Earlier this week");
}

} // namespace
