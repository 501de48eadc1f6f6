// The keys the Keyboard Shortcuts sheet lists for the views that answer their keys themselves,
// sent one by one to the real view in a real window: each does what the sheet says, so the table
// and the view can't drift apart. A row added to the table without a check here fails.

#include "WindowFixture.h"

#include "commands/PaletteState.h"
#include "commands/ViewKeys.h"
#include "ui/window/PaletteController.h"

#include <QFileInfo>
#include <QLineEdit>

namespace orwick::test {
namespace {

struct ViewKeysDriftTest : WindowTest {
    // Presses the row's first chord on the widget that has the keyboard.
    void pressChord(const ViewKey& key)
    {
        const QKeyCombination chord = key.chords.first()[0];
        press(chord.key(), chord.keyboardModifiers());
    }
    std::string name(const ViewKey& key) { return key.does.toStdString(); }
};

TEST_F(ViewKeysDriftTest, ThePalettesKeysDoWhatTheSheetSays)
{
    tree.folder("sub");
    tree.file("sub/inner.txt");
    open(tree.root());
    PaletteState* palette = window->palette()->palette();
    const auto reopen = [&](PaletteMode mode = PaletteMode::main) {
        if (palette->isOpen())
            palette->close();
        window->activePaneWidget()->focusTarget()->setFocus();
        // Ctrl+K and Ctrl+L, as the user opens it (the window supplies its rows then).
        press(mode == PaletteMode::path ? Qt::Key_L : Qt::Key_K, Qt::ControlModifier);
        ASSERT_TRUE(palette->isOpen() && palette->mode() == mode);
        ASSERT_TRUE(waitUntil([&] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr; }));
    };
    for (const ViewKey& key : ViewKeys::of(KeyedView::palette).keys) {
        using A = ViewKeyAction;
        switch (key.action) {
        case A::palettePrevious:
        case A::paletteNext:
        case A::palettePageUp:
        case A::palettePageDown: {
            reopen();
            palette->setQuery(QStringLiteral("e")); // many commands' titles have one
            ASSERT_TRUE(waitUntil([&] { return palette->selectedRow() == 0; }));
            press(Qt::Key_PageDown);
            const int before = palette->selectedRow();
            ASSERT_EQ(before, 8);
            pressChord(key);
            const int expected = key.action == A::palettePrevious ? 7 : key.action == A::paletteNext ? 9
                               : key.action == A::palettePageUp ? 0 : 16;
            EXPECT_EQ(palette->selectedRow(), expected) << name(key);
            break;
        }
        case A::paletteComplete:
            reopen(PaletteMode::path);
            palette->setQuery(tree.root().text() + QStringLiteral("/su"));
            pressChord(key);
            EXPECT_EQ(palette->query(), tree.root().text() + QStringLiteral("/sub/")) << name(key);
            break;
        case A::paletteChoose:
            reopen(PaletteMode::path);
            palette->setQuery(tree.path("sub").text());
            pressChord(key);
            EXPECT_FALSE(palette->isOpen()) << name(key);
            EXPECT_TRUE(waitUntil([&] { return pane()->url() == tree.path("sub"); })) << name(key);
            pane()->navigate(tree.root());
            break;
        case A::paletteChooseOther: {
            const int tabs = int(state->tabs().size());
            reopen(PaletteMode::path);
            palette->setQuery(tree.path("sub").text());
            pressChord(key);
            EXPECT_FALSE(palette->isOpen()) << name(key);
            EXPECT_EQ(int(state->tabs().size()), tabs + 1) << name(key) << ": a new tab";
            break;
        }
        case A::paletteClose:
            reopen();
            pressChord(key);
            EXPECT_FALSE(palette->isOpen()) << name(key);
            break;
        default: ADD_FAILURE() << "no check for the palette's " << name(key);
        }
    }
}

TEST_F(ViewKeysDriftTest, RenameInPlaceKeepsTheNameOnReturnAndDropsItOnEsc)
{
    tree.file("a.txt");
    open(tree.root());
    for (const ViewKey& key : ViewKeys::of(KeyedView::renameInPlace).keys) {
        using A = ViewKeyAction;
        const FilePath from = QFileInfo::exists(tree.path("a.txt").text()) ? tree.path("a.txt") : tree.path("b.txt");
        select(from);
        press(Qt::Key_F2);
        ASSERT_TRUE(waitUntil([&] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr; }));
        auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        const QString other = from.fileName() == QLatin1String("a.txt") ? QStringLiteral("b.txt") : QStringLiteral("a.txt");
        editor->setText(other);
        pressChord(key);
        settle();
        switch (key.action) {
        case A::renameKeep:
            EXPECT_TRUE(waitUntil([&] { return QFileInfo::exists(tree.path(other).text()); })) << name(key);
            break;
        case A::renameCancel:
            EXPECT_TRUE(QFileInfo::exists(from.text())) << name(key);
            EXPECT_FALSE(QFileInfo::exists(tree.path(other).text())) << name(key);
            break;
        default: ADD_FAILURE() << "no check for renaming's " << name(key);
        }
    }
}

} // namespace
} // namespace orwick::test
