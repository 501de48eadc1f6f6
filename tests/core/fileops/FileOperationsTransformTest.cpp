// The batch transforms through the engine: new files made from each source under free names,
// files rewritten in place keeping what makes them the same file, one job and one undo step
// either way, several sources at once, and failures, vanished sources and a cancel counted,
// never called done.

#include "FileOpsFixture.h"

#include "images/ImageRead.h"
#include "platform/Xattr.h"

#include <QMutex>
#include <QSet>
#include <atomic>
#include <thread>

namespace orwick::test {
namespace {

FileOperations::TransformTexts shoutTexts()
{
    return {QStringLiteral("Shout"), QStringLiteral("Shouting"), QStringLiteral("Shout Files"),
            QStringLiteral("photo"), QStringLiteral("Shouted")};
}

// Each source becomes NAME.out holding its bytes upper-cased; one holding "no" refuses.
FileOperations::MakeTransform shoutInto(int copies = 1)
{
    return [copies](const FilePath& source, const CancelFlag&) -> Result<QList<FileOperations::MadeFile>> {
        const QByteArray bytes = readAll(source);
        if (bytes.contains("no"))
            return failure(QStringLiteral("it said no"));
        QList<FileOperations::MadeFile> made;
        const QByteArray base = source.fileNameBytes().left(source.fileNameBytes().lastIndexOf('.'));
        for (int i = 0; i < copies; ++i)
            made.append({source.parent().child(QByteArrayView(base + ".out")), bytes.toUpper()});
        return made;
    };
}

FileOperations::ReplaceTransform shouting()
{
    return [](const FilePath& file, const CancelFlag&) -> Result<QByteArray> {
        const QByteArray bytes = readAll(file);
        if (bytes.contains("no"))
            return failure(QStringLiteral("it said no"));
        return bytes.toUpper();
    };
}

TEST_F(FileOpsTest, MadeFilesTakeTheFirstFreeNamesInTheOrderOfTheSources)
{
    QSet<quint64> jobs;
    QObject::connect(&ops, &FileOperations::jobsChanged, [&] {
        for (const FileJob& job : ops.jobs())
            jobs.insert(job.id);
    });
    const FilePath a = file("pics/a.txt", "first");
    const FilePath b = file("pics/b.txt", "second");
    const FilePath alsoA = file("pics/a.dat", "third"); // wants a.out as well
    QList<FilePath> done;
    ops.makeFiles({a, b, alsoA}, shoutTexts(), shoutInto(2), &stack, [&](const QList<FilePath>& list) { done = list; });
    settle();
    const FilePath folder = a.parent();
    EXPECT_EQ(names(folder), (QList<QByteArray>{"a 2.out", "a 3.out", "a 4.out", "a.dat", "a.out", "a.txt", "b 2.out",
                                                "b.out", "b.txt"}));
    EXPECT_EQ(readAll(folder.child(QStringLiteral("a.out"))), "FIRST");
    EXPECT_EQ(readAll(folder.child(QStringLiteral("a 2.out"))), "FIRST");
    EXPECT_EQ(readAll(folder.child(QStringLiteral("a 3.out"))), "THIRD");
    EXPECT_EQ(done, (QList<FilePath>{a, b, alsoA}));
    EXPECT_EQ(jobs.size(), 1u);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Shout Files"));
    EXPECT_EQ(lastToast(), QStringLiteral("Created 6 files"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("photo"));

    undo();
    EXPECT_EQ(names(folder), (QList<QByteArray>{"a.dat", "a.txt", "b.txt"}));
    EXPECT_EQ(names(homeTrashFiles()).size(), 6);
    redo();
    EXPECT_EQ(readAll(folder.child(QStringLiteral("a 3.out"))), "THIRD");
    EXPECT_EQ(readAll(folder.child(QStringLiteral("b 2.out"))), "SECOND");
    EXPECT_TRUE(names(homeTrashFiles()).isEmpty());
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, SourcesThatFailAreNamedAndTheOthersGoOn)
{
    const FilePath good = file("good.txt", "yes");
    const FilePath bad = file("bad.txt", "no");
    const FilePath worse = file("worse.txt", "no way");
    const FilePath fine = file("fine.txt", "fine");
    QList<FilePath> done;
    ops.makeFiles({good, bad, worse, fine}, shoutTexts(), shoutInto(), &stack,
                  [&](const QList<FilePath>& list) { done = list; });
    settle();
    EXPECT_EQ(done, (QList<FilePath>{good, fine}));
    EXPECT_EQ(readAll(tree.path("fine.out")), "FINE");
    EXPECT_FALSE(exists(tree.path("bad.out")));
    ASSERT_EQ(reports.size(), 1);
    const OperationOutcome& outcome = reports.first();
    EXPECT_EQ(outcome.errors, (QStringList{QStringLiteral("Couldn’t do “Shout” on “bad.txt”: it said no."),
                                           QStringLiteral("Couldn’t do “Shout” on “worse.txt”: it said no.")}));
    EXPECT_EQ(outcome.done, 2);
    EXPECT_TRUE(outcome.canUndo);
    EXPECT_EQ(outcomeText(outcome),
              QStringLiteral("Created 2 files; 2 files didn’t work: Couldn’t do “Shout” on “bad.txt”: it said no."));
    EXPECT_TRUE(toasts.isEmpty());
    undo();
    EXPECT_FALSE(exists(tree.path("good.out")));
}

TEST_F(FileOpsTest, OneFailingSourceSaysItsOwnSentence)
{
    const FilePath bad = file("bad.txt", "no");
    ops.makeFiles({bad}, shoutTexts(), [](const FilePath&, const CancelFlag&) -> Result<QList<FileOperations::MadeFile>> {
        return failure(QStringLiteral("Can’t read “bad.txt”."));
    }, &stack);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(outcomeText(reports.first()), QStringLiteral("Can’t read “bad.txt”."));
    EXPECT_EQ(stack.count(), 0);
}

// The picture reader's refusal names the file and gives its reason after a colon; the report is
// that one sentence, not wrapped behind a second colon.
TEST_F(FileOpsTest, APictureThatCantBeReadIsOneSentence)
{
    const FilePath bad = file("bad.png", "this is not a picture");
    const auto header = readPictureHeader(bad);
    ASSERT_FALSE(header);
    ASSERT_TRUE(header.error().startsWith(QStringLiteral("“bad.png” can’t be read: "))) << header.error().toStdString();
    ops.makeFiles({bad}, {QStringLiteral("Convert to JPEG"), QStringLiteral("Converting"), QStringLiteral("Convert to JPEG")},
                  [](const FilePath& source, const CancelFlag&) -> Result<QList<FileOperations::MadeFile>> {
                      const auto read = readPictureHeader(source);
                      if (!read)
                          return failure(read.error());
                      return QList<FileOperations::MadeFile>{};
                  }, &stack);
    settle();
    ASSERT_EQ(reports.size(), 1);
    const QString text = outcomeText(reports.first());
    EXPECT_EQ(text, header.error());
    EXPECT_EQ(text.count(u':'), 1) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("Couldn’t do"))) << text.toStdString();
}

TEST_F(FileOpsTest, AVanishedSourceIsSkippedAndCounted)
{
    const FilePath here = file("here.txt", "here");
    ops.makeFiles({tree.path("gone.txt"), here}, shoutTexts(), shoutInto(), &stack);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().skipped, 1);
    EXPECT_EQ(reports.first().done, 1);
    EXPECT_TRUE(exists(tree.path("here.out")));
}

TEST_F(FileOpsTest, CancelStopsBeforeTheNextSourceAndUndoCoversWhatWasDone)
{
    ops.setTransformWorkers(1);
    QList<FilePath> sources;
    for (int i = 0; i < 6; ++i)
        sources.append(file(QStringLiteral("s%1.txt").arg(i), "text"));
    std::shared_ptr<CopyProgress> progress;
    QObject::connect(&ops, &FileOperations::jobsChanged, [&] {
        if (!ops.jobs().isEmpty())
            progress = ops.jobs().first().progress;
    });
    std::atomic<int> calls = 0;
    auto transform = [&](const FilePath& source, const CancelFlag& cancel) -> Result<QList<FileOperations::MadeFile>> {
        if (++calls == 2)
            progress->cancel(); // the user's cancel while the second source is worked on
        if (cancel.isCancelled())
            return failure(QString());
        return shoutInto()(source, cancel);
    };
    ops.makeFiles(sources, shoutTexts(), transform, &stack);
    settle();
    EXPECT_EQ(calls.load(), 2);
    EXPECT_TRUE(exists(tree.path("s0.out")));
    EXPECT_TRUE(exists(tree.path("s1.out"))); // finished its transform: kept
    EXPECT_FALSE(exists(tree.path("s2.out")));
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().cancelled);
    EXPECT_EQ(reports.first().done, 2);
    EXPECT_TRUE(reports.first().errors.isEmpty());
    EXPECT_TRUE(leftovers(tree.root()).isEmpty()) << leftovers(tree.root()).join(' ').toStdString();
    undo();
    EXPECT_FALSE(exists(tree.path("s0.out")));
    EXPECT_FALSE(exists(tree.path("s1.out")));
}

// Two sources meet inside their transforms: only possible when both run at once.
TEST_F(FileOpsTest, TransformsRunOnSeveralSourcesAtOnce)
{
    ops.setTransformWorkers(2);
    QList<FilePath> sources;
    for (int i = 0; i < 8; ++i)
        sources.append(file(QStringLiteral("p%1.txt").arg(i), "p"));
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::atomic<int> arrived = 0;
    std::atomic<bool> met = true;
    auto transform = [&](const FilePath& source, const CancelFlag& cancel) -> Result<QList<FileOperations::MadeFile>> {
        const int now = ++running;
        for (int seen = most.load(); now > seen && !most.compare_exchange_weak(seen, now);) {
        }
        // The first two wait for each other (a barrier), for ten seconds at most.
        if (++arrived <= 2) {
            const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
            while (arrived.load() < 2 && std::chrono::steady_clock::now() < until)
                std::this_thread::yield();
            if (arrived.load() < 2)
                met = false;
        }
        auto made = shoutInto()(source, cancel);
        --running;
        return made;
    };
    ops.makeFiles(sources, shoutTexts(), transform, &stack);
    settle();
    EXPECT_TRUE(met.load());
    EXPECT_EQ(most.load(), 2); // bounded by the workers asked for
    EXPECT_EQ(lastToast(), QStringLiteral("Created 8 files"));
}

TEST_F(FileOpsTest, ReplacingInPlaceIsOneStepThatPutsBackEachFileExactly)
{
    QList<FilePath> changed;
    QObject::connect(&ops, &FileOperations::contentsChanged, [&](const QList<FilePath>& files) { changed += files; });
    QList<FilePath> files;
    for (int i = 0; i < 5; ++i)
        files.append(file(QStringLiteral("r%1.txt").arg(i), "text " + QByteArray::number(i)));
    ASSERT_EQ(::chmod(files[0].c_str(), 0640), 0);
    ops.replaceInPlace(files, shoutTexts(), shouting(), &stack);
    settle();
    EXPECT_EQ(readAll(files[3]), "TEXT 3");
    EXPECT_EQ(statOf(files[0]).st_mode & 07777, 0640u);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Shout Files"));
    EXPECT_EQ(lastToast(), QStringLiteral("Shouted 5 files"));
    EXPECT_EQ(changed.size(), 5);
    EXPECT_EQ(names(homeTrashFiles()).size(), 5); // the old versions
    EXPECT_TRUE(leftovers(tree.root()).isEmpty());

    undo();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(readAll(files[i]), "text " + QByteArray::number(i));
    EXPECT_EQ(statOf(files[0]).st_mode & 07777, 0640u);
    redo();
    EXPECT_EQ(readAll(files[1]), "TEXT 1");
    undo();
    EXPECT_EQ(readAll(files[1]), "text 1");
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, ReplacingKeepsAttributesAndTheOldVersionIsInTheTrash)
{
    const FilePath photo = file("photo.txt", "pixels");
    if (!xattr::set(photo, "user.test", "kept"))
        GTEST_SKIP() << "the temporary folder's disk takes no extended attributes";
    ops.replaceInPlace({photo}, shoutTexts(), shouting(), &stack);
    settle();
    EXPECT_EQ(readAll(photo), "PIXELS");
    EXPECT_EQ(xattr::get(photo, "user.test"), std::optional<QByteArray>("kept"));
    EXPECT_EQ(names(homeTrashFiles()), QList<QByteArray>{"photo.txt"});
    EXPECT_EQ(readAll(homeTrashFiles().child(QStringLiteral("photo.txt"))), "pixels");
    EXPECT_EQ(lastToast(), QStringLiteral("Shouted photo.txt"));
    // The Trash listing knows where the old version came from.
    EXPECT_EQ(ops.trashLog().formerPath(homeTrashFiles().child(QStringLiteral("photo.txt"))), std::optional(photo));
    undo();
    EXPECT_EQ(readAll(photo), "pixels");
    EXPECT_EQ(xattr::get(photo, "user.test"), std::optional<QByteArray>("kept"));
}

TEST_F(FileOpsTest, AFileWithHardLinksStaysOneFile)
{
    const FilePath photo = file("photo.txt", "pixels");
    const FilePath other = tree.path("other name.txt");
    ASSERT_EQ(::link(photo.c_str(), other.c_str()), 0);
    const ino_t inode = statOf(photo).st_ino;
    ops.replaceInPlace({photo}, shoutTexts(), shouting(), &stack);
    settle();
    EXPECT_EQ(statOf(photo).st_ino, inode);
    EXPECT_EQ(readAll(other), "PIXELS");
    EXPECT_EQ(readAll(homeTrashFiles().child(QStringLiteral("photo.txt"))), "pixels");
    undo();
    EXPECT_EQ(statOf(photo).st_ino, inode);
    EXPECT_EQ(readAll(other), "pixels");
    redo();
    EXPECT_EQ(readAll(other), "PIXELS");
    EXPECT_EQ(statOf(other).st_nlink, 2u);
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_TRUE(leftovers(tree.root()).isEmpty());
}

TEST_F(FileOpsTest, AReadOnlyFileIsRefusedAndLeftAlone)
{
    const FilePath fine = file("fine.txt", "fine");
    const FilePath locked = file("locked.txt", "locked");
    ASSERT_EQ(::chmod(locked.c_str(), 0444), 0);
    QStringList seen;
    QMutex lock;
    ops.replaceInPlace({fine, locked}, shoutTexts(), [&](const FilePath& f, const CancelFlag& cancel) {
        QMutexLocker locker(&lock);
        seen.append(f.fileName());
        return shouting()(f, cancel);
    }, &stack);
    settle();
    EXPECT_EQ(readAll(locked), "locked");
    EXPECT_EQ(readAll(fine), "FINE");
    EXPECT_EQ(seen, QStringList{QStringLiteral("fine.txt")}); // never read for nothing
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().errors, QStringList{QStringLiteral("Couldn’t change “locked.txt”: it is read-only.")});
    EXPECT_EQ(reports.first().done, 1);
}

TEST_F(FileOpsTest, UndoLeavesAFileChangedSinceAndSaysSo)
{
    const FilePath mine = file("mine.txt", "mine");
    const FilePath theirs = file("theirs.txt", "theirs");
    ops.replaceInPlace({mine, theirs}, shoutTexts(), shouting(), &stack);
    settle();
    file("theirs.txt", "edited elsewhere");
    undo();
    EXPECT_EQ(readAll(mine), "mine");
    EXPECT_EQ(readAll(theirs), "edited elsewhere");
    EXPECT_EQ(errors, QStringList{QStringLiteral(
                          "Couldn’t put back “theirs.txt”: it was changed after it was rewritten, so it was left as it is.")});
}

TEST_F(FileOpsTest, UndoLeavesAMadeFileChangedSince)
{
    const FilePath a = file("a.txt", "a");
    const FilePath b = file("b.txt", "b");
    ops.makeFiles({a, b}, shoutTexts(), shoutInto(), &stack);
    settle();
    file("b.out", "mine now");
    undo();
    EXPECT_FALSE(exists(tree.path("a.out")));
    EXPECT_EQ(readAll(tree.path("b.out")), "mine now");
    EXPECT_EQ(errors, QStringList{QStringLiteral(
                          "Couldn’t move “b.out” to the Trash: it was changed after it was made, so it was left as it is.")});
    redo();
    EXPECT_EQ(readAll(tree.path("a.out")), "A");
    EXPECT_EQ(readAll(tree.path("b.out")), "mine now");
    EXPECT_FALSE(exists(tree.path("b 2.out")));
}

TEST_F(FileOpsTest, ReplacingThroughALinkKeepsTheLink)
{
    const FilePath target = file("real.txt", "real");
    const FilePath link = tree.link(QStringLiteral("link.txt"), "real.txt");
    ops.replaceInPlace({link}, shoutTexts(), shouting(), &stack);
    settle();
    EXPECT_TRUE(S_ISLNK(statOf(link).st_mode));
    EXPECT_EQ(readAll(target), "REAL");
    undo();
    EXPECT_EQ(readAll(target), "real");
}

TEST_F(FileOpsTest, ATransformThatChangesNothingWritesNothing)
{
    const FilePath loud = file("loud.txt", "LOUD");
    const ino_t inode = statOf(loud).st_ino;
    ops.replaceInPlace({loud}, shoutTexts(), shouting(), &stack);
    settle();
    EXPECT_EQ(statOf(loud).st_ino, inode);
    EXPECT_EQ(stack.count(), 0);
    EXPECT_TRUE(names(homeTrashFiles()).isEmpty());
    EXPECT_TRUE(reports.isEmpty());
}

TEST_F(FileOpsTest, AFileNamedTwiceIsRewrittenOnce)
{
    const FilePath twice = file("twice.txt", "twice");
    std::atomic<int> calls = 0;
    ops.replaceInPlace({twice, twice}, shoutTexts(), [&](const FilePath& f, const CancelFlag& cancel) {
        ++calls;
        return shouting()(f, cancel);
    }, &stack);
    settle();
    EXPECT_EQ(calls.load(), 1);
    EXPECT_EQ(readAll(twice), "TWICE");
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, CancellingARewriteKeepsWhatWasDoneAndLeavesNoTemporaryFile)
{
    ops.setTransformWorkers(1);
    QList<FilePath> files;
    for (int i = 0; i < 5; ++i)
        files.append(file(QStringLiteral("c%1.txt").arg(i), "text"));
    std::shared_ptr<CopyProgress> progress;
    QObject::connect(&ops, &FileOperations::jobsChanged, [&] {
        if (!ops.jobs().isEmpty())
            progress = ops.jobs().first().progress;
    });
    std::atomic<int> calls = 0;
    ops.replaceInPlace(files, shoutTexts(), [&](const FilePath& f, const CancelFlag& cancel) -> Result<QByteArray> {
        if (++calls == 2) {
            progress->cancel();
            // A long transform sees the cancel on its flag soon after.
            for (int i = 0; i < 200 && !cancel.isCancelled(); ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            return failure(QString());
        }
        return shouting()(f, cancel);
    }, &stack);
    settle();
    EXPECT_EQ(calls.load(), 2);
    EXPECT_EQ(readAll(files[0]), "TEXT");
    EXPECT_EQ(readAll(files[1]), "text");
    EXPECT_EQ(readAll(files[2]), "text");
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().cancelled);
    EXPECT_EQ(reports.first().done, 1);
    EXPECT_TRUE(reports.first().errors.isEmpty()) << reports.first().errors.join('\n').toStdString();
    EXPECT_TRUE(leftovers(tree.root()).isEmpty());
    undo();
    EXPECT_EQ(readAll(files[0]), "text");
}

TEST_F(FileOpsTest, ALargeFileWithHardLinksIsStreamedBothWays)
{
    QByteArray original(20 << 20, Qt::Uninitialized);
    for (qsizetype i = 0; i < original.size(); ++i)
        original[i] = char('a' + (i * 31) % 26);
    const FilePath big = file("big.txt", original);
    ASSERT_EQ(::link(big.c_str(), tree.path("big link.txt").c_str()), 0);
    ops.replaceInPlace({big}, shoutTexts(), shouting(), &stack);
    settle();
    EXPECT_EQ(readAll(tree.path("big link.txt")), original.toUpper());
    undo();
    EXPECT_EQ(readAll(tree.path("big link.txt")), original);
    redo();
    EXPECT_EQ(readAll(big), original.toUpper());
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, AFileGoneBeforeItsTurnIsSkippedAndCounted)
{
    const FilePath here = file("here.txt", "here");
    ops.replaceInPlace({tree.path("gone.txt"), here}, shoutTexts(), shouting(), &stack);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().skipped, 1);
    EXPECT_EQ(reports.first().done, 1);
    EXPECT_EQ(outcomeText(reports.first()), QStringLiteral("Shouted here.txt; 1 item was no longer there"));
}

// orwick-cli runs the engine without a window or an undo stack.
TEST_F(FileOpsTest, TransformsRunWithoutAnUndoStack)
{
    const FilePath a = file("a.txt", "a");
    ops.makeFiles({a}, shoutTexts(), shoutInto(), nullptr);
    settle();
    EXPECT_EQ(lastToast(), QStringLiteral("Created a.out")) << "one made file is named";
    FileOperations::TransformTexts plain = shoutTexts();
    plain.done.clear();
    ops.replaceInPlace({a}, plain, shouting(), nullptr);
    settle();
    EXPECT_EQ(readAll(tree.path("a.out")), "A");
    EXPECT_EQ(readAll(a), "A");
    EXPECT_EQ(lastToast(), QStringLiteral("Changed a.txt"));
    EXPECT_EQ(stack.count(), 0);
}

} // namespace
} // namespace orwick::test
