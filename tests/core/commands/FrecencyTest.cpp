#include "commands/Frecency.h"

#include "platform/JsonFile.h"
#include "platform/StoreNotices.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QJsonObject>
#include <QThreadPool>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace orwick;
using namespace orwick::test;

namespace {

const QDateTime kNow = QDateTime::fromString(QStringLiteral("2026-06-01T12:00:00.000Z"), Qt::ISODateWithMs);

QByteArray entryJson(double count, const QString& lastVisit = QStringLiteral("2026-06-01T11:00:00.000Z"))
{
    return QStringLiteral(R"({"count": %1, "lastVisit": "%2"})").arg(count).arg(lastVisit).toUtf8();
}

// The visit weight frecency.json holds for `folder`; 0 when it holds none.
double countOnDisk(const FilePath& file, const char* folder)
{
    const auto document = readJsonFile(file);
    return document ? document->object().value(QLatin1StringView(folder)).toObject().value("count").toDouble() : 0.0;
}

struct FrecencyFixture : ::testing::Test {
    TempTree tree;
    FilePath file = tree.path(QStringLiteral("data/frecency.json"));

    void writeRecord(const QByteArray& json) const { tree.file(QStringLiteral("data/frecency.json"), json); }

    double countOf(const Frecency& frecency, const char* path) const
    {
        return frecency.entries().value(FilePath::fromNative(path)).count;
    }
};

} // namespace

TEST_F(FrecencyFixture, RecordAddsOneVisitDatedNow)
{
    Frecency frecency(file);
    const FilePath folder = FilePath::fromNative("/somewhere");
    frecency.record(folder, kNow.addSecs(-60));
    frecency.record(folder, kNow);
    const Frecency::Entry entry = frecency.entries().value(folder);
    EXPECT_DOUBLE_EQ(entry.count, 2.0);
    EXPECT_EQ(entry.lastVisit, kNow.toMSecsSinceEpoch());
}

TEST_F(FrecencyFixture, AgesTheRecordOnlyWhenTheCountsPassTheThreshold)
{
    writeRecord("{\"/a\": " + entryJson(1998) + ", \"/b\": " + entryJson(1) + "}");
    Frecency frecency(file);
    ASSERT_EQ(frecency.entries().size(), 2);

    frecency.record(FilePath::fromNative("/c"), kNow); // the sum is exactly 2000: no aging
    EXPECT_EQ(frecency.entries().size(), 3);
    EXPECT_DOUBLE_EQ(countOf(frecency, "/a"), 1998.0);

    frecency.record(FilePath::fromNative("/a"), kNow); // 2001: every count × 0.9, below 1.0 dropped
    EXPECT_EQ(frecency.entries().size(), 1);
    EXPECT_DOUBLE_EQ(countOf(frecency, "/a"), 1999.0 * 0.9);
    EXPECT_FALSE(frecency.entries().contains(FilePath::fromNative("/b")));
    EXPECT_FALSE(frecency.entries().contains(FilePath::fromNative("/c")));
}

TEST_F(FrecencyFixture, RankWeighsVisitsByTheirAge)
{
    EXPECT_EQ(Frecency::ageWeight(0), 4.0);
    EXPECT_EQ(Frecency::ageWeight(3599), 4.0);
    EXPECT_EQ(Frecency::ageWeight(3600), 2.0);
    EXPECT_EQ(Frecency::ageWeight(86399), 2.0);
    EXPECT_EQ(Frecency::ageWeight(86400), 0.5);
    EXPECT_EQ(Frecency::ageWeight(604799), 0.5);
    EXPECT_EQ(Frecency::ageWeight(604800), 0.25);

    Frecency frecency(file);
    const FilePath lastWeek = tree.folder(QStringLiteral("lastWeek"));
    const FilePath yesterday = tree.folder(QStringLiteral("yesterday"));
    const FilePath justNow = tree.folder(QStringLiteral("justNow"));
    for (int i = 0; i < 10; ++i)
        frecency.record(lastWeek, kNow.addDays(-8)); // 10 × 0.25
    for (int i = 0; i < 2; ++i)
        frecency.record(yesterday, kNow.addSecs(-30 * 3600)); // 2 × 0.5
    frecency.record(justNow, kNow.addSecs(-10)); // 1 × 4

    const auto ranked = frecency.ranked(kNow);
    ASSERT_EQ(ranked.size(), 3u);
    EXPECT_EQ(ranked[0].path, justNow);
    EXPECT_DOUBLE_EQ(ranked[0].score, 4.0);
    EXPECT_EQ(ranked[1].path, lastWeek);
    EXPECT_DOUBLE_EQ(ranked[1].score, 2.5);
    EXPECT_EQ(ranked[2].path, yesterday);
    EXPECT_DOUBLE_EQ(ranked[2].score, 1.0);
}

TEST_F(FrecencyFixture, DeletedFolderIsSkippedThenForgotten)
{
    const FilePath kept = tree.folder(QStringLiteral("kept"));
    const FilePath gone = tree.folder(QStringLiteral("gone"));
    const FilePath unplugged = FilePath::fromNative("/media/someone/stick/photos"); // not looked at
    {
        Frecency frecency(file);
        frecency.setSaveDelay(10);
        frecency.record(kept, kNow);
        frecency.record(kept, kNow);
        frecency.record(gone, kNow);
        frecency.record(unplugged, kNow);
        ASSERT_TRUE(QDir(gone.text()).removeRecursively());

        const auto ranked = frecency.ranked(kNow);
        ASSERT_EQ(ranked.size(), 2u);
        EXPECT_EQ(ranked[0].path, kept);
        EXPECT_EQ(ranked[1].path, unplugged);
        EXPECT_FALSE(frecency.entries().contains(gone));
        EXPECT_TRUE(frecency.hasPendingSave());
    }
    const auto saved = readJsonFile(file);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->object().keys(), (QStringList{unplugged.text(), kept.text()}));
}

TEST_F(FrecencyFixture, DamagedOrOddFilesGiveAnEmptyRecordThatTheNextSaveReplaces)
{
    for (const QByteArray& content : {QByteArray("{\"/a\": {\"count\": 3,"), QByteArray("[1, 2, 3]"),
                                      QByteArray("\"text\""), QByteArray("\xff\xfe\x00garbage", 10)}) {
        writeRecord(content);
        Frecency frecency(file);
        EXPECT_TRUE(frecency.entries().isEmpty()) << content.constData();
        frecency.record(FilePath::fromNative("/new"), kNow);
    } // each destructor writes the pending save
    const auto saved = readJsonFile(file);
    ASSERT_TRUE(saved && saved->isObject());
    EXPECT_EQ(saved->object().keys(), QStringList{QStringLiteral("/new")});
}

TEST_F(FrecencyFixture, DamagedFileIsKeptAsideWithOneMessageAndNotOverwritten)
{
    StoreNotices::takePending();
    writeRecord("{\"/a\": {\"count\": 3,");
    {
        Frecency frecency(file);
        EXPECT_TRUE(frecency.entries().isEmpty());
        frecency.record(FilePath::fromNative("/new"), kNow);
    }
    EXPECT_EQ(readAll(tree.path(QStringLiteral("data/frecency.damaged.json"))), "{\"/a\": {\"count\": 3,");
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0], QStringLiteral("Orwick couldn’t read its record of the folders you visit, so the palette ranks "
                                          "folders from scratch. The damaged file was kept as “%1”.")
                               .arg(tree.path(QStringLiteral("data/frecency.damaged.json")).abbreviated()));
    EXPECT_EQ(readJsonFile(file)->object().keys(), QStringList{QStringLiteral("/new")});
}

TEST_F(FrecencyFixture, TwoProcessesAddUpTheirVisits)
{
    writeRecord("{\"/both\": " + entryJson(10) + "}");
    const pid_t child = fork();
    if (child == 0) {
        // A forked child has no pool threads: each object saves as it goes, on this thread.
        for (int i = 0; i < 30; ++i) {
            Frecency frecency(file);
            frecency.record(FilePath::fromNative("/both"), kNow);
            frecency.record(FilePath::fromNative("/child"), kNow);
        }
        _exit(0);
    }
    {
        Frecency frecency(file);
        frecency.setSaveDelay(1);
        for (int i = 0; i < 30; ++i) {
            frecency.record(FilePath::fromNative("/both"), kNow);
            frecency.record(FilePath::fromNative("/parent"), kNow);
            waitUntil([] { return false; }, 2);
        }
    }
    // A save started in the background may still be on its way to the disk.
    QThreadPool::globalInstance()->waitForDone();
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_DOUBLE_EQ(countOnDisk(file, "/parent"), 30.0);
    EXPECT_DOUBLE_EQ(countOnDisk(file, "/child"), 30.0);
    EXPECT_DOUBLE_EQ(countOnDisk(file, "/both"), 70.0);
}

TEST_F(FrecencyFixture, UnsoundEntriesAreLeftOutAndSoundOnesKept)
{
    writeRecord("{\"/good\": " + entryJson(3) + R"(, "/noDate": {"count": 2}, "/textCount": {"count": "2",
        "lastVisit": "2026-06-01T11:00:00.000Z"}, "/notAnObject": 5, "relative": )" + entryJson(1) + "}");
    Frecency frecency(file);
    EXPECT_EQ(frecency.entries().keys(), QList<FilePath>{FilePath::fromNative("/good")});
}

TEST_F(FrecencyFixture, SavesExactlyCountAndLastVisitAndReadsThemBack)
{
    const FilePath odd = FilePath::fromNative("/tmp/caf\xe9-latin1"); // not UTF-8
    QHash<FilePath, Frecency::Entry> before;
    {
        Frecency frecency(file);
        frecency.record(FilePath::fromNative("/plain"), kNow);
        frecency.record(odd, kNow.addSecs(-5));
        before = frecency.entries();
    }
    const auto saved = readJsonFile(file);
    ASSERT_TRUE(saved);
    const QJsonObject entry = saved->object().value(QStringLiteral("/plain")).toObject();
    QStringList keys = entry.keys();
    keys.sort();
    EXPECT_EQ(keys, (QStringList{QStringLiteral("count"), QStringLiteral("lastVisit")}));
    EXPECT_EQ(entry.value(QStringLiteral("count")).toDouble(), 1.0);

    Frecency reread(file);
    EXPECT_EQ(reread.entries(), before);
    EXPECT_TRUE(reread.entries().contains(odd));
}

TEST_F(FrecencyFixture, BurstOfVisitsIsOneWrite)
{
    Frecency frecency(file);
    frecency.setSaveDelay(30);
    int writes = 0;
    QObject::connect(&frecency, &Frecency::saved, [&] { ++writes; });
    for (int i = 0; i < 20; ++i)
        frecency.record(FilePath::fromNative("/burst").child(QString::number(i % 4)), kNow);
    EXPECT_FALSE(exists(file));
    ASSERT_TRUE(waitUntil([&] { return writes > 0; }));
    waitUntil([] { return false; }, 200); // a second write would land meanwhile
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(readJsonFile(file)->object().size(), 4);

    frecency.record(FilePath::fromNative("/later"), kNow);
    ASSERT_TRUE(waitUntil([&] { return writes == 2; }));
    EXPECT_EQ(readJsonFile(file)->object().size(), 5);
}

TEST_F(FrecencyFixture, UnwritableFileIsReported)
{
    tree.file(QStringLiteral("blocker"), "a file, not a folder");
    Frecency frecency(tree.path(QStringLiteral("blocker/frecency.json")));
    frecency.setSaveDelay(1);
    QString message;
    QObject::connect(&frecency, &Frecency::saveFailed, [&](const QString& text) { message = text; });
    StoreNotices::takePending();
    frecency.record(FilePath::fromNative("/x"), kNow);
    ASSERT_TRUE(waitUntil([&] { return !message.isEmpty(); }));
    EXPECT_TRUE(message.startsWith(QStringLiteral("Couldn’t"))) << message.toStdString();
    // More failed saves say nothing more to the window, and lose nothing.
    for (int i = 0; i < 3; ++i) {
        message.clear();
        frecency.record(FilePath::fromNative("/y"), kNow);
        ASSERT_TRUE(waitUntil([&] { return !message.isEmpty(); }));
    }
    const QStringList notices = StoreNotices::takePending();
    ASSERT_EQ(notices.size(), 1);
    EXPECT_TRUE(notices[0].startsWith(QStringLiteral("Orwick couldn’t save its record of the folders you visit")))
        << notices[0].toStdString();
    EXPECT_DOUBLE_EQ(countOf(frecency, "/y"), 3.0);

    // Once the folder can be made, the next save writes every visit kept meanwhile.
    ASSERT_EQ(::unlink(tree.path(QStringLiteral("blocker")).c_str()), 0);
    bool saved = false;
    QObject::connect(&frecency, &Frecency::saved, [&] { saved = true; });
    frecency.record(FilePath::fromNative("/z"), kNow);
    ASSERT_TRUE(waitUntil([&] { return saved; }));
    const FilePath onDisk = tree.path(QStringLiteral("blocker/frecency.json"));
    EXPECT_DOUBLE_EQ(countOnDisk(onDisk, "/x"), 1.0);
    EXPECT_DOUBLE_EQ(countOnDisk(onDisk, "/y"), 3.0);
    EXPECT_DOUBLE_EQ(countOnDisk(onDisk, "/z"), 1.0);
}
