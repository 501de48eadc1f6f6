#pragma once
// TerminalScreen: the emulation of one terminal — libvterm reads the program's output and keeps
// the screen (cells, cursor, the alternate screen of full-screen programs, modes), lines that
// scroll off the top go to the Scrollback, and keys, pastes and mouse events are turned into the
// bytes the program expects, handed to `output`.
//
// Lines are numbered as in the Scrollback: the kept history is firstLine()..scrollback end,
// followed by the screen's rows; lineAt() reads any of them. isWrapped() tells a line the
// terminal wrapped at the right edge (its text goes on in the next line) from one the program
// ended with a line feed. Not thread-safe; one owner.

#include "terminal/CsiGuard.h"
#include "terminal/OutputPieces.h"
#include "terminal/Scrollback.h"
#include "terminal/TerminalCell.h"

#include <QByteArrayView>
#include <QString>
#include <functional>
#include <memory>

struct VTerm;
struct VTermScreen;

namespace orwick {

enum class TerminalKey { enter, tab, backspace, escape, up, down, left, right, insert, deleteKey, home, end, pageUp, pageDown, function };
namespace keyModifier {
enum : int { shift = 1, alt = 2, ctrl = 4 };
}

class TerminalScreen {
public:
    using Output = std::function<void(QByteArrayView bytes)>;
    TerminalScreen(int rows, int cols, Output output, int scrollbackLines = Scrollback::kDefaultCapacity);
    ~TerminalScreen();
    TerminalScreen(const TerminalScreen&) = delete;
    TerminalScreen& operator=(const TerminalScreen&) = delete;

    // The program's output, any bytes: malformed, truncated or non-UTF-8 sequences are shown as
    // best they can and never stop what follows.
    void feed(QByteArrayView bytes);

    int rows() const { return m_rows; }
    int cols() const { return m_cols; }
    void resize(int rows, int cols);

    TerminalCell cell(int row, int col) const; // a row of the screen, 0 at the top
    TerminalLine screenLine(int row) const;
    // The screen's text, rows joined by "\n", trailing blanks of each row dropped.
    QString screenText() const;

    const Scrollback& scrollback() const { return m_scrollback; }
    // Line numbers: kept history from firstLine(), the screen's top row at screenTopLine().
    int64_t firstLine() const { return m_scrollback.firstNumber(); }
    int64_t screenTopLine() const { return m_scrollback.endNumber(); }
    int64_t endLine() const { return screenTopLine() + m_rows; }
    TerminalLine lineAt(int64_t number) const;
    // The terminal wrapped line `number` at the right edge: the next line continues its text.
    bool isWrapped(int64_t number) const;

    int cursorRow() const { return m_cursorRow; }
    int cursorCol() const { return m_cursorCol; }
    bool cursorVisible() const { return m_cursorVisible; }
    bool isAlternateScreen() const { return m_alternate; }
    // The program asked for mouse events (vim, htop…): clicks go to it, not to selection.
    bool wantsMouse() const { return m_mouseMode != 0; }
    QString title() const { return m_title; }
    // Bells since the last call (a flood of them rings once).
    bool takeBell();

    void sendText(const QString& text, int modifiers = 0);
    void sendKey(TerminalKey key, int modifiers = 0, int functionNumber = 0);
    // Text pasted: between bracketed-paste marks when the program asked for them; line ends sent
    // as Return; a stray end mark inside the text is dropped so a paste can't end itself early.
    void paste(const QString& text);
    // Mouse events for a program that asked for them; rows and columns from 0, buttons 1 to 5.
    void mouseMove(int row, int col, int modifiers);
    void mouseButton(int button, bool pressed, int modifiers);

    struct Callbacks; // libvterm's callbacks, friends of the screen

private:
    void pushLine(int cols, const void* cells);
    void write(QByteArrayView bytes);
    int cursorRowNow() const;
    void moveRows(int destTop, int srcTop, int count, bool fullWidth);
    std::vector<char>& rowWraps() { return m_rowWraps[m_alternate ? 1 : 0]; }

    struct VTermDeleter {
        void operator()(::VTerm* vt) const;
    };
    std::unique_ptr<::VTerm, VTermDeleter> m_vt;
    ::VTermScreen* m_screen = nullptr;
    Output m_output;
    Scrollback m_scrollback;
    CsiGuard m_guard;
    QByteArray m_guarded;
    OutputPieces m_pieces;
    // Per screen row, of the main screen and the alternate one: the terminal wrapped that row.
    std::vector<char> m_rowWraps[2];
    int m_pushRow = 0; // the row the next line pushed to the scrollback comes from
    TerminalLine m_lineBuffer;
    int m_rows, m_cols;
    int m_cursorRow = 0, m_cursorCol = 0;
    bool m_cursorVisible = true;
    bool m_alternate = false;
    int m_mouseMode = 0;
    bool m_bell = false;
    QString m_title;
};

} // namespace orwick
