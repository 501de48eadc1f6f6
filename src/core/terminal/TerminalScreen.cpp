#include "terminal/TerminalScreen.h"

#include "terminal/LineText.h"

#include <vterm.h>

#include <QList>
#include <QStringList>

#include <algorithm>

namespace orwick {

namespace {

constexpr uint32_t kWideContinuation = 0xffffffff; // libvterm's mark on the second half of a wide character

TerminalColor colorOf(const VTermColor& color, bool foreground)
{
    if (foreground ? VTERM_COLOR_IS_DEFAULT_FG(&color) : VTERM_COLOR_IS_DEFAULT_BG(&color))
        return {};
    if (VTERM_COLOR_IS_INDEXED(&color))
        return TerminalColor::indexed(color.indexed.idx);
    return TerminalColor::rgb(color.rgb.red, color.rgb.green, color.rgb.blue);
}

TerminalCell cellOf(const VTermScreenCell& in)
{
    TerminalCell out;
    if (in.chars[0] == kWideContinuation) {
        out.width = 0;
    } else {
        for (int i = 0; i < TerminalCell::kMaxCharacters && i < VTERM_MAX_CHARS_PER_CELL && in.chars[i]; ++i)
            out.characters[size_t(i)] = char32_t(in.chars[i]);
        out.width = uint8_t(std::clamp<int>(in.width, 1, 2));
    }
    uint8_t attributes = 0;
    if (in.attrs.bold)
        attributes |= cellAttribute::bold;
    if (in.attrs.italic)
        attributes |= cellAttribute::italic;
    if (in.attrs.underline)
        attributes |= in.attrs.underline == VTERM_UNDERLINE_DOUBLE ? cellAttribute::doubleUnderline : cellAttribute::underline;
    if (in.attrs.reverse)
        attributes |= cellAttribute::reverse;
    if (in.attrs.strike)
        attributes |= cellAttribute::strike;
    if (in.attrs.blink)
        attributes |= cellAttribute::blink;
    out.attributes = attributes;
    out.foreground = colorOf(in.fg, true);
    out.background = colorOf(in.bg, false);
    return out;
}

VTermModifier modifiersOf(int modifiers)
{
    int out = VTERM_MOD_NONE;
    if (modifiers & keyModifier::shift)
        out |= VTERM_MOD_SHIFT;
    if (modifiers & keyModifier::alt)
        out |= VTERM_MOD_ALT;
    if (modifiers & keyModifier::ctrl)
        out |= VTERM_MOD_CTRL;
    return VTermModifier(out);
}

} // namespace

struct TerminalScreen::Callbacks {
    static TerminalScreen* self(void* user) { return static_cast<TerminalScreen*>(user); }

    static int moveCursor(VTermPos pos, VTermPos, int visible, void* user)
    {
        // libvterm can report a column past the line on odd input; the view draws only the screen.
        TerminalScreen* screen = self(user);
        screen->m_cursorRow = std::clamp(pos.row, 0, screen->m_rows - 1);
        screen->m_cursorCol = std::clamp(pos.col, 0, screen->m_cols);
        return 1;
    }
    static int setProperty(VTermProp property, VTermValue* value, void* user)
    {
        TerminalScreen* screen = self(user);
        switch (property) {
        case VTERM_PROP_CURSORVISIBLE:
            screen->m_cursorVisible = value->boolean;
            break;
        case VTERM_PROP_ALTSCREEN:
            screen->m_alternate = value->boolean;
            break;
        case VTERM_PROP_TITLE:
            screen->m_title = value->string ? QString::fromUtf8(value->string).left(256) : QString();
            break;
        case VTERM_PROP_MOUSE:
            screen->m_mouseMode = value->number;
            break;
        default:
            break;
        }
        return 1;
    }
    static int bell(void* user)
    {
        self(user)->m_bell = true;
        return 1;
    }
    static int moveRect(VTermRect dest, VTermRect src, void* user)
    {
        TerminalScreen* screen = self(user);
        screen->moveRows(dest.start_row, src.start_row, dest.end_row - dest.start_row,
                         dest.start_col == 0 && dest.end_col == screen->m_cols);
        return 1; // nothing else to do: the view draws the whole screen
    }
    static int pushLine(int cols, const VTermScreenCell* cells, void* user)
    {
        self(user)->pushLine(cols, cells);
        return 1;
    }
    static void output(const char* bytes, size_t length, void* user)
    {
        if (self(user)->m_output)
            self(user)->m_output(QByteArrayView(bytes, qsizetype(length)));
    }
};

namespace {
const VTermScreenCallbacks kScreenCallbacks = {
    nullptr, // damage: the view draws the whole screen once per frame
    &TerminalScreen::Callbacks::moveRect, // rows that scroll carry their wrap marks along
    &TerminalScreen::Callbacks::moveCursor,
    &TerminalScreen::Callbacks::setProperty,
    &TerminalScreen::Callbacks::bell,
    nullptr, // resize
    &TerminalScreen::Callbacks::pushLine,
    // No sb_popline: libvterm 0.1.4 crashes bringing wide characters back into a screen that
    // grew taller and narrower at once; a taller screen leaves the history where it is.
    nullptr,
};
} // namespace

void TerminalScreen::VTermDeleter::operator()(VTerm* vt) const { vterm_free(vt); }

TerminalScreen::TerminalScreen(int rows, int cols, Output output, int scrollbackLines)
    : m_output(std::move(output)), m_scrollback(scrollbackLines), m_rows(std::max(rows, 1)), m_cols(std::max(cols, 1))
{
    m_vt.reset(vterm_new(m_rows, m_cols));
    vterm_set_utf8(m_vt.get(), 1);
    vterm_output_set_callback(m_vt.get(), &Callbacks::output, this);
    m_screen = vterm_obtain_screen(m_vt.get());
    vterm_screen_set_callbacks(m_screen, &kScreenCallbacks, this);
    vterm_screen_enable_altscreen(m_screen, 1);
    vterm_screen_reset(m_screen, 1);
    for (std::vector<char>& wraps : m_rowWraps)
        wraps.assign(size_t(m_rows), 0);
}

TerminalScreen::~TerminalScreen() = default;

void TerminalScreen::feed(QByteArrayView bytes)
{
    const QByteArrayView safe = m_guard.filter(bytes, m_guarded);
    if (safe.isEmpty())
        return;
    // libvterm 0.1.4 keeps no mark of a wrapped line, so the screen watches for one: a piece of
    // text that leaves the cursor on a later line has wrapped the line it started on (a text
    // piece holds no line feed, and at most half a row, so it wraps at most once); a line feed
    // ends the cursor's line for good.
    m_pieces.split(safe, m_cols / 2, [this](QByteArrayView piece, OutputPieces::Kind kind) {
        if (kind == OutputPieces::Kind::lineFeed) {
            rowWraps()[size_t(cursorRowNow())] = 0;
            write(piece);
            return;
        }
        if (kind == OutputPieces::Kind::other || m_alternate) {
            write(piece);
            return;
        }
        const int64_t before = screenTopLine() + cursorRowNow();
        write(piece);
        if (screenTopLine() + cursorRowNow() <= before || m_alternate)
            return;
        if (before >= screenTopLine())
            rowWraps()[size_t(before - screenTopLine())] = 1;
        // else: a one-row screen pushed the line away already, unmarked
    });
}

void TerminalScreen::write(QByteArrayView bytes) { vterm_input_write(m_vt.get(), bytes.data(), size_t(bytes.size())); }

int TerminalScreen::cursorRowNow() const
{
    VTermPos cursor;
    vterm_state_get_cursorpos(vterm_obtain_state(m_vt.get()), &cursor);
    return std::clamp(cursor.row, 0, m_rows - 1);
}

void TerminalScreen::moveRows(int destTop, int srcTop, int count, bool fullWidth)
{
    m_pushRow = 0; // lines pushed before a scroll came from the top rows, in order
    std::vector<char>& wraps = rowWraps();
    if (!fullWidth || count <= 0 || destTop == srcTop)
        return; // columns moved within rows: where the rows end is unchanged
    if (std::min(destTop, srcTop) < 0 || std::max(destTop, srcTop) + count > int(wraps.size()))
        return; // a move outside the rows known (mid-resize): nothing to carry
    const auto first = wraps.begin();
    std::vector<char> moving(first + srcTop, first + srcTop + count);
    std::fill(first + srcTop, first + srcTop + count, 0); // what is left behind is new, blank rows
    std::copy(moving.begin(), moving.end(), first + destTop);
}

void TerminalScreen::resize(int rows, int cols)
{
    rows = std::max(rows, 1);
    cols = std::max(cols, 1);
    if (rows == m_rows && cols == m_cols)
        return;
    m_rows = rows;
    m_cols = cols;
    for (std::vector<char>& wraps : m_rowWraps)
        wraps.resize(size_t(rows), 0);
    vterm_set_size(m_vt.get(), rows, cols);
    m_pushRow = 0;
    VTermPos cursor;
    vterm_state_get_cursorpos(vterm_obtain_state(m_vt.get()), &cursor);
    m_cursorRow = std::clamp(cursor.row, 0, rows - 1);
    m_cursorCol = std::clamp(cursor.col, 0, cols);
}

TerminalCell TerminalScreen::cell(int row, int col) const
{
    VTermScreenCell cell{};
    if (row < 0 || row >= m_rows || col < 0 || col >= m_cols || !vterm_screen_get_cell(m_screen, VTermPos{row, col}, &cell))
        return {};
    return cellOf(cell);
}

TerminalLine TerminalScreen::screenLine(int row) const
{
    TerminalLine line;
    line.reserve(size_t(m_cols));
    for (int col = 0; col < m_cols; ++col)
        line.push_back(cell(row, col));
    return line;
}

TerminalLine TerminalScreen::lineAt(int64_t number) const
{
    if (number >= firstLine() && number < screenTopLine())
        return m_scrollback.at(int(number - firstLine()));
    if (number >= screenTopLine() && number < endLine())
        return screenLine(int(number - screenTopLine()));
    return {};
}

bool TerminalScreen::isWrapped(int64_t number) const
{
    if (number >= firstLine() && number < screenTopLine())
        return m_scrollback.isWrapped(int(number - firstLine()));
    if (number >= screenTopLine() && number < endLine())
        return m_rowWraps[m_alternate ? 1 : 0][size_t(number - screenTopLine())];
    return false;
}

QString TerminalScreen::screenText() const
{
    QStringList rows;
    for (int row = 0; row < m_rows; ++row)
        rows.append(lineText(screenLine(row)));
    return rows.join(QLatin1Char('\n'));
}

bool TerminalScreen::takeBell() { return std::exchange(m_bell, false); }

void TerminalScreen::pushLine(int cols, const void* cells)
{
    const auto* in = static_cast<const VTermScreenCell*>(cells);
    m_lineBuffer.resize(size_t(cols));
    for (int i = 0; i < cols; ++i)
        m_lineBuffer[size_t(i)] = cellOf(in[i]);
    const std::vector<char>& wraps = m_rowWraps[0]; // only the main screen keeps its history
    const bool wrapped = !wraps.empty() && wraps[size_t(std::min<int>(m_pushRow++, int(wraps.size()) - 1))];
    m_scrollback.push(m_lineBuffer.data(), cols, wrapped);
}

void TerminalScreen::sendText(const QString& text, int modifiers)
{
    for (char32_t c : text.toUcs4())
        vterm_keyboard_unichar(m_vt.get(), uint32_t(c), modifiersOf(modifiers));
}

void TerminalScreen::sendKey(TerminalKey key, int modifiers, int functionNumber)
{
    VTermKey code = VTERM_KEY_NONE;
    switch (key) {
    case TerminalKey::enter: code = VTERM_KEY_ENTER; break;
    case TerminalKey::tab: code = VTERM_KEY_TAB; break;
    case TerminalKey::backspace: code = VTERM_KEY_BACKSPACE; break;
    case TerminalKey::escape: code = VTERM_KEY_ESCAPE; break;
    case TerminalKey::up: code = VTERM_KEY_UP; break;
    case TerminalKey::down: code = VTERM_KEY_DOWN; break;
    case TerminalKey::left: code = VTERM_KEY_LEFT; break;
    case TerminalKey::right: code = VTERM_KEY_RIGHT; break;
    case TerminalKey::insert: code = VTERM_KEY_INS; break;
    case TerminalKey::deleteKey: code = VTERM_KEY_DEL; break;
    case TerminalKey::home: code = VTERM_KEY_HOME; break;
    case TerminalKey::end: code = VTERM_KEY_END; break;
    case TerminalKey::pageUp: code = VTERM_KEY_PAGEUP; break;
    case TerminalKey::pageDown: code = VTERM_KEY_PAGEDOWN; break;
    case TerminalKey::function: code = VTermKey(VTERM_KEY_FUNCTION(std::clamp(functionNumber, 1, 24))); break;
    }
    vterm_keyboard_key(m_vt.get(), code, modifiersOf(modifiers));
}

void TerminalScreen::paste(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    bytes.replace("\r\n", "\r");
    bytes.replace('\n', '\r');
    bytes.replace("\x1b[201~", "");
    vterm_keyboard_start_paste(m_vt.get());
    if (m_output)
        m_output(bytes);
    vterm_keyboard_end_paste(m_vt.get());
}

void TerminalScreen::mouseMove(int row, int col, int modifiers)
{
    vterm_mouse_move(m_vt.get(), std::clamp(row, 0, m_rows - 1), std::clamp(col, 0, m_cols - 1), modifiersOf(modifiers));
}

void TerminalScreen::mouseButton(int button, bool pressed, int modifiers)
{
    vterm_mouse_button(m_vt.get(), button, pressed, modifiersOf(modifiers));
}

} // namespace orwick
