// What a trash log's text may name: only absolute paths without NUL are taken, so Put Back never
// acts on a path taken from the working folder or cut short.

#include "fileops/TrashLog.h"

#include <QJsonObject>
#include <gtest/gtest.h>

namespace orwick {
namespace {

QHash<FilePath, FilePath> entriesOf(const QJsonObject& entries)
{
    return TrashLog::entriesIn(QJsonDocument(QJsonObject{{QStringLiteral("entries"), entries}}));
}

TEST(TrashLogEntries, TakesAbsolutePathsAndLeavesTheRest)
{
    const auto entries = entriesOf({
        {QStringLiteral("/t/files/a"), QStringLiteral("/home/u/a")},
        {QStringLiteral("t/files/b"), QStringLiteral("/home/u/b")},
        {QStringLiteral("/t/files/c"), QStringLiteral("home/u/c")},
        {QStringLiteral("/t/files/d"), QString::fromUtf8("/home/u/d\0e", 11)},
        {QString::fromUtf8("/t/files/f\0g", 12), QStringLiteral("/home/u/f")},
        {QStringLiteral("/t/files/h"), 3},
    });
    EXPECT_EQ(entries, (QHash<FilePath, FilePath>{{FilePath::fromNative("/t/files/a"), FilePath::fromNative("/home/u/a")}}));
}

TEST(TrashLogEntries, ReadsPlainPathsAndFileUrlsThatKeepEveryByte)
{
    const QByteArray inTrash("/t/files/caf\xe9");
    const QByteArray former("/home/u/caf\xe9");
    const auto entries = entriesOf({
        {QStringLiteral("/t/files/plain"), QStringLiteral("/home/u/plain")}, // as every log wrote it before
        {FilePath::fromNative(inTrash).toUrl().toString(QUrl::FullyEncoded),
         FilePath::fromNative(former).toUrl().toString(QUrl::FullyEncoded)},
        {QStringLiteral("file:///t/files/nul"), QStringLiteral("file:///home/u/a%00b")},
    });
    EXPECT_EQ(entries, (QHash<FilePath, FilePath>{{FilePath::fromNative("/t/files/plain"), FilePath::fromNative("/home/u/plain")},
                                                  {FilePath::fromNative(inTrash), FilePath::fromNative(former)}}));
}

} // namespace
} // namespace orwick
