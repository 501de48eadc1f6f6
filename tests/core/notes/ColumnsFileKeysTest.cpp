// columns.json keys are folder paths exactly as written: a name that ends in a space keeps its
// settings, and another spelling of a folder's path is kept aside rather than merged or lost.

#include "notes/ColumnsFile.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

namespace orwick {
namespace {

QJsonObject settings(bool hidesSize)
{
    FolderColumns columns;
    columns.hidesSize = hidesSize;
    return columns.toJson();
}

TEST(ColumnsFileKeys, AKeyIsTheFoldersPathExactly)
{
    const QJsonObject object{{QStringLiteral("/notes "), settings(true)},
                             {QStringLiteral("/notes"), settings(false)},
                             {QStringLiteral("/notes/"), settings(true)},
                             {QStringLiteral("notes"), settings(true)}};
    const ColumnsFile file = ColumnsFile::fromJson(object);
    ASSERT_EQ(file.folders.size(), 2);
    EXPECT_TRUE(file.folders.value(FilePath::fromNative("/notes ")).hidesSize);
    EXPECT_FALSE(file.folders.value(FilePath::fromNative("/notes")).hidesSize);
    EXPECT_EQ(file.unreadable.keys(), (QStringList{QStringLiteral("/notes/"), QStringLiteral("notes")}));
    EXPECT_EQ(file.toJson(), object);
}

} // namespace
} // namespace orwick
