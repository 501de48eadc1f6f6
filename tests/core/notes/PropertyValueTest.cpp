// Typed values: conversion from YAML, the views, dates, type guessing and sort keys.

#include "notes/PropertyValue.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

PropertyValue scalar(const QString& text) { return PropertyValue::fromYaml({"k", {text}, false}); }
PropertyValue text(const QString& t) { return PropertyValue::ofText(t); }
PropertyValue number(double n) { return PropertyValue::ofNumber(n); }

TEST(PropertyValue, FromYamlScalars)
{
    EXPECT_EQ(scalar("TRUE"), PropertyValue::ofBool(true));
    EXPECT_EQ(scalar("False"), PropertyValue::ofBool(false));
    EXPECT_EQ(scalar("yes"), text("yes"));
    EXPECT_EQ(scalar("no"), text("no"));
    EXPECT_EQ(scalar("12"), number(12));
    EXPECT_EQ(scalar("-0.5e1"), number(-5));
    EXPECT_EQ(scalar(".5"), number(0.5));
    EXPECT_EQ(scalar("inf"), text("inf"));
    EXPECT_EQ(scalar("0x10"), text("0x10"));
    EXPECT_EQ(scalar("1e"), text("1e"));
    EXPECT_EQ(scalar("12 apples"), text("12 apples"));
    EXPECT_EQ(PropertyValue::fromYaml({"k", {}, false}), text(""));
    EXPECT_EQ(PropertyValue::fromYaml({"k", {"1", "x"}, true}), PropertyValue::ofList({"1", "x"}));
}

TEST(PropertyValue, TextView)
{
    EXPECT_EQ(number(3).text(), "3");
    EXPECT_EQ(number(-0.0).text(), "0");
    EXPECT_EQ(number(2.25).text(), "2.25");
    EXPECT_EQ(number(1e19).text(), "1e+19");           // past the 64-bit range
    EXPECT_EQ(number(9007199254740992.0).text(), "9007199254740992");
    EXPECT_EQ(PropertyValue::ofBool(true).text(), "true");
    EXPECT_EQ(PropertyValue::ofList({"a", "b"}).text(), "a, b");
}

TEST(PropertyValue, NumberView)
{
    EXPECT_EQ(text(" 7.5 ").number(), 7.5);
    EXPECT_EQ(text("seven").number(), std::nullopt);
    EXPECT_EQ(PropertyValue::ofBool(true).number(), std::nullopt);
    EXPECT_EQ(PropertyValue::ofList({"1"}).number(), std::nullopt);
}

TEST(PropertyValue, ListView)
{
    EXPECT_EQ(text(" a, ,b ,, c").list(), (QStringList{"a", "b", "c"}));
    EXPECT_EQ(text("").list(), QStringList());
    EXPECT_EQ(PropertyValue::ofBool(false).list(), QStringList{"false"});
    EXPECT_EQ(number(4).list(), QStringList{"4"});
}

TEST(PropertyValue, DateRule)
{
    EXPECT_EQ(text("2024-05-17").date(), QDate(2024, 5, 17));
    EXPECT_EQ(text("2024-05-17T10:30:00").date(), QDate(2024, 5, 17));
    EXPECT_EQ(text("2023-02-30").date(), QDate(2023, 3, 2)); // runs on into March
    EXPECT_EQ(text("2024-13-01").date(), std::nullopt);
    EXPECT_EQ(text("2024-00-10").date(), std::nullopt);
    EXPECT_EQ(text("2024-01-32").date(), std::nullopt);
    EXPECT_EQ(text("2024/05-17").date(), std::nullopt);
    EXPECT_EQ(text("20245-01-01").date(), std::nullopt);
    EXPECT_EQ(text("2024-5-17").date(), std::nullopt);
    EXPECT_EQ(text("2024-05-1").date(), std::nullopt);
    EXPECT_EQ(text("2024-0é-17").date(), std::nullopt);
    EXPECT_EQ(number(20240517).date(), std::nullopt);
}

TEST(PropertyValue, JsonRoundTripAndRefusals)
{
    for (const PropertyValue& value : {text("x"), number(1.5), PropertyValue::ofBool(true), PropertyValue::ofList({"a"})})
        EXPECT_EQ(PropertyValue::fromJson(value.toJson()), value);
    EXPECT_EQ(PropertyValue::fromJson(QJsonValue()), std::nullopt);
    EXPECT_EQ(PropertyValue::fromJson(QJsonArray{1, 2}), std::nullopt);
    EXPECT_EQ(PropertyValue::fromJson(QJsonObject{{"a", 1}}), std::nullopt);
}

TEST(PropertyValue, GuessingTheTypeTheFirstRuleThatHoldsWins)
{
    const struct {
        const char* name;
        QList<PropertyValue> values;
        PropertyType type;
    } rows[] = {
        {"none", {}, PropertyType::text},
        {"anyList", {text("a"), PropertyValue::ofList({})}, PropertyType::list},
        {"bools", {PropertyValue::ofBool(true), PropertyValue::ofBool(false)}, PropertyType::checkbox},
        {"numbersAndNumericTexts", {number(1), text(" 2 ")}, PropertyType::number},
        {"dates", {text("2024-01-01"), text("2024-02-03 10:00")}, PropertyType::date},
        {"repeatedFew", {text("a"), text("a"), text("b")}, PropertyType::select},
        {"twoNeverSelect", {text("a"), text("a")}, PropertyType::text},
        {"allDistinct", {text("a"), text("b"), text("c")}, PropertyType::text},
        {"tooLong", {text("a very long value, 25 chars"), text("a very long value, 25 chars"), text("b")}, PropertyType::text},
        {"boolAndTextSelect", {PropertyValue::ofBool(true), text("true"), text("maybe")}, PropertyType::select},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(guessPropertyType(row.values), row.type);
    }
}

TEST(PropertyValue, SelectNeedsAtMostTwelveDistinct)
{
    QList<PropertyValue> values;
    for (int i = 0; i < 13; ++i)
        values << text(QString("o%1").arg(i)) << text(QString("o%1").arg(i));
    EXPECT_EQ(guessPropertyType(values), PropertyType::text);
    values.resize(24);
    EXPECT_EQ(guessPropertyType(values), PropertyType::select);
}

TEST(PropertyValue, SortKeys)
{
    EXPECT_EQ(text("2024-01-02").sortKey(PropertyType::date), SortValue(1704153600.0));
    EXPECT_EQ(text("Someday").sortKey(PropertyType::date), SortValue(QString("someday")));
    EXPECT_EQ(text(" 3 ").sortKey(PropertyType::number), SortValue(3.0));
    EXPECT_EQ(text("Many").sortKey(PropertyType::number), SortValue(QString("Many")));
    EXPECT_EQ(PropertyValue::ofBool(true).sortKey(PropertyType::checkbox), SortValue(QString("true")));
    EXPECT_EQ(text("no").sortKey(PropertyType::checkbox), SortValue(QString("false")));
    EXPECT_EQ(text("Draft").sortKey(PropertyType::select), SortValue(QString("draft")));
}

TEST(PropertyValue, SortValueOrder)
{
    EXPECT_LT(compareSortValues(2.0, 10.0), 0);
    EXPECT_LT(compareSortValues(1e9, QString("a")), 0);
    EXPECT_GT(compareSortValues(QString("a"), -1.0), 0);
    EXPECT_LT(compareSortValues(QString("file2"), QString("file10")), 0);
    EXPECT_EQ(compareSortValues(QString("x"), QString("x")), 0);
}

} // namespace
