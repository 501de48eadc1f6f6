#pragma once
// The board: lanes side by side (title, colour and count on top), cards under them. Draws a
// BoardView and forwards input: the keyboard starts on the first card (or the pane's selected
// one), arrows move it (Left/Right between lanes), Ctrl+Shift+Left/Right moves its card to the
// neighbouring lane, Return opens it, dragging a card onto another lane moves it there. A moved
// card is drawn in its new lane at once and keeps the keyboard; the change itself is the
// owner's (moveRequested). When the board can't be drawn it shows its
// sentence and what can be done, one chosen with the arrows and Return or a click: group by a
// free-text property made a select (makeSelectRequested), or by another select or list property.

#include "notes/BoardView.h"

#include <QWidget>

namespace orwick {

class BoardWidget : public QWidget {
    Q_OBJECT
public:
    explicit BoardWidget(QWidget* parent = nullptr);

    void setBoard(BoardView board, FileItems items, DatabaseColumns database);
    const BoardView& board() const { return m_board; }
    // The lane the keyboard is in (for a new card), or -1.
    int currentLane() const { return m_board.lanes.isEmpty() ? -1 : m_lane; }
    std::optional<FilePath> currentItem() const;
    // Puts the keyboard on `item`'s card (in its lane when it shows in several), without
    // currentChanged: the pane's selection, made elsewhere, shown here. No card: nothing moves.
    void showCurrentItem(const FilePath& item);
    // Moves the keyboard's card to the lane `by` lanes away (what Ctrl+Shift+Left/Right do).
    void moveCurrentCard(int by);

    QSize sizeHint() const override;

Q_SIGNALS:
    // The keyboard's item changed (the pane selects it, so the window's commands act on it).
    void currentChanged(const orwick::FilePath& item);
    void openRequested(const orwick::FilePath& item);
    void moveRequested(const orwick::FilePath& item, int fromLane, int toLane);
    void groupByChosen(const QString& key);
    // Make the text property `key` a select whose options are the values found in it.
    void makeSelectRequested(const QString& key, const QStringList& values);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    static constexpr int kLaneWidth = 260;
    static constexpr int kGap = 12;
    QRect laneRect(int lane) const;
    QRect cardRect(int lane, int position) const;
    // The lane and card position at a point (position -1: the lane's free space).
    std::pair<int, int> hit(QPoint point) const;
    void moveCursorTo(int lane, int position);
    // Puts the keyboard's card there and in sight; moveCursorTo() also announces it.
    void placeCursor(int lane, int position);
    // The rows offered when the board can't be drawn: "Make “status” a select" first when it can
    // be, then the keys to group by; where each is drawn; what choosing one does.
    QStringList choiceRows() const;
    QRect choiceRect(int row) const;
    void choose(int row);
    void updateSize();

    BoardView m_board;
    FileItems m_items;
    DatabaseColumns m_database;
    int m_lane = 0;
    int m_position = 0;
    int m_choice = 0;
    bool m_placed = false; // the keyboard's card was chosen (keys, click, the pane's selection)
    std::optional<std::pair<int, int>> m_pressed; // lane and card under a mouse press
    QPoint m_pressAt;
    std::optional<int> m_dropLane; // while dragging
};

} // namespace orwick
