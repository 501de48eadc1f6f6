#pragma once
// GalleryView: a folder's items as cards in rows — as many columns as fit the measured width
// with a minimum card width, a spacing between cards and a padding around them, the cards
// stretched to fill the row — and each card's cover: a picture's own file, or the first image a
// note shows (a Markdown image or an embedded wiki image, local to the note). Moving the cursor
// with the arrow keys follows the rows as the grid view does. Pure apart from reading a note's
// head for its cover; safe on any thread.

#include "files/FileItem.h"

#include <QRect>

namespace orwick {

struct GalleryView {
    int width = 0;
    int minCardWidth = 200;
    int cardHeight = 220;
    int spacing = 12;
    int padding = 16;

    int columns() const;
    int cardWidth() const;
    QRect cardRect(int index) const;
    int contentHeight(int count) const;
    // The card at a point, or -1.
    int indexAt(QPoint point, int count) const;
    // The cursor moved by rows and columns, kept inside 0…count-1.
    int moved(int index, int rows, int columns, int count) const;
};

// The first image a note's text shows, resolved against the note's folder: "![alt](path)" or
// "![[name.png]]" (looked up beside the note); web images and missing files are skipped.
std::optional<FilePath> firstImage(const FilePath& note, const QString& text);
// A card's cover: the item itself when it is a picture, else a note's first image (from its
// first 64 KiB); nothing otherwise.
std::optional<FilePath> coverOf(const FileItem& item);

} // namespace orwick
