// The keys the Keyboard Shortcuts sheet lists for the disk-tool panels — Find in Files, the folder
// comparison and the two files or pictures it compares, Find Duplicates, Show Space Used, Clean
// Up Build Folders — sent one by one to the real panel over real files in a real window: each
// does what the sheet says. A row added to the table without a check here fails.

#include "WindowFixture.h"

#include "app/Services.h"
#include "commands/CommandCatalog.h"
#include "commands/ExternalPrograms.h"
#include "commands/ViewKeys.h"
#include "support/SystemFolders.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/ComparePanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/FileComparisonView.h"
#include "ui/panels/FindInFilesPanel.h"
#include "ui/panels/FolderComparisonView.h"
#include "ui/panels/ImageComparisonView.h"
#include "ui/panels/SpacePanel.h"
#include "ui/panels/TreemapWidget.h"

#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <sys/stat.h>

namespace orwick::test {
namespace {

struct ViewKeysDriftPanelsTest : WindowTest {
    void openWindow()
    {
        open(tree.root());
        DiskToolKeys::follow(*state, window.get()); // as the program wires each window
    }
    // The panel shown, or else the one the command opens, once `ready` says it is (null: never).
    template <class Panel>
    Panel* openPanel(const char* command, const std::function<bool(Panel*)>& ready)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // a closed one goes
        if (!window->findChild<Panel*>()) {
            window->activePaneWidget()->focusTarget()->setFocus();
            EXPECT_TRUE(CommandCatalog::run(QString::fromLatin1(command), *state));
        }
        Panel* panel = nullptr;
        const bool shown = waitUntil([&] {
            panel = window->findChild<Panel*>();
            return panel && ready(panel);
        }, 20000);
        return shown ? panel : nullptr;
    }
    void pressChord(const QKeySequence& chord) { press(chord[0].key(), chord[0].keyboardModifiers()); }
    static std::string name(const ViewKey& key, const QKeySequence& chord)
    {
        return key.does.toStdString() + " (" + chord.toString().toStdString() + ")";
    }
    // The texts of the menu a key opens (empty: none opened); the menu is closed again.
    QStringList menuOpenedBy(const QKeySequence& chord)
    {
        QStringList texts;
        QTimer::singleShot(0, window.get(), [&] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (const QAction* action : menu->actions())
                    texts.append(action->text());
                menu->close();
            }
        });
        pressChord(chord);
        // The menu took the window's activation; the window has it back, as on a desktop.
        window->activateWindow();
        EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
        return texts;
    }
};

TEST_F(ViewKeysDriftPanelsTest, FindInFilesKeysDoWhatTheSheetSays)
{
    QByteArray lines;
    for (int i = 1; i <= 25; ++i)
        lines += "needle " + QByteArray::number(i) + "\n";
    const FilePath file = tree.file("a.txt", lines);
    // The editor Ctrl+Return opens: a script named like VS Code that writes down how it was called.
    TempTree tools;
    const FilePath called = tools.path("called");
    const FilePath editor = tools.file("code", "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + called.native() + "'\n");
    ASSERT_EQ(chmod(editor.c_str(), 0755), 0);
    const QByteArray visual = qgetenv("VISUAL");
    qputenv("VISUAL", editor.native());
    ExternalPrograms programs;
    services().programs = &programs;
    const SystemFolders noApps; // Return hands the file to the desktop, where nothing opens it

    openWindow();
    FindInFilesPanel* panel = openPanel<FindInFilesPanel>("findInFiles", [](FindInFilesPanel*) { return true; });
    ASSERT_TRUE(panel);
    auto* field = panel->findChild<QLineEdit*>();
    auto* results = panel->findChild<QListView*>();
    ASSERT_TRUE(field && results);
    const auto search = [&](const QString& query) {
        field->setFocus();
        panel->setQuery(query);
        return waitUntil([&] { return !panel->isSearching(); }, 20000);
    };
    ASSERT_TRUE(search("needle"));
    if (panel->results().isEmpty())
        GTEST_SKIP() << "no search tool answered: " << panel->emptyText().toStdString();
    ASSERT_EQ(panel->results().matchCount(), 25);
    const auto highlightAt = [&](qint64 match) { panel->moveHighlight(int(match - panel->highlighted())); };

    for (const ViewKey& key : ViewKeys::of(KeyedView::findInFiles).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            switch (key.action) {
            case A::findPrevious:
            case A::findNext:
            case A::findPageUp:
            case A::findPageDown:
                for (QWidget* from : {static_cast<QWidget*>(field), static_cast<QWidget*>(results)}) {
                    from->setFocus();
                    highlightAt(12);
                    pressChord(chord);
                    const qint64 expected = key.action == A::findPrevious ? 11 : key.action == A::findNext ? 13
                                          : key.action == A::findPageUp ? 2 : 22;
                    EXPECT_EQ(panel->highlighted(), expected) << name(key, chord) << " from " << from->metaObject()->className();
                }
                break;
            case A::findFirst:
            case A::findLast:
                results->setFocus();
                highlightAt(12);
                pressChord(chord);
                EXPECT_EQ(panel->highlighted(), key.action == A::findFirst ? 0 : 24) << name(key, chord);
                break;
            case A::findShow: {
                // Right after typing it searches at once, without waiting for the pause.
                field->setFocus();
                type(" 2");
                ASSERT_EQ(panel->query(), "needle 2");
                pressChord(chord);
                EXPECT_TRUE(panel->isSearching()) << name(key, chord) << " searches now";
                ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }, 20000));
                EXPECT_EQ(panel->results().matchCount(), 7) << "needle 2 and 20 to 25";
                // Then it opens the match's file.
                std::optional<FileItems> opened;
                const QMetaObject::Connection watch = QObject::connect(pane(), &PaneState::openRequested,
                                                                       [&](const FileItems& files) { opened = files; });
                pressChord(chord);
                QObject::disconnect(watch);
                ASSERT_TRUE(opened) << name(key, chord) << " opens the file";
                ASSERT_EQ(opened->size(), 1);
                EXPECT_EQ(opened->front().url, file);
                EXPECT_TRUE(toast().startsWith("No app is set to open “a.txt”")) << toast().toStdString();
                ASSERT_TRUE(search("needle"));
                break;
            }
            case A::findEdit:
                results->setFocus();
                highlightAt(4);
                QFile::remove(called.text());
                pressChord(chord);
                EXPECT_TRUE(waitUntil([&] { return readAll(called).contains(file.native() + ":5"); }, 10000))
                    << name(key, chord) << " opens the editor at the match's line: " << readAll(called).toStdString();
                EXPECT_EQ(state->tabs().size(), 1) << "not the window's Open in New Tab";
                break;
            case A::findMatchCase:
            case A::findRegularExpression:
                for (QWidget* from : {static_cast<QWidget*>(field), static_cast<QWidget*>(results)}) {
                    from->setFocus();
                    const ContentSearch::Options before = panel->options();
                    pressChord(chord);
                    const ContentSearch::Options after = panel->options();
                    if (key.action == A::findMatchCase)
                        EXPECT_NE(after.matchCase, before.matchCase) << name(key, chord);
                    else
                        EXPECT_NE(after.regex, before.regex) << name(key, chord);
                    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }, 20000));
                    panel->setOptions(before);
                    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }, 20000));
                }
                break;
            default: ADD_FAILURE() << "no check for Find in Files' " << name(key, chord);
            }
        }
    }
    services().programs = nullptr;
    qputenv("VISUAL", visual);
}

TEST_F(ViewKeysDriftPanelsTest, FolderComparisonKeysDoWhatTheSheetSays)
{
    tree.file("left/changed.txt", "one\n");
    tree.file("right/changed.txt", "two\n");
    tree.file("left/only.txt", "o");
    openWindow();
    state->showPanel(WindowState::Panel::compare, tree.path("left"), {tree.path("left"), tree.path("right")});
    auto* panel = window->findChild<ComparePanel*>();
    ASSERT_TRUE(panel);
    auto* view = qobject_cast<FolderComparisonView*>(panel->view());
    ASSERT_TRUE(view);
    ASSERT_TRUE(waitUntil([&] { return view->result() && !view->isComparing(); }, 20000));
    for (const ViewKey& key : ViewKeys::of(KeyedView::folderComparison).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            view->list()->setFocus();
            switch (key.action) {
            case A::compareSync: {
                const QStringList offered = menuOpenedBy(chord);
                EXPECT_TRUE(offered.contains("Copy what's missing to right")) << name(key, chord) << ": " << offered.join(", ").toStdString();
                break;
            }
            case A::compareOpenPair: {
                const QList<QTreeWidgetItem*> rows = view->list()->findItems("changed.txt", Qt::MatchExactly, 1);
                ASSERT_EQ(rows.size(), 1);
                view->list()->setCurrentItem(rows.first());
                pressChord(chord);
                EXPECT_TRUE(qobject_cast<FileComparisonView*>(panel->pairView())) << name(key, chord);
                press(Qt::Key_Escape); // back to the folders
                EXPECT_EQ(panel->pairView(), nullptr);
                break;
            }
            default: ADD_FAILURE() << "no check for the folder comparison's " << name(key, chord);
            }
        }
    }
}

TEST_F(ViewKeysDriftPanelsTest, CompareFilesKeysDoWhatTheSheetSays)
{
    tree.file("a.txt", "one\ntwo\n");
    tree.file("b.txt", "one\n2\n");
    QImage picture(40, 20, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(tree.path("a.png").text()));
    picture.setPixelColor(0, 0, Qt::red);
    ASSERT_TRUE(picture.save(tree.path("b.png").text()));
    openWindow();
    const auto compare = [&](const char* left, const char* right) -> QWidget* {
        state->showPanel(WindowState::Panel::compare, tree.path(left), {tree.path(left), tree.path(right)});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        auto* panel = window->findChild<ComparePanel*>();
        return panel ? panel->view() : nullptr;
    };
    for (const ViewKey& key : ViewKeys::of(KeyedView::fileComparison).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            switch (key.action) {
            case A::compareSideBySide: {
                auto* view = qobject_cast<FileComparisonView*>(compare("a.txt", "b.txt"));
                ASSERT_TRUE(view);
                ASSERT_TRUE(waitUntil([&] { return view->sameBytes().has_value(); }));
                ASSERT_TRUE(view->isAncestorOf(QApplication::focusWidget()) || view->hasFocus());
                const bool before = view->isSideBySide();
                pressChord(chord);
                EXPECT_NE(view->isSideBySide(), before) << name(key, chord);
                break;
            }
            case A::comparePictureView:
            case A::compareSliderLeft:
            case A::compareSliderRight: {
                auto* view = qobject_cast<ImageComparisonView*>(compare("a.png", "b.png"));
                ASSERT_TRUE(view);
                ASSERT_TRUE(waitUntil([&] { return view->isLoaded(); }));
                ASSERT_TRUE(view->hasFocus());
                if (key.action == A::comparePictureView) {
                    const auto next = [](ImageComparisonView::Mode mode) {
                        using M = ImageComparisonView::Mode;
                        return mode == M::sideBySide ? M::slider : mode == M::slider ? M::difference : M::sideBySide;
                    };
                    for (int step = 0; step < 3; ++step) {
                        const ImageComparisonView::Mode before = view->mode();
                        pressChord(chord);
                        EXPECT_EQ(view->mode(), next(before)) << name(key, chord);
                    }
                    break;
                }
                while (view->mode() != ImageComparisonView::Mode::slider)
                    view->setMode(view->mode() == ImageComparisonView::Mode::sideBySide ? ImageComparisonView::Mode::slider
                                                                                       : ImageComparisonView::Mode::sideBySide);
                const double before = view->slider();
                pressChord(chord);
                if (key.action == A::compareSliderLeft)
                    EXPECT_LT(view->slider(), before) << name(key, chord);
                else
                    EXPECT_GT(view->slider(), before) << name(key, chord);
                break;
            }
            default: ADD_FAILURE() << "no check for comparing files' " << name(key, chord);
            }
        }
    }
}

TEST_F(ViewKeysDriftPanelsTest, FindDuplicatesKeysDoWhatTheSheetSays)
{
    const QByteArray same(150000, 'x');
    const QList<FilePath> copies{tree.file("a.bin", same), tree.file("a copy.bin", same), tree.file("a copy 2.bin", same)};
    const FilePath selected = tree.file("keep.txt", "the pane's selection");
    openWindow();
    select(selected); // Delete in the sheet must not reach it
    const auto openDuplicates = [&] {
        return openPanel<DuplicatesPanel>("findDuplicates", [](DuplicatesPanel* p) { return !p->isSearching() && !p->isTrashing(); });
    };
    // Puts the keyboard on a file row of the first group; returns its file.
    const auto onFile = [&](DuplicatesPanel* panel, int row) {
        auto* list = panel->findChild<QTreeWidget*>();
        EXPECT_TRUE(waitUntil([&] { return list->hasFocus(); }));
        QTreeWidgetItem* item = list->topLevelItem(0)->child(row);
        list->setCurrentItem(item);
        return tree.path(item->text(0));
    };
    for (const ViewKey& key : ViewKeys::of(KeyedView::duplicates).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            DuplicatesPanel* panel = openDuplicates();
            ASSERT_TRUE(panel);
            switch (key.action) {
            case A::duplicatesTick: {
                const FilePath file = onFile(panel, 1);
                const bool before = panel->choice().isChosen(file);
                pressChord(chord);
                EXPECT_NE(panel->choice().isChosen(file), before) << name(key, chord);
                pressChord(chord);
                EXPECT_EQ(panel->choice().isChosen(file), before) << name(key, chord) << " again";
                break;
            }
            case A::duplicatesShow: {
                const FilePath file = onFile(panel, 0);
                pressChord(chord);
                EXPECT_TRUE(waitUntil([&] { return !window->findChild<DuplicatesPanel*>(); })) << name(key, chord) << " closes the sheet";
                EXPECT_TRUE(waitUntil([&] { return pane()->selection() == QSet<FilePath>{file}; })) << name(key, chord);
                select(selected);
                break;
            }
            case A::duplicatesTrash: {
                auto* list = panel->findChild<QTreeWidget*>();
                const FilePath file = onFile(panel, 2);
                list->currentItem()->setCheckState(0, Qt::Checked);
                ASSERT_EQ(panel->choice().chosenCount(), 1);
                pressChord(chord);
                EXPECT_TRUE(panel->isTrashing()) << name(key, chord) << " reached the sheet, not the window's Move to Trash";
                settle();
                EXPECT_TRUE(waitUntil([&] { return !QFileInfo::exists(file.text()); })) << name(key, chord);
                EXPECT_TRUE(QFileInfo::exists(selected.text())) << "the pane's selection stays";
                for (const FilePath& copy : copies)
                    EXPECT_EQ(QFileInfo::exists(copy.text()), copy != file) << "only the ticked copy goes";
                EXPECT_EQ(state->undoStack()->undoText(), "Remove Duplicates");
                state->undoStack()->undo();
                settle();
                EXPECT_TRUE(QFileInfo::exists(file.text())) << "put back";
                break;
            }
            default: ADD_FAILURE() << "no check for Find Duplicates' " << name(key, chord);
            }
        }
    }
}

// Whether `to` lies beyond `from` in the direction (dx, dy), as the map's arrows mean it.
bool liesBeyond(const QRectF& from, const QRectF& to, int dx, int dy)
{
    return dx > 0 ? to.left() >= from.right() - 0.5 : dx < 0 ? to.right() <= from.left() + 0.5
         : dy > 0 ? to.top() >= from.bottom() - 0.5 : to.bottom() <= from.top() + 0.5;
}

TEST_F(ViewKeysDriftPanelsTest, ShowSpaceUsedKeysDoWhatTheSheetSays)
{
    tree.file("big/inner.bin", QByteArray(4'000'000, 'b'));
    tree.file("big/second.bin", QByteArray(1'500'000, 'c'));
    tree.file("mid/inner.bin", QByteArray(2'500'000, 'm'));
    tree.file("other/inner.bin", QByteArray(1'800'000, 'o'));
    const FilePath loose = tree.file("loose.bin", QByteArray(1'200'000, 'l'));
    openWindow();
    SpacePanel* panel = openPanel<SpacePanel>("showSpace", [](SpacePanel* p) { return p->current() != nullptr; });
    ASSERT_TRUE(panel);
    auto* map = panel->findChild<TreemapWidget*>();
    ASSERT_TRUE(waitUntil([&] { return map->hasFocus(); }));
    ASSERT_EQ(map->blocks().size(), 4u);
    const auto currentRect = [&] { return map->currentBlock() ? map->currentBlock()->rect : QRectF(); };
    const auto currentName = [&] {
        const TreemapWidget::Block* block = map->currentBlock();
        return block && block->node ? QString::fromUtf8(block->node->name) : QString();
    };
    for (const ViewKey& key : ViewKeys::of(KeyedView::spaceUsed).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            map->setFocus();
            switch (key.action) {
            case A::spaceBlockLeft:
            case A::spaceBlockRight:
            case A::spaceBlockUp:
            case A::spaceBlockDown: {
                const int dx = key.action == A::spaceBlockLeft ? -1 : key.action == A::spaceBlockRight ? 1 : 0;
                const int dy = key.action == A::spaceBlockUp ? -1 : key.action == A::spaceBlockDown ? 1 : 0;
                // From several blocks: the key goes to a block beyond, or stays where none is.
                int moves = 0;
                for (int start : {Qt::Key_Home, Qt::Key_End})
                    for (int then : {0, int(Qt::Key_Left), int(Qt::Key_Right), int(Qt::Key_Up), int(Qt::Key_Down)}) {
                        press(start);
                        if (then)
                            press(then);
                        const QRectF from = currentRect();
                        pressChord(chord);
                        const QRectF to = currentRect();
                        if (to == from) {
                            for (const TreemapWidget::Block& block : map->blocks())
                                EXPECT_FALSE(block.rect != from && liesBeyond(from, block.rect, dx, dy))
                                    << name(key, chord) << " stayed though a block lies that way";
                        } else {
                            ++moves;
                            EXPECT_TRUE(liesBeyond(from, to, dx, dy)) << name(key, chord);
                        }
                    }
                EXPECT_GT(moves, 0) << name(key, chord) << " never moved";
                break;
            }
            case A::spaceFirst:
            case A::spaceLast:
                press(key.action == A::spaceFirst ? Qt::Key_End : Qt::Key_Home);
                pressChord(chord);
                EXPECT_EQ(currentName(), key.action == A::spaceFirst ? "big" : "loose.bin") << name(key, chord);
                break;
            case A::spaceOpen:
                press(Qt::Key_Home);
                pressChord(chord);
                EXPECT_EQ(panel->current()->name, "big") << name(key, chord) << " goes into the folder";
                panel->goOut();
                press(Qt::Key_End);
                pressChord(chord);
                EXPECT_EQ(panel->current(), panel->root()) << name(key, chord) << " stays out of a file";
                EXPECT_TRUE(waitUntil([&] { return pane()->selection() == QSet<FilePath>{loose}; }))
                    << name(key, chord) << " shows the file in the pane";
                break;
            case A::spaceOut:
                press(Qt::Key_Home);
                panel->goIn(const_cast<SpaceNode*>(map->currentBlock()->node));
                ASSERT_NE(panel->current(), panel->root());
                pressChord(chord);
                EXPECT_EQ(panel->current(), panel->root()) << name(key, chord);
                break;
            case A::spaceTrash:
                press(Qt::Key_End);
                ASSERT_EQ(currentName(), "loose.bin");
                pressChord(chord);
                EXPECT_TRUE(panel->isTrashing()) << name(key, chord) << " reached the map, not the window's Move to Trash";
                settle();
                EXPECT_TRUE(waitUntil([&] { return map->blocks().size() == 3u; })) << name(key, chord);
                EXPECT_FALSE(QFileInfo::exists(loose.text()));
                state->undoStack()->undo();
                settle();
                ASSERT_TRUE(QFileInfo::exists(loose.text())) << "put back";
                ASSERT_TRUE(waitUntil([&] { return map->blocks().size() == 4u; }, 20000)) << "measured again";
                break;
            case A::spaceMenu: {
                press(Qt::Key_Home);
                const QStringList offered = menuOpenedBy(chord);
                EXPECT_TRUE(offered.contains("Show in Its Folder")) << name(key, chord) << ": " << offered.join(", ").toStdString();
                break;
            }
            default: ADD_FAILURE() << "no check for Show Space Used's " << name(key, chord);
            }
        }
    }
}

TEST_F(ViewKeysDriftPanelsTest, CleanUpKeysDoWhatTheSheetSays)
{
    tree.file("web/package.json", "{}");
    tree.file("web/node_modules/x/index.js", QByteArray(5000, 'j'));
    tree.file("py/__pycache__/m.pyc", "c");
    const FilePath selected = tree.file("keep.txt", "the pane's selection");
    openWindow();
    select(selected); // Delete in the sheet must not reach it
    for (const ViewKey& key : ViewKeys::of(KeyedView::cleanUp).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            CleanUpPanel* panel = openPanel<CleanUpPanel>("cleanUp", [](CleanUpPanel* p) {
                return !p->isScanning() && !p->isTrashing() && p->rows().size() == 2u;
            });
            ASSERT_TRUE(panel);
            auto* list = panel->findChild<QTreeWidget*>();
            ASSERT_TRUE(waitUntil([&] { return list->hasFocus(); }));
            list->setCurrentItem(list->topLevelItem(1));
            const FilePath current = panel->rows()[1].found.url;
            switch (key.action) {
            case A::cleanUpTick: {
                const bool before = panel->rows()[1].ticked;
                pressChord(chord);
                EXPECT_NE(panel->rows()[1].ticked, before) << name(key, chord);
                pressChord(chord);
                EXPECT_EQ(panel->rows()[1].ticked, before) << name(key, chord) << " again";
                break;
            }
            case A::cleanUpTrash: {
                list->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
                list->topLevelItem(1)->setCheckState(0, Qt::Checked);
                const FilePath other = panel->rows()[0].found.url;
                pressChord(chord);
                EXPECT_TRUE(panel->isTrashing()) << name(key, chord) << " reached the sheet, not the window's Move to Trash";
                settle();
                EXPECT_TRUE(waitUntil([&] { return !QFileInfo::exists(current.text()); })) << name(key, chord);
                EXPECT_TRUE(QFileInfo::exists(other.text())) << "not ticked";
                EXPECT_TRUE(QFileInfo::exists(selected.text())) << "the pane's selection stays";
                state->undoStack()->undo();
                settle();
                EXPECT_TRUE(QFileInfo::exists(current.text())) << "put back";
                list->topLevelItem(0)->setCheckState(0, Qt::Checked);
                break;
            }
            case A::cleanUpShow:
                pressChord(chord);
                EXPECT_TRUE(waitUntil([&] { return !window->findChild<CleanUpPanel*>(); })) << name(key, chord) << " closes the sheet";
                EXPECT_TRUE(waitUntil([&] { return pane()->selection() == QSet<FilePath>{current}; })) << name(key, chord);
                pane()->navigate(tree.root());
                select(selected);
                break;
            default: ADD_FAILURE() << "no check for Clean Up's " << name(key, chord);
            }
        }
    }
}

} // namespace
} // namespace orwick::test
