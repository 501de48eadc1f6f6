#pragma once
// How the database views draw one card (board, calendar and gallery): a rounded panel with the
// item's title and a few "key: value" lines, the selection's fill and the keyboard's ring.

#include "notes/DatabaseColumns.h"

#include <QRect>

class QPainter;
class QWidget;

namespace orwick {

struct CardLook {
    bool selected = false;
    bool cursor = false;   // the keyboard's card, ringed while the view has the keyboard
    bool focused = false;
};

// The lines a card shows under its title: "key: value" for each shown key the item has.
QStringList cardLines(const DatabaseColumns& database, const FilePath& item, const QStringList& keys);
void drawCard(QPainter& painter, const QWidget* widget, const QRect& rect, const QString& title, const QStringList& lines,
              const CardLook& look);
// The height a card of `lines` lines takes.
int cardHeight(const QWidget* widget, int lines);

} // namespace orwick
