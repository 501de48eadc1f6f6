#include "ui/git/DiffView.h"

#include "commands/ViewKeys.h"

#include "ui/theme/Theme.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

namespace orwick {

namespace {

constexpr int kMargin = 6;

QColor tint(QColor colour, qreal alpha)
{
    colour.setAlphaF(float(alpha));
    return colour;
}

// A line's text as drawn: tabs to four spaces, a CRLF file's carriage return left out.
QString shownText(const QByteArray& bytes)
{
    QByteArrayView text = bytes;
    if (text.endsWith('\r'))
        text.chop(1);
    QString shown = QString::fromUtf8(text);
    shown.replace(u'\t', QStringLiteral("    "));
    return shown;
}

} // namespace

DiffView::DiffView(QWidget* parent) : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPixelSize(qRound(theme::fontPixelSize() * 0.95));
    setFont(mono);
    viewport()->setMouseTracking(false);
    viewport()->setAutoFillBackground(false);
}

void DiffView::setDiff(const FileDiff& file, const QString& note, bool keepPlace)
{
    const int previous = m_cursor;
    m_file = file;
    m_note = note;
    m_message.clear();
    m_rows.clear();
    int widest = 0;
    int largest = 0;
    for (int h = 0; h < m_file.hunks.size(); ++h) {
        const DiffHunk& hunk = m_file.hunks[h];
        m_rows.append({h, -1, 0, 0});
        int oldNumber = hunk.oldStart;
        int newNumber = hunk.newStart;
        for (int i = 0; i < hunk.lines.size(); ++i) {
            const DiffLine& line = hunk.lines[i];
            Row row{h, i, 0, 0};
            if (line.kind != DiffLine::Kind::added)
                row.oldNumber = oldNumber++;
            if (line.kind != DiffLine::Kind::removed)
                row.newNumber = newNumber++;
            largest = std::max({largest, row.oldNumber, row.newNumber});
            widest = std::max(widest, int(line.text.size()));
            m_rows.append(row);
        }
    }
    const QFontMetrics metrics(font());
    m_gutter = 2 * metrics.horizontalAdvance(QString(QString::number(std::max(largest, 99)).size(), u'8')) + 3 * kMargin;
    horizontalScrollBar()->setRange(0, std::max(0, m_gutter + (widest + 2) * metrics.horizontalAdvance(u'M') - viewport()->width()));
    const int wanted = keepPlace && previous >= 0 ? std::min(previous, int(m_rows.size()) - 1) : nextHunkRow(-1, 1);
    m_cursor = m_anchor = -1;
    if (!keepPlace)
        verticalScrollBar()->setValue(0);
    updateScrollBars();
    if (!m_rows.isEmpty())
        setCursorRow(std::max(wanted, 0));
    viewport()->update();
    Q_EMIT cursorMoved();
}

void DiffView::setMessage(const QString& message)
{
    m_file = {};
    m_rows.clear();
    m_note.clear();
    m_message = message;
    m_cursor = m_anchor = -1;
    updateScrollBars();
    viewport()->update();
    Q_EMIT cursorMoved();
}

void DiffView::setCursorRow(int row, bool extend)
{
    if (m_rows.isEmpty())
        return;
    row = std::clamp(row, 0, int(m_rows.size()) - 1);
    m_cursor = row;
    if (!extend || m_anchor < 0)
        m_anchor = row;
    ensureVisible(row);
    viewport()->update();
    Q_EMIT cursorMoved();
}

int DiffView::hunkRow(int hunk) const
{
    for (int i = 0; i < m_rows.size(); ++i)
        if (m_rows[i].hunk == hunk && m_rows[i].line < 0)
            return i;
    return -1;
}

int DiffView::lineRow(int hunk, int line) const
{
    const int heading = hunkRow(hunk);
    return heading < 0 || line < 0 || line >= m_file.hunks[hunk].lines.size() ? -1 : heading + 1 + line;
}

DiffLineSelection DiffView::pick() const
{
    DiffLineSelection selection;
    if (m_cursor < 0)
        return selection;
    const int first = std::min(m_anchor, m_cursor);
    const int last = std::max(m_anchor, m_cursor);
    for (int i = first; i <= last; ++i) {
        const Row& row = m_rows[i];
        if (row.line < 0)
            selection.unite(hunkSelection(m_file, row.hunk));
        else if (m_file.hunks[row.hunk].lines[row.line].kind != DiffLine::Kind::context)
            selection.insert({row.hunk, row.line});
    }
    return selection;
}

DiffLineSelection DiffView::cursorHunk() const
{
    return m_cursor < 0 ? DiffLineSelection() : hunkSelection(m_file, m_rows[m_cursor].hunk);
}

QString DiffView::rowText(int row) const
{
    if (row < 0 || row >= m_rows.size())
        return {};
    const Row& r = m_rows[row];
    if (const DiffLine* line = lineOf(r))
        return QChar(char(line->kind)) + shownText(line->text);
    return QString::fromUtf8(m_file.hunks[r.hunk].headerLine());
}

const DiffLine* DiffView::lineOf(const Row& row) const
{
    return row.line < 0 ? nullptr : &m_file.hunks[row.hunk].lines[row.line];
}

int DiffView::lineHeight() const { return QFontMetrics(font()).height() + 2; }

int DiffView::rowAt(int y) const
{
    const int row = (y + verticalScrollBar()->value()) / lineHeight();
    return row < m_rows.size() ? row : int(m_rows.size()) - 1;
}

void DiffView::updateScrollBars()
{
    const int extra = m_note.isEmpty() ? 0 : 2;
    const int rows = int(m_rows.size()) + extra;
    const int visible = std::max(1, viewport()->height() / lineHeight());
    verticalScrollBar()->setPageStep(visible * lineHeight());
    verticalScrollBar()->setSingleStep(lineHeight());
    verticalScrollBar()->setRange(0, std::max(0, (rows - visible) * lineHeight()));
    horizontalScrollBar()->setPageStep(viewport()->width());
}

void DiffView::ensureVisible(int row)
{
    const int top = row * lineHeight();
    const int bottom = top + lineHeight();
    QScrollBar* bar = verticalScrollBar();
    if (top < bar->value())
        bar->setValue(top);
    else if (bottom > bar->value() + viewport()->height())
        bar->setValue(bottom - viewport()->height());
}

int DiffView::nextHunkRow(int from, int step) const
{
    for (int i = from + step; i >= 0 && i < m_rows.size(); i += step)
        if (m_rows[i].line < 0)
            return i;
    return -1;
}

void DiffView::request(const DiffLineSelection& selection, Action action)
{
    if (selectsChanges(m_file, selection))
        Q_EMIT pickRequested(selection, action);
}

void DiffView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), theme::background());
    painter.setFont(font());
    const int height = lineHeight();
    const QFontMetrics metrics(font());
    const int ascent = metrics.ascent() + 1;
    if (!m_message.isEmpty() || m_rows.isEmpty()) {
        painter.setPen(theme::dimText());
        painter.drawText(viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin), Qt::AlignCenter | Qt::TextWordWrap,
                         m_message.isEmpty() ? m_note : m_message);
        return;
    }
    const int scrollY = verticalScrollBar()->value();
    const int scrollX = horizontalScrollBar()->value();
    const int first = scrollY / height;
    const int width = viewport()->width();
    const int low = std::min(m_anchor, m_cursor);
    const int high = std::max(m_anchor, m_cursor);
    const int numberWidth = (m_gutter - 3 * kMargin) / 2;
    for (int i = first; i < m_rows.size(); ++i) {
        const int y = i * height - scrollY;
        if (y > viewport()->height())
            break;
        const Row& row = m_rows[i];
        const QRect band(0, y, width, height);
        const DiffLine* line = lineOf(row);
        QColor fill;
        if (!line)
            fill = theme::elevated();
        else if (line->kind == DiffLine::Kind::added)
            fill = tint(theme::positive(), theme::isDark() ? 0.22 : 0.16);
        else if (line->kind == DiffLine::Kind::removed)
            fill = tint(theme::negative(), theme::isDark() ? 0.22 : 0.16);
        if (fill.isValid())
            painter.fillRect(band, fill);
        if (i >= low && i <= high && low != high)
            painter.fillRect(band, tint(hasFocus() ? theme::selection() : theme::selectionUnfocused(), 0.55));
        // Line numbers, then the marker and the text (scrolled sideways, the numbers not).
        painter.setPen(theme::faintText());
        if (row.oldNumber > 0)
            painter.drawText(QRect(kMargin, y, numberWidth, height), Qt::AlignRight | Qt::AlignVCenter, QString::number(row.oldNumber));
        if (row.newNumber > 0)
            painter.drawText(QRect(2 * kMargin + numberWidth, y, numberWidth, height), Qt::AlignRight | Qt::AlignVCenter,
                             QString::number(row.newNumber));
        painter.save();
        painter.setClipRect(QRect(m_gutter, y, width - m_gutter, height));
        const int x = m_gutter - scrollX;
        if (line) {
            const QColor marker = line->kind == DiffLine::Kind::added     ? theme::positive()
                                : line->kind == DiffLine::Kind::removed ? theme::negative()
                                                                          : theme::faintText();
            painter.setPen(marker);
            painter.drawText(x, y + ascent, QString(QChar(char(line->kind))));
            painter.setPen(theme::text());
            QString text = shownText(line->text);
            painter.drawText(x + metrics.horizontalAdvance(u'M'), y + ascent, text);
            if (!line->hasNewline) {
                painter.setPen(theme::faintText());
                painter.drawText(x + metrics.horizontalAdvance(u'M') + metrics.horizontalAdvance(text + u' '), y + ascent,
                                 QStringLiteral("⏎̸ no newline at end"));
            }
        } else {
            painter.setPen(theme::dimText());
            painter.drawText(x, y + ascent, QString::fromUtf8(m_file.hunks[row.hunk].headerLine()));
        }
        painter.restore();
        if (i == m_cursor) {
            painter.setPen(QPen(hasFocus() ? theme::cursorRing() : theme::separator(), 1));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(band.adjusted(0, 0, -1, -1));
        }
    }
    if (!m_note.isEmpty()) {
        const int y = int(m_rows.size()) * height - scrollY + height / 2;
        painter.setPen(theme::dimText());
        painter.drawText(QRect(m_gutter, y, width - m_gutter, height), Qt::AlignLeft | Qt::AlignVCenter, m_note);
    }
}

void DiffView::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const bool shift = event->modifiers() & Qt::ShiftModifier; // Shift with a move picks lines
    const int page = std::max(1, viewport()->height() / lineHeight() - 1);
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::review, event->keyCombination());
    if (!action) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    switch (*action) {
    case A::reviewPrevious: setCursorRow(m_cursor - 1, shift); return;
    case A::reviewNext: setCursorRow(m_cursor + 1, shift); return;
    case A::reviewPageUp: setCursorRow(m_cursor - page, shift); return;
    case A::reviewPageDown: setCursorRow(m_cursor + page, shift); return;
    case A::reviewFirst: setCursorRow(0, shift); return;
    case A::reviewLast: setCursorRow(int(m_rows.size()) - 1, shift); return;
    case A::reviewNextHunk:
        if (const int next = nextHunkRow(m_cursor, 1); next >= 0)
            setCursorRow(next);
        return;
    case A::reviewPreviousHunk:
        if (const int previous = nextHunkRow(m_cursor, -1); previous >= 0)
            setCursorRow(previous);
        return;
    case A::reviewStage: request(pick(), Action::toggle); return;
    case A::reviewStageHunk: request(cursorHunk(), Action::toggle); return;
    case A::reviewDiscard: request(pick(), Action::discard); return;
    default: QAbstractScrollArea::keyPressEvent(event); // the panel's (commit, back to the files) or none
    }
}

void DiffView::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    if (event->button() == Qt::LeftButton && !m_rows.isEmpty())
        setCursorRow(rowAt(event->position().toPoint().y()), event->modifiers() & Qt::ShiftModifier);
}

void DiffView::mouseMoveEvent(QMouseEvent* event)
{
    if ((event->buttons() & Qt::LeftButton) && !m_rows.isEmpty())
        setCursorRow(rowAt(event->position().toPoint().y()), true);
}

void DiffView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}

void DiffView::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void DiffView::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

} // namespace orwick
