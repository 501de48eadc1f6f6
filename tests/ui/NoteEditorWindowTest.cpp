// The editor in a real window, driven by keys: Ctrl+E opens the cursor's text file in the editor
// beside its rendered note, Ctrl+S saves through the engine as one undo step that the window's
// undo takes back, leaving saves what was typed, another program's change while typing is
// offered (Reload, Keep Mine) and never written over, a file that isn't UTF-8 is read-only, and
// New Note opens the note it makes in the editor.

#include "WindowFixture.h"
#include "app/Settings.h"
#include "commands/CommandCatalog.h"
#include "ui/notes/LivePreview.h"
#include "ui/notes/NoteEditor.h"
#include "ui/preview/PreviewPanel.h"
#include "ui/preview/PreviewView.h"
#include "ui/sidebar/Sidebar.h"

#include <QPlainTextEdit>
#include <QFileInfo>
#include <QPushButton>
#include <QSplitter>
#include <QTextBrowser>
#include <cstdio>

using namespace orwick;

namespace {

constexpr const char* kNote = "---\ntitle: Plan\n---\n# Plan\n\n```js\nlet x = 1;\n```\n";

struct NoteEditorWindowTest : test::WindowTest {
    FilePath note, text, folder;
    void SetUp() override
    {
        openSettings()->setValue(QStringLiteral("previewExpanded"), false);
        note = tree.file("note.md", kNote);
        text = tree.file("words.txt", "plain words\n");
        folder = tree.folder(QStringLiteral("sub"));
        open(tree.root());
    }
    NoteEditor* editor() { return window->previewPanel()->editor(); }
    QPlainTextEdit* editorText() { return editor() ? editor()->textEdit() : nullptr; }
    // Puts the cursor on `file` and presses Ctrl+E.
    void startEditing(const FilePath& file)
    {
        select(file);
        press(Qt::Key_E, Qt::ControlModifier);
        ASSERT_TRUE(test::waitUntil([&] { return editorText() && QApplication::focusWidget() == editorText(); }));
    }
    void typeAtEnd(const QString& words)
    {
        press(Qt::Key_End, Qt::ControlModifier);
        type(words);
    }
    // Another program writes the file: a new file renamed over it, as editors do.
    void writeElsewhere(const FilePath& file, const QByteArray& bytes)
    {
        const FilePath other = tree.file("other.tmp", bytes);
        ASSERT_EQ(std::rename(other.c_str(), file.c_str()), 0);
    }
    // Types "Mine" into the note while another program writes "theirs\n" over it.
    void typeMineWhileTheirsIsWritten()
    {
        startEditing(note);
        typeAtEnd(QStringLiteral("Mine"));
        writeElsewhere(note, "theirs\n");
    }
    // The offer bar's visible button named `text`, or nothing.
    QPushButton* offerButton(const QString& text)
    {
        for (QPushButton* button : editor()->offerBar()->findChildren<QPushButton*>())
            if (button->text() == text && button->isVisible())
                return button;
        return nullptr;
    }
};

} // namespace

TEST_F(NoteEditorWindowTest, CtrlESavesWithCtrlSAndTheWindowsUndoTakesTheSaveBack)
{
    startEditing(note);
    EXPECT_EQ(state->documentMode(), DocumentMode::split);
    EXPECT_FALSE(window->activePaneWidget()->isVisible()) << "the editor takes the content area";
    EXPECT_EQ(editorText()->toPlainText(), QString::fromUtf8(kNote));
    EXPECT_TRUE(editor()->livePreview()->isVisible());
    ASSERT_TRUE(test::waitUntil([&] { return editor()->livePreview()->noteView()->toPlainText().contains("Plan"); }));
    // Ctrl+Shift+E shows the source alone, and the rendered note beside it again.
    press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(state->documentMode(), DocumentMode::edit);
    EXPECT_FALSE(editor()->livePreview()->isVisible());
    press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(state->documentMode(), DocumentMode::split);
    EXPECT_TRUE(editor()->livePreview()->isVisible());

    typeAtEnd(QStringLiteral("Done"));
    EXPECT_TRUE(editor()->isModified());
    // The rendered note follows the typing after a pause.
    ASSERT_TRUE(test::waitUntil([&] { return editor()->livePreview()->noteView()->toPlainText().contains("Done"); }));
    EXPECT_EQ(test::readAll(note), kNote) << "nothing is written before a save";

    const int steps = state->undoStack()->count();
    press(Qt::Key_S, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "Done");
    EXPECT_FALSE(editor()->isModified());
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Save"));
    EXPECT_EQ(toast(), QStringLiteral("Saved “note.md”"));

    // Inside the editor Ctrl+Z undoes typing, not the save.
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editorText()->toPlainText(), QString::fromUtf8(kNote));
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(editorText()->toPlainText(), QString::fromUtf8(kNote) + "Done");
    EXPECT_FALSE(editor()->isModified());

    // Outside it, the window's undo takes the save back, and the editor (holding nothing
    // unsaved) shows the file as it is again.
    QTextBrowser* rendered = editor()->livePreview()->noteView();
    rendered->setFocus();
    ASSERT_TRUE(test::waitUntil([&] { return QApplication::focusWidget() == rendered; }));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(note), kNote);
    EXPECT_TRUE(test::waitUntil([&] { return editorText()->toPlainText() == QString::fromUtf8(kNote); }));
    EXPECT_TRUE(editor()->offerText().isEmpty());
}

TEST_F(NoteEditorWindowTest, LeavingSavesWhatWasTyped)
{
    const int sidebarWidth = window->sidebar()->width();
    startEditing(note);
    EXPECT_EQ(window->sidebar()->width(), sidebarWidth) << "the editor takes the panes' room, not the sidebar's";
    typeAtEnd(QStringLiteral("More"));
    press(Qt::Key_Escape);
    EXPECT_EQ(state->documentMode(), DocumentMode::preview);
    settle();
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "More");
    EXPECT_EQ(toast(), QStringLiteral("Saved “note.md”"));
    EXPECT_TRUE(test::waitUntil([&] { return editor() == nullptr && window->activePaneWidget()->isVisible(); }));
    EXPECT_EQ(window->sidebar()->width(), sidebarWidth);
    // The panes get their room back: the preview column beside them opens at 380 pixels, or at
    // half the room beside the sidebar in a narrow window.
    auto* columns = qobject_cast<QSplitter*>(window->centralWidget());
    ASSERT_NE(columns, nullptr);
    const QList<int> sizes = columns->sizes();
    ASSERT_EQ(sizes.size(), 3);
    const int room = sizes[1] + sizes[2];
    EXPECT_EQ(sizes[2], std::min(380, room / 2));
    EXPECT_GE(window->activePaneWidget()->width(), room / 2 - 10);

    // Ctrl+E goes back too; with nothing typed nothing is written.
    startEditing(note);
    const int steps = state->undoStack()->count();
    press(Qt::Key_E, Qt::ControlModifier);
    settle();
    EXPECT_EQ(state->documentMode(), DocumentMode::preview);
    EXPECT_EQ(state->undoStack()->count(), steps);
}

TEST_F(NoteEditorWindowTest, AnotherProgramsChangeWhileTypingIsOfferedAndNeverOverwritten)
{
    typeMineWhileTheirsIsWritten();
    ASSERT_TRUE(test::waitUntil([&] { return !editor()->offerText().isEmpty(); })) << "the watcher didn't tell";
    EXPECT_EQ(editor()->offerText(), QStringLiteral("“note.md” was changed by another program."));
    EXPECT_TRUE(editorText()->toPlainText().endsWith("Mine")) << "what was typed stays";

    // A save now is refused, and leaving keeps the editor open with the offer.
    press(Qt::Key_S, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(note), "theirs\n");
    press(Qt::Key_Escape);
    settle();
    ASSERT_TRUE(test::waitUntil([&] { return editor() && editor()->isVisible(); }));
    EXPECT_NE(state->documentMode(), DocumentMode::preview);
    EXPECT_EQ(test::readAll(note), "theirs\n");

    // Keep Mine writes mine over theirs as one step; the window's undo gives theirs back.
    QPushButton* keepMine = offerButton(QStringLiteral("Keep Mine"));
    ASSERT_NE(keepMine, nullptr);
    keepMine->click();
    settle();
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "Mine");
    EXPECT_TRUE(editor()->offerBar()->isHidden());
    state->undoStack()->undo();
    settle();
    EXPECT_EQ(test::readAll(note), "theirs\n");
}

TEST_F(NoteEditorWindowTest, ReloadTakesTheirTextAndTheEditorsUndoHasMine)
{
    typeMineWhileTheirsIsWritten();
    ASSERT_TRUE(test::waitUntil([&] { return !editor()->offerText().isEmpty(); }));
    ASSERT_NE(offerButton(QStringLiteral("Reload")), nullptr);
    offerButton(QStringLiteral("Reload"))->click();
    EXPECT_EQ(editorText()->toPlainText(), QStringLiteral("theirs\n"));
    EXPECT_FALSE(editor()->isModified());
    editorText()->setFocus();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(editorText()->toPlainText().endsWith("Mine"));
}

TEST_F(NoteEditorWindowTest, AFileThatIsntUtf8IsReadOnly)
{
    const FilePath latin = tree.file("latin.txt", "caf\xE9\n");
    ASSERT_TRUE(test::waitUntil([&] { return pane()->row(latin) >= 0; }));
    startEditing(latin);
    EXPECT_TRUE(editorText()->isReadOnly());
    EXPECT_EQ(editorText()->toPlainText(), QStringLiteral("café\n"));
    EXPECT_TRUE(editor()->noteText().contains(QStringLiteral("isn’t UTF-8 text, so it is open read-only")));
    EXPECT_FALSE(editor()->livePreview()->isVisible()) << "only notes are rendered beside the text";
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(test::readAll(latin), "caf\xE9\n");
}

TEST_F(NoteEditorWindowTest, TheCommandWantsATextFileAndSaysWhy)
{
    const AppCommand* command = CommandCatalog::find(QStringLiteral("toggleEditing"));
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->shortcut, QKeySequence(Qt::CTRL | Qt::Key_E));
    select(folder);
    EXPECT_FALSE(command->enabledIn(*state));
    EXPECT_EQ(command->disabledNote, QStringLiteral("Put the cursor on a text file to edit it"));
    select(text);
    EXPECT_TRUE(command->enabledIn(*state));
    EXPECT_FALSE(command->isChecked(*state));
    startEditing(text);
    EXPECT_TRUE(command->isChecked(*state));
    EXPECT_EQ(editorText()->toPlainText(), QStringLiteral("plain words\n"));
}

TEST_F(NoteEditorWindowTest, NewNoteOpensInTheEditor)
{
    press(Qt::Key_N, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
    settle();
    ASSERT_TRUE(test::waitUntil([&] { return editorText() != nullptr; }));
    EXPECT_EQ(editor()->file(), tree.path("untitled.md"));
    EXPECT_TRUE(test::waitUntil([&] { return QApplication::focusWidget() == editorText(); }));
    type(QStringLiteral("# Idea"));
    press(Qt::Key_S, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(tree.path("untitled.md")), "# Idea");
}

TEST_F(NoteEditorWindowTest, ClosingWhenTheSaveIsRefusedKeepsTheWindowAndWhatWasTyped)
{
    typeMineWhileTheirsIsWritten();

    window->close();
    settle();
    // The close waits for the save, which is refused: the window stays, and says why.
    ASSERT_TRUE(test::waitUntil([&] { return editor() && !editor()->offerText().isEmpty(); }));
    QApplication::processEvents();
    EXPECT_TRUE(window->isVisible());
    ASSERT_NE(editor(), nullptr);
    EXPECT_TRUE(editor()->isVisible());
    EXPECT_EQ(editor()->offerText(), QStringLiteral("“note.md” was changed by another program."));
    EXPECT_TRUE(editorText()->toPlainText().endsWith("Mine")) << "what was typed stays";
    EXPECT_EQ(test::readAll(note), "theirs\n") << "their text is never written over unasked";

    // Keep Mine saves; closing then works.
    QPushButton* keepMine = offerButton(QStringLiteral("Keep Mine"));
    ASSERT_NE(keepMine, nullptr);
    keepMine->click();
    settle();
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "Mine");
    ASSERT_TRUE(test::waitUntil([&] { return !editor()->isModified(); }));
    window->close();
    EXPECT_TRUE(test::waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(NoteEditorWindowTest, ClosingWhenTheFileWasDeletedKeepsTheWindowAndWhatWasTyped)
{
    startEditing(note);
    typeAtEnd(QStringLiteral("Mine"));
    ASSERT_EQ(std::remove(note.c_str()), 0);

    window->close();
    settle();
    ASSERT_TRUE(test::waitUntil([&] { return editor() && !editor()->offerText().isEmpty(); }));
    QApplication::processEvents();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(editor()->offerText(), QStringLiteral("“note.md” was deleted or moved by another program."));
    EXPECT_TRUE(editorText()->toPlainText().endsWith("Mine"));
    EXPECT_FALSE(QFileInfo::exists(note.text())) << "nothing is written back unasked";

    QPushButton* keepMine = offerButton(QStringLiteral("Keep Mine"));
    ASSERT_NE(keepMine, nullptr);
    keepMine->click();
    settle();
    ASSERT_TRUE(test::waitUntil([&] { return QFileInfo::exists(note.text()) && !editor()->isModified(); }));
    EXPECT_EQ(test::readAll(note), QByteArray(kNote) + "Mine");
    window->close();
    EXPECT_TRUE(test::waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(NoteEditorWindowTest, ClosingWhileTheEditorIsLeavingWaitsForItsSave)
{
    typeMineWhileTheirsIsWritten();
    ASSERT_TRUE(test::waitUntil([&] { return !editor()->offerText().isEmpty(); }));
    // Esc starts leaving (the save is refused and the editor comes back); the close in the
    // same moment must not drop it.
    press(Qt::Key_Escape);
    window->close();
    settle();
    ASSERT_TRUE(test::waitUntil([&] { return editor() && editor()->isVisible(); }));
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(editorText()->toPlainText().endsWith("Mine"));
    EXPECT_EQ(test::readAll(note), "theirs\n");
}

TEST_F(NoteEditorWindowTest, QuittingWhenTheSaveIsRefusedIsCancelled)
{
    typeMineWhileTheirsIsWritten();
    // The Quit command asks the application to quit; the window refuses while its text is unsaved.
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    settle();
    ASSERT_TRUE(test::waitUntil([&] { return editor() && !editor()->offerText().isEmpty(); }));
    QApplication::processEvents();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(editorText()->toPlainText().endsWith("Mine"));
    EXPECT_EQ(test::readAll(note), "theirs\n");
}
