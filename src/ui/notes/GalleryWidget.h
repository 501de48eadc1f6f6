#pragma once
// The gallery: cards in rows (GalleryView's layout over the widget's width), each with its cover
// — a picture's thumbnail or a note's first image, made off the GUI thread by Thumbnails — above
// the item's title and a few properties. The arrows move the keyboard's card as in the grid view;
// Return or a double click opens it.

#include "notes/DatabaseColumns.h"
#include "notes/GalleryView.h"

#include <QWidget>

namespace orwick {

class Thumbnails;

class GalleryWidget : public QWidget {
    Q_OBJECT
public:
    explicit GalleryWidget(QWidget* parent = nullptr);

    // `covers`: each item's cover, where it has one.
    void setItems(FileItems items, DatabaseColumns database, QHash<FilePath, FilePath> covers);
    std::optional<FilePath> currentItem() const;
    // Puts the keyboard on `item`'s card without currentChanged: the pane's selection, made
    // elsewhere, shown here. No card: nothing moves.
    void showCurrentItem(const FilePath& item);
    const GalleryView& layout() const { return m_layout; }
    int currentIndex() const { return m_cursor; }

Q_SIGNALS:
    // The keyboard's item changed (the pane selects it, so the window's commands act on it).
    void currentChanged(const orwick::FilePath& item);
    void openRequested(const orwick::FilePath& item);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void moveCursorTo(int index);
    // Puts the keyboard's card there and in sight; moveCursorTo() also announces it.
    void placeCursor(int index);
    void updateHeight();

    FileItems m_items;
    DatabaseColumns m_database;
    QHash<FilePath, FilePath> m_covers;
    GalleryView m_layout;
    Thumbnails* m_thumbnails;
    int m_cursor = 0;
};

} // namespace orwick
