// A job with several failures: the window's toast sums them up with the first few names, and
// Show All lists every message in a sheet that Esc closes.

#include "WindowFixture.h"
#include "support/ScratchMount.h"
#include "ui/fileops/FailureList.h"

#include <QPushButton>
#include <sys/stat.h>
#include <unistd.h>

using namespace orwick;
using test::waitUntil;

namespace {

using FailureToastTest = test::WindowTest;

QPushButton* toastButton(ToastHost* toasts, const QString& title)
{
    for (QPushButton* button : toasts->findChildren<QPushButton*>())
        if (button->isVisible() && button->text() == title)
            return button;
    return nullptr;
}

TEST_F(FailureToastTest, SeveralFailuresShowASummaryAndShowAllListsEveryOne)
{
    // A folder that takes no new entries: a disk out of inodes for root, else a read-only folder.
    std::unique_ptr<test::ScratchMount> disk;
    FilePath destination = tree.folder("locked");
    if (geteuid() == 0) {
        disk = std::make_unique<test::ScratchMount>("tmpfs", "size=1m,nr_inodes=1");
        if (!disk->ok())
            GTEST_SKIP() << disk->why().toStdString();
        destination = disk->root();
    } else {
        ASSERT_EQ(chmod(destination.c_str(), 0555), 0);
    }
    QList<FilePath> items;
    for (int i = 0; i < 6; ++i)
        items.append(tree.file(QStringLiteral("src/f%1.txt").arg(i), "text"));
    open(tree.path("src"));

    ops().transfer(items, destination, FileOperations::Mode::copy, state->undoStack());
    settle();
    if (!disk)
        chmod(destination.c_str(), 0755);

    ASSERT_TRUE(waitUntil([&] { return !toast().isEmpty(); }));
    EXPECT_TRUE(toast().startsWith(QStringLiteral("Couldn’t copy 6 items: “f0.txt”, “f1.txt”, “f2.txt” and 3 more — ")))
        << toast().toStdString();
    EXPECT_EQ(toastButton(window->toasts(), QStringLiteral("Undo")), nullptr); // nothing was done
    QPushButton* showAll = toastButton(window->toasts(), QStringLiteral("Show All"));
    ASSERT_NE(showAll, nullptr);
    showAll->click();

    FailureList* list = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (list = window->findChild<FailureList*>()) && list->isVisible(); }));
    const QStringList lines = list->messages();
    ASSERT_EQ(lines.size(), 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(lines[i].startsWith(QStringLiteral("Couldn’t copy “f%1.txt”: ").arg(i))) << lines[i].toStdString();

    // The list has the keyboard: Esc goes to it.
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() && list->isAncestorOf(QApplication::focusWidget()); }));
    QPointer<FailureList> guard(list);
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !guard || !guard->isVisible(); }));
}

TEST_F(FailureToastTest, OneFailureIsSaidWithoutShowAll)
{
    const FilePath item = tree.file("a.txt", "a");
    open(tree.root());
    ops().transfer({tree.root()}, tree.folder("inside"), FileOperations::Mode::move, state->undoStack());
    settle();
    EXPECT_EQ(toast(), QStringLiteral("“%1” can't be put inside itself.").arg(tree.root().fileName()));
    EXPECT_EQ(toastButton(window->toasts(), QStringLiteral("Show All")), nullptr);
    EXPECT_TRUE(test::exists(item));
}

} // namespace
