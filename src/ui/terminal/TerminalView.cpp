#include "ui/terminal/TerminalView.h"

#include "commands/CommandCatalog.h"
#include "commands/ViewKeys.h"
#include "terminal/ShellText.h"
#include "terminal/TerminalSession.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeApplier.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include <cmath>

namespace orwick {

namespace {

constexpr int kFrameMs = 16;     // one repaint per frame at most
constexpr int kWheelLines = 3;
constexpr int kInset = 4;        // room between the cells and the panel's edges
const QPoint kCellsOrigin(kInset, kInset / 2); // the top-left cell's corner in the viewport

int modifiersOf(Qt::KeyboardModifiers modifiers)
{
    int out = 0;
    if (modifiers & Qt::ShiftModifier)
        out |= keyModifier::shift;
    if (modifiers & Qt::AltModifier)
        out |= keyModifier::alt;
    if (modifiers & Qt::ControlModifier)
        out |= keyModifier::ctrl;
    return out;
}

std::optional<TerminalKey> keyOf(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return TerminalKey::enter;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return TerminalKey::tab;
    case Qt::Key_Backspace: return TerminalKey::backspace;
    case Qt::Key_Escape: return TerminalKey::escape;
    case Qt::Key_Up: return TerminalKey::up;
    case Qt::Key_Down: return TerminalKey::down;
    case Qt::Key_Left: return TerminalKey::left;
    case Qt::Key_Right: return TerminalKey::right;
    case Qt::Key_Insert: return TerminalKey::insert;
    case Qt::Key_Delete: return TerminalKey::deleteKey;
    case Qt::Key_Home: return TerminalKey::home;
    case Qt::Key_End: return TerminalKey::end;
    case Qt::Key_PageUp: return TerminalKey::pageUp;
    case Qt::Key_PageDown: return TerminalKey::pageDown;
    default: break;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return TerminalKey::function;
    return std::nullopt;
}

bool isWordCharacter(char32_t c) { return c && c != U' ' && !QStringLiteral("\"'`()[]{}<>|;,").contains(QChar(c)); }

} // namespace

TerminalView::TerminalView(TerminalSession* session, QWidget* parent) : QAbstractScrollArea(parent), m_session(session)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAttribute(Qt::WA_InputMethodEnabled);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    m_frameTimer = new QTimer(this);
    m_frameTimer->setSingleShot(true);
    connect(m_frameTimer, &QTimer::timeout, this, &TerminalView::frame);
    theme::whenChanged(this, [this] {
        m_colors = TerminalColors::fromTheme();
        updateFont();
        viewport()->update();
    });
    if (m_session) {
        connect(m_session, &TerminalSession::outputArrived, this, &TerminalView::outputArrived);
        m_screenTop = m_session->screen().screenTopLine();
    }
}

void TerminalView::updateFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    if (const qreal size = theme::fontPixelSize(); size > 0)
        font.setPixelSize(int(size));
    font.setKerning(false);
    m_font = font;
    m_boldFont = font;
    m_boldFont.setBold(true);
    const QFontMetricsF metrics(m_font);
    m_cell = QSize(std::max(1, int(std::ceil(metrics.horizontalAdvance(QLatin1Char('M'))))), std::max(1, int(std::ceil(metrics.height()))));
    m_ascent = int(std::ceil(metrics.ascent()));
    // Runs of text are drawn whole only when the font's advance is whole pixels, so they line up.
    m_runsAlign = qFuzzyCompare(metrics.horizontalAdvance(QLatin1Char('M')), qreal(m_cell.width()));
    fitToSize();
}

void TerminalView::outputArrived()
{
    m_dirty = true;
    if (m_frameTimer->isActive())
        return;
    // Output after a quiet frame (a key's echo) is drawn at once; more within the frame waits
    // for the frame's end, so a flood still paints once per frame.
    const qint64 since = m_lastFrame.isValid() ? m_lastFrame.elapsed() : kFrameMs;
    if (since >= kFrameMs)
        frame();
    else
        m_frameTimer->start(int(kFrameMs - since));
}

void TerminalView::frame()
{
    if (!m_session)
        return;
    m_lastFrame.start();
    // Lines arriving while the history is read keep the reader's place.
    const int64_t top = m_session->screen().screenTopLine();
    if (m_offset > 0)
        m_offset = int(std::min<int64_t>(m_offset + (top - m_screenTop), m_session->screen().scrollback().size()));
    m_screenTop = top;
    syncScrollBar();
    viewport()->update();
    m_dirty = false;
}

void TerminalView::syncScrollBar()
{
    if (!m_session)
        return;
    const int history = m_session->screen().scrollback().size();
    m_offset = std::clamp(m_offset, 0, history);
    m_syncingScrollBar = true;
    verticalScrollBar()->setRange(0, history);
    verticalScrollBar()->setPageStep(m_session->screen().rows());
    verticalScrollBar()->setValue(history - m_offset);
    m_syncingScrollBar = false;
}

void TerminalView::scrollContentsBy(int, int)
{
    if (m_syncingScrollBar || !m_session)
        return;
    m_offset = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    viewport()->update();
}

void TerminalView::scrollLines(int delta)
{
    if (!m_session)
        return;
    m_offset = std::clamp(m_offset + delta, 0, m_session->screen().scrollback().size());
    syncScrollBar();
    viewport()->update();
}

int64_t TerminalView::topLine() const { return m_session ? m_session->screen().screenTopLine() - m_offset : 0; }

void TerminalView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    fitToSize();
}

void TerminalView::fitToSize()
{
    if (!m_session)
        return;
    const int cols = std::max(2, (viewport()->width() - 2 * kInset) / m_cell.width());
    const int rows = std::max(1, (viewport()->height() - kInset) / m_cell.height());
    if (rows != m_session->screen().rows() || cols != m_session->screen().cols())
        m_session->resize(rows, cols); // the program hears SIGWINCH
    syncScrollBar();
}

void TerminalView::paintEvent(QPaintEvent*)
{
    ++m_paints;
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), m_colors.defaultBackground());
    if (!m_session)
        return;
    painter.translate(kCellsOrigin);
    const TerminalScreen& screen = m_session->screen();
    const int64_t top = topLine();
    const int64_t cursorLine = screen.screenTopLine() + screen.cursorRow();
    for (int row = 0; row < screen.rows(); ++row) {
        const int64_t number = top + row;
        drawLine(painter, screen.lineAt(number), number, row * m_cell.height(),
                 number == cursorLine && screen.cursorVisible() && m_session->isRunning());
    }
}

void TerminalView::drawLine(QPainter& painter, const TerminalLine& line, int64_t number, int y, bool cursorHere)
{
    const int h = m_cell.height(), w = m_cell.width();
    const TerminalScreen& screen = m_session->screen();
    QString run;
    int runStart = 0;
    QColor runColor;
    uint8_t runAttributes = 0;
    auto flush = [&] {
        if (run.isEmpty())
            return;
        painter.setFont(runAttributes & cellAttribute::bold ? m_boldFont : m_font);
        if (runAttributes & (cellAttribute::italic | cellAttribute::underline | cellAttribute::doubleUnderline | cellAttribute::strike)) {
            QFont styled = painter.font();
            styled.setItalic(runAttributes & cellAttribute::italic);
            styled.setUnderline(runAttributes & (cellAttribute::underline | cellAttribute::doubleUnderline));
            styled.setStrikeOut(runAttributes & cellAttribute::strike);
            painter.setFont(styled);
        }
        painter.setPen(runColor);
        painter.drawText(QPointF(runStart * w, y + m_ascent), run);
        run.clear();
    };
    for (int col = 0; col < int(line.size()) && col < screen.cols(); ++col) {
        const TerminalCell& cell = line[size_t(col)];
        if (cell.width == 0)
            continue;
        QColor foreground = m_colors.foreground(cell.foreground);
        QColor background = m_colors.background(cell.background);
        if (cell.has(cellAttribute::reverse))
            std::swap(foreground, background);
        const bool selected = m_selection.contains(number, col);
        const bool cursor = cursorHere && col == screen.cursorCol() && hasFocus();
        if (selected)
            background = m_colors.selection();
        if (cursor) {
            background = m_colors.cursor();
            foreground = m_colors.defaultBackground();
        }
        const int cellWidth = w * std::max<int>(cell.width, 1);
        if (background != m_colors.defaultBackground())
            painter.fillRect(QRect(col * w, y, cellWidth, h), background);
        if (cell.isBlank()) {
            flush();
            continue;
        }
        const bool simple = m_runsAlign && cell.width == 1 && cell.characters[0] < 0x2500 && cell.characters[1] == 0;
        if (!simple || foreground != runColor || cell.attributes != runAttributes || (!run.isEmpty() && runStart + run.size() != col))
            flush();
        if (run.isEmpty()) {
            runStart = col;
            runColor = foreground;
            runAttributes = cell.attributes;
        }
        for (char32_t c : cell.characters)
            if (c)
                run += QString::fromUcs4(&c, 1);
        if (!simple)
            flush();
    }
    flush();
    // The cursor: a block while the terminal has the keyboard, an outline otherwise; also past
    // the end of the line's kept cells.
    if (cursorHere) {
        const int col = screen.cursorCol();
        const QRect box(col * w, y, w, h);
        if (!hasFocus()) {
            painter.setPen(m_colors.cursor());
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(box.adjusted(0, 0, -1, -1));
        } else if (col >= int(line.size()) || line[size_t(col)].isBlank()) {
            painter.fillRect(box, m_colors.cursor());
        }
    }
}

bool TerminalView::isWindowKey(const QKeyEvent* event) const
{
    const int key = event->key();
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (key == Qt::Key_F4 && modifiers == Qt::NoModifier)
        return true;
    if (key == Qt::Key_QuoteLeft && modifiers == Qt::ControlModifier)
        return true;
    if (const AppCommand* palette = CommandCatalog::find(QStringLiteral("palette")))
        if (!palette->shortcut.isEmpty() && palette->shortcut == QKeySequence(event->keyCombination()))
            return true;
    return false;
}

bool TerminalView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Every key is the terminal's but the window's own few.
        auto* key = static_cast<QKeyEvent*>(event);
        if (!isWindowKey(key)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void TerminalView::keyPressEvent(QKeyEvent* event)
{
    if (!m_session)
        return;
    // The terminal's own few keys (ViewKeys' Terminal); every other goes to the program.
    using A = ViewKeyAction;
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::terminal, event->keyCombination());
    if (action == A::terminalCopy) {
        copySelection();
        return;
    }
    if (action == A::terminalPaste) {
        pasteClipboard();
        return;
    }
    if (action == A::terminalScrollUp || action == A::terminalScrollDown) {
        const int page = std::max(1, m_session->screen().rows() - 1);
        scrollLines(action == A::terminalScrollUp ? page : -page);
        return;
    }
    const int key = event->key();
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (!m_session->isRunning())
        return;
    const int mods = modifiersOf(modifiers);
    if (auto special = keyOf(key)) {
        const int mod = key == Qt::Key_Backtab ? (mods | keyModifier::shift) : mods;
        m_session->sendKey(*special, mod, *special == TerminalKey::function ? key - Qt::Key_F1 + 1 : 0);
    } else if ((modifiers & Qt::ControlModifier) && key >= 0x20 && key < 0x7f) {
        // Ctrl with a letter or sign: the control character the key stands for.
        const char32_t base = key >= Qt::Key_A && key <= Qt::Key_Z ? char32_t(key - Qt::Key_A + 'a') : char32_t(key);
        m_session->sendText(QString::fromUcs4(&base, 1), mods & ~keyModifier::shift);
    } else if (!event->text().isEmpty()) {
        m_session->sendText(event->text(), mods & ~keyModifier::shift);
    } else {
        return;
    }
    if (m_offset != 0) {
        m_offset = 0; // typing shows the live screen
        syncScrollBar();
    }
    viewport()->update();
}

void TerminalView::inputMethodEvent(QInputMethodEvent* event)
{
    if (m_session && !event->commitString().isEmpty())
        m_session->sendText(event->commitString());
    event->accept();
}

void TerminalView::copySelection()
{
    const QString text = selectedText();
    if (!text.isEmpty())
        QApplication::clipboard()->setText(text);
}

QString TerminalView::selectedText() const { return m_session ? m_selection.text(m_session->screen()) : QString(); }

void TerminalView::pasteClipboard()
{
    if (!m_session || !m_session->isRunning())
        return;
    const QString text = QApplication::clipboard()->text();
    if (!text.isEmpty())
        m_session->paste(text); // written as the program reads it
}

QRect TerminalView::cellRect(int row, int col) const
{
    return QRect(kCellsOrigin + QPoint(col * m_cell.width(), row * m_cell.height()), m_cell);
}

QPoint TerminalView::cellAt(const QPoint& viewportPosition) const
{
    const QPoint position = viewportPosition - kCellsOrigin;
    const int rows = m_session ? m_session->screen().rows() : 1;
    const int cols = m_session ? m_session->screen().cols() : 1;
    // Positions in the inset before the first cell belong to it (division alone rounds them up).
    const int col = position.x() < 0 ? 0 : position.x() / m_cell.width();
    const int row = position.y() < 0 ? 0 : position.y() / m_cell.height();
    return {std::min(col, cols - 1), std::min(row, rows - 1)};
}

TerminalPoint TerminalView::pointAt(const QPoint& viewportPosition) const
{
    const QPoint position = viewportPosition - kCellsOrigin;
    const int cols = m_session ? m_session->screen().cols() : 1;
    const int col = std::clamp((position.x() + m_cell.width() / 2) / m_cell.width(), 0, cols);
    const int row = std::max(0, position.y() / m_cell.height());
    return {topLine() + row, col};
}

bool TerminalView::mouseGoesToProgram(const QMouseEvent* event) const
{
    return m_session && m_session->isRunning() && m_session->screen().wantsMouse() && !(event->modifiers() & Qt::ShiftModifier);
}

void TerminalView::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    if (mouseGoesToProgram(event)) {
        const int button = event->button() == Qt::LeftButton ? 1 : event->button() == Qt::MiddleButton ? 2 : 3;
        const QPoint cell = cellAt(event->position().toPoint());
        m_session->screen().mouseMove(cell.y(), cell.x(), modifiersOf(event->modifiers()));
        m_session->screen().mouseButton(button, true, modifiersOf(event->modifiers()));
        return;
    }
    if (event->button() == Qt::MiddleButton) {
        if (m_session && QApplication::clipboard()->supportsSelection())
            m_session->paste(QApplication::clipboard()->text(QClipboard::Selection));
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    m_selecting = true;
    m_selection.start(pointAt(event->position().toPoint()));
    viewport()->update();
}

void TerminalView::mouseMoveEvent(QMouseEvent* event)
{
    if (mouseGoesToProgram(event) && !m_selecting) {
        const QPoint cell = cellAt(event->position().toPoint());
        m_session->screen().mouseMove(cell.y(), cell.x(), modifiersOf(event->modifiers()));
        return;
    }
    if (!m_selecting)
        return;
    m_selection.extend(pointAt(event->position().toPoint()));
    viewport()->update();
}

void TerminalView::mouseReleaseEvent(QMouseEvent* event)
{
    if (mouseGoesToProgram(event) && !m_selecting) {
        const int button = event->button() == Qt::LeftButton ? 1 : event->button() == Qt::MiddleButton ? 2 : 3;
        m_session->screen().mouseButton(button, false, modifiersOf(event->modifiers()));
        return;
    }
    m_selecting = false;
    if (!m_selection.isEmpty() && QApplication::clipboard()->supportsSelection())
        QApplication::clipboard()->setText(selectedText(), QClipboard::Selection);
}

void TerminalView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!m_session || mouseGoesToProgram(event))
        return;
    // A word: the run of non-blank, non-bracket characters under the pointer.
    const TerminalPoint point = pointAt(event->position().toPoint() - QPoint(m_cell.width() / 2, 0));
    const TerminalLine line = m_session->screen().lineAt(point.line);
    if (point.col >= int(line.size()) || !isWordCharacter(line[size_t(point.col)].characters[0]))
        return;
    int from = point.col, to = point.col + 1;
    while (from > 0 && (line[size_t(from - 1)].width == 0 || isWordCharacter(line[size_t(from - 1)].characters[0])))
        --from;
    while (to < int(line.size()) && (line[size_t(to)].width == 0 || isWordCharacter(line[size_t(to)].characters[0])))
        ++to;
    m_selection.start({point.line, from});
    m_selection.extend({point.line, to});
    m_selecting = false;
    viewport()->update();
}

void TerminalView::wheelEvent(QWheelEvent* event)
{
    if (!m_session)
        return;
    const int notches = event->angleDelta().y() / 120;
    if (notches == 0)
        return;
    const TerminalScreen& screen = m_session->screen();
    if (m_session->isRunning() && screen.wantsMouse() && !(event->modifiers() & Qt::ShiftModifier)) {
        const QPoint cell = cellAt(event->position().toPoint());
        m_session->screen().mouseMove(cell.y(), cell.x(), 0);
        for (int i = 0; i < std::abs(notches); ++i)
            m_session->screen().mouseButton(notches > 0 ? 4 : 5, true, 0);
    } else if (m_session->isRunning() && screen.isAlternateScreen()) {
        // A full-screen program without the mouse (less, man): the wheel is its arrow keys.
        for (int i = 0; i < std::abs(notches) * kWheelLines; ++i)
            m_session->sendKey(notches > 0 ? TerminalKey::up : TerminalKey::down);
    } else {
        scrollLines(notches * kWheelLines);
    }
    event->accept();
}

void TerminalView::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls() && m_session && m_session->isRunning())
        event->acceptProposedAction();
}

void TerminalView::dropEvent(QDropEvent* event)
{
    QList<FilePath> paths;
    for (const QUrl& url : event->mimeData()->urls())
        if (const FilePath path = FilePath::fromUrl(url); !path.isEmpty())
            paths.append(path);
    if (!m_session || paths.isEmpty())
        return;
    m_session->write(shellText::quotedPaths(paths));
    event->acceptProposedAction();
    setFocus(Qt::OtherFocusReason);
}

void TerminalView::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TerminalView::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

} // namespace orwick
