// The keys the Keyboard Shortcuts sheet lists for the terminal, sent one by one to the real
// terminal (a shell on a real pseudo-terminal) in a real window: each does what the sheet says.
// A row added to the table without a check here fails.

#include "WindowFixture.h"

#include "commands/ViewKeys.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalSession.h"
#include "ui/terminal/TerminalView.h"

#include <QClipboard>
#include <QMouseEvent>

namespace orwick::test {
namespace {

struct ViewKeysDriftTerminalTest : WindowTest {
    void SetUp() override
    {
        m_shell = qgetenv("SHELL");
        qputenv("SHELL", "/bin/sh"); // a plain, known shell whatever the machine's user has
    }
    void TearDown() override { qputenv("SHELL", m_shell); }
    TerminalSession* session() { return TabTerminals::existing(state->selectedTab())->selected(); }
    TerminalView* view() { return qobject_cast<TerminalView*>(QApplication::focusWidget()); }
    // Where the screen shows `text` as a command's output (a prompt may stand before it on its
    // row, the command that printed it not): x the column, y the row; (-1, -1) when nowhere.
    QPoint outputAt(const QString& text)
    {
        const QStringList rows = session()->screen().screenText().split(u'\n');
        for (qsizetype row = 0; row < rows.size(); ++row)
            if (rows[row].trimmed().endsWith(text) && !rows[row].contains(QStringLiteral("echo")))
                return QPoint(int(rows[row].lastIndexOf(text)), int(row));
        return QPoint(-1, -1);
    }
    bool shows(const QString& text)
    {
        return waitUntil([&] { return outputAt(text).y() >= 0; }, 10000);
    }
    void typeLine(const QString& text)
    {
        type(text);
        press(Qt::Key_Return);
    }
    void pressChord(const QKeySequence& chord) { press(chord[0].key(), chord[0].keyboardModifiers()); }
    static std::string name(const ViewKey& key, const QKeySequence& chord)
    {
        return key.does.toStdString() + " (" + chord.toString().toStdString() + ")";
    }
    QByteArray m_shell;
};

TEST_F(ViewKeysDriftTerminalTest, TheTerminalsKeysDoWhatTheSheetSays)
{
    open(tree.root());
    press(Qt::Key_F4);
    ASSERT_TRUE(waitUntil([&] { return view() && session()->isIdleAtPrompt(); }));
    TerminalView* terminal = view();
    QClipboard* clipboard = QApplication::clipboard();
    for (const ViewKey& key : ViewKeys::of(KeyedView::terminal).keys) {
        for (const QKeySequence& chord : key.chords) {
            using A = ViewKeyAction;
            ASSERT_EQ(view(), terminal);
            switch (key.action) {
            case A::terminalCopy: {
                typeLine("echo COPY''ME"); // the word whole only in the output
                ASSERT_TRUE(shows("COPYME")) << session()->screen().screenText().toStdString();
                const QPoint word = outputAt("COPYME");
                const QPointF at = terminal->cellRect(word.y(), word.x() + 2).center();
                QMouseEvent twice(QEvent::MouseButtonDblClick, at, terminal->viewport()->mapToGlobal(at), Qt::LeftButton,
                                  Qt::LeftButton, Qt::NoModifier);
                QCoreApplication::sendEvent(terminal->viewport(), &twice);
                ASSERT_EQ(terminal->selectedText(), "COPYME");
                clipboard->setText("before");
                pressChord(chord);
                EXPECT_EQ(clipboard->text(), "COPYME") << name(key, chord);
                break;
            }
            case A::terminalPaste: {
                // What runs prints a line of its own: the paste reached the shell, not the pane.
                static int pastes = 0;
                const QString result = QString::number(40 + ++pastes) + "P";
                clipboard->setText(QStringLiteral("echo $((40+%1))P").arg(pastes));
                pressChord(chord);
                press(Qt::Key_Return);
                EXPECT_TRUE(shows(result)) << name(key, chord) << ": " << session()->screen().screenText().toStdString();
                break;
            }
            case A::terminalScrollUp:
            case A::terminalScrollDown: {
                typeLine("seq 1 300");
                // Not shows("300"): the command's own line ends so too, before anything ran.
                ASSERT_TRUE(waitUntil([&] { return session()->screen().scrollback().size() >= 250 && session()->isIdleAtPrompt(); }, 10000))
                    << session()->screen().scrollback().size();
                const int page = std::max(1, session()->screen().rows() - 1);
                terminal->scrollLines(key.action == A::terminalScrollDown ? 2 * page : 0);
                const int before = terminal->scrollOffset();
                pressChord(chord);
                EXPECT_EQ(terminal->scrollOffset(), key.action == A::terminalScrollUp ? before + page : before - page) << name(key, chord);
                terminal->scrollLines(-terminal->scrollOffset());
                break;
            }
            default: ADD_FAILURE() << "no check for the terminal's " << name(key, chord);
            }
        }
    }
}

} // namespace
} // namespace orwick::test
