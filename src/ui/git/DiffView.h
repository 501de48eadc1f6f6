#pragma once
// DiffView: one file's diff as the review panel shows it — hunk headings and lines with the old
// and new line numbers, added and removed lines tinted by the theme — with a keyboard cursor and
// a range of picked lines.
//
// Keys: Up/Down, Page Up/Down, Home/End move the cursor (with Shift they pick a range); "]" and
// "[" (or N and P) jump to the next and previous hunk; Space asks for the picked lines to be
// staged or unstaged, H for the cursor's whole hunk, Delete (or Backspace) for the picked lines
// to be discarded. A heading in the range picks its whole hunk; with no range the cursor's line
// is the pick. Mouse: a click puts the cursor, Shift+click or a drag picks a range.
//
// Only draws and forwards input: the panel decides what an action does. Signals:
// pickRequested(selection, action) follows each of the keys above when the pick holds a change;
// cursorMoved() every move of the cursor or change of the range.

#include "git/DiffPatch.h"

#include <QAbstractScrollArea>

namespace orwick {

class DiffView : public QAbstractScrollArea {
    Q_OBJECT
public:
    enum class Action { toggle, discard };

    explicit DiffView(QWidget* parent = nullptr);

    // Shows `file` (replacing what was shown) and `note` below it (a binary file, a cut diff).
    // With `keepPlace`, the cursor stays on the same row number (after staging a line, the next
    // one is under it).
    void setDiff(const FileDiff& file, const QString& note, bool keepPlace = false);
    // Shows only `message` (reading, nothing to show, a failure).
    void setMessage(const QString& message);
    void clear() { setMessage({}); }

    const FileDiff& diff() const { return m_file; }
    int rowCount() const { return int(m_rows.size()); }
    int cursorRow() const { return m_cursor; }
    // Moves the cursor (and the range's start, unless `extend`).
    void setCursorRow(int row, bool extend = false);
    // The first row of hunk `hunk` (its heading); -1 when there is none.
    int hunkRow(int hunk) const;
    // The row of line `line` of hunk `hunk`; -1 when there is none.
    int lineRow(int hunk, int line) const;
    // The picked lines: the range, or the cursor's line or hunk.
    DiffLineSelection pick() const;
    // Every line of the cursor's hunk.
    DiffLineSelection cursorHunk() const;
    // The text of a row as drawn ("+added", "@@ -1 +1 @@"), for tests and screen readers.
    QString rowText(int row) const;

Q_SIGNALS:
    void pickRequested(const orwick::DiffLineSelection& selection, orwick::DiffView::Action action);
    void cursorMoved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Row {
        int hunk = -1;
        int line = -1;        // -1 for a hunk heading
        int oldNumber = 0;    // 0 where the side has no line
        int newNumber = 0;
    };
    const DiffLine* lineOf(const Row& row) const;
    int rowAt(int y) const;
    int lineHeight() const;
    void updateScrollBars();
    void ensureVisible(int row);
    void request(const DiffLineSelection& selection, Action action);
    int nextHunkRow(int from, int step) const;

    FileDiff m_file;
    QList<Row> m_rows;
    QString m_note;
    QString m_message;
    int m_cursor = -1;
    int m_anchor = -1;
    int m_gutter = 0;  // width of the line numbers
};

} // namespace orwick
