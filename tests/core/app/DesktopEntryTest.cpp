// What the desktop learns from packaging/: orwick.desktop opens folders and orwick:// links with
// `orwick %U`, and nothing makes the session bus start Orwick for "Show in folder" behind the
// user's back.

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

QStringList desktopEntryLines()
{
    QFile file(QStringLiteral(ORWICK_PACKAGING_DIR "/orwick.desktop"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

TEST(DesktopEntry, OpensFoldersAndOrwickLinks)
{
    const QStringList lines = desktopEntryLines();
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_EQ(lines.first(), QStringLiteral("[Desktop Entry]"));
    EXPECT_TRUE(lines.contains(QStringLiteral("Exec=orwick %U")));
    EXPECT_TRUE(lines.contains(QStringLiteral("MimeType=inode/directory;x-scheme-handler/orwick;")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Type=Application")));
}

TEST(DesktopEntry, NoBusActivationForShowInFolder)
{
    const QStringList services = QDir(QStringLiteral(ORWICK_PACKAGING_DIR)).entryList({QStringLiteral("*.service")});
    EXPECT_TRUE(services.isEmpty()) << services.join(QLatin1Char(' ')).toStdString();
}

} // namespace
