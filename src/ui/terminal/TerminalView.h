#pragma once
// TerminalView: draws one TerminalSession's screen and scrollback and forwards keys, pastes,
// drops and mouse events to it. The screen is painted at most once per frame however fast
// output arrives, and at once for output after a quiet frame (a key's echo); the cell grid
// follows the widget's size and the session is told (SIGWINCH).
//
// Keys: every key goes to the program except F4 and Ctrl+` (the window's terminal keys), the
// palette's key, and the view's own: copy the selection, paste, scroll the history (ViewKeys'
// Terminal). The wheel scrolls the history, or goes to a program that
// asked for the mouse. Dragging selects (with Shift when the program has the mouse). Files
// dropped on the view are typed as quoted paths.

#include "terminal/TerminalSelection.h"
#include "terminal/TerminalSession.h"
#include "ui/terminal/TerminalColors.h"

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QPointer>

class QTimer;

namespace orwick {

class TerminalSession;

class TerminalView : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit TerminalView(TerminalSession* session, QWidget* parent = nullptr);

    TerminalSession* session() const { return m_session; }
    QSize cellSize() const { return m_cell; }
    // Where the screen's cell at `row`, `col` is drawn in the viewport (the cells sit a small
    // inset from the edges), and the cell under a viewport position, kept on the screen.
    QRect cellRect(int row, int col) const;
    QPoint cellAt(const QPoint& viewportPosition) const; // x: the column, y: the row
    // Lines scrolled back from the live screen (0: the screen is shown).
    int scrollOffset() const { return m_offset; }
    void scrollLines(int delta);
    QString selectedText() const;
    void copySelection();
    void pasteClipboard();
    // How many frames were painted (tests compare it against the output's pace).
    int paintCount() const { return m_paints; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool focusNextPrevChild(bool) override { return false; } // Tab belongs to the shell

private:
    void outputArrived();
    void frame();
    void updateFont();
    void fitToSize();
    void syncScrollBar();
    bool isWindowKey(const QKeyEvent* event) const;
    bool mouseGoesToProgram(const QMouseEvent* event) const;
    TerminalPoint pointAt(const QPoint& position) const;
    int64_t topLine() const;
    void drawLine(class QPainter& painter, const TerminalLine& line, int64_t number, int y, bool cursorHere);

    QPointer<TerminalSession> m_session;
    TerminalColors m_colors;
    QFont m_font, m_boldFont;
    QSize m_cell{8, 16};
    int m_ascent = 12;
    bool m_runsAlign = false;
    int64_t m_screenTop = 0;
    int m_offset = 0;
    int m_paints = 0;
    bool m_dirty = false;
    bool m_selecting = false;
    bool m_syncingScrollBar = false;
    TerminalSelection m_selection;
    QTimer* m_frameTimer;
    QElapsedTimer m_lastFrame; // since the last frame was asked for
};

} // namespace orwick
