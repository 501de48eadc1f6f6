#pragma once
// Git marks on file rows: a changed file's letter ("M", "A", "D", "R", "U", "!") in its colour, or
// the small orange dot of a folder with changes below. A pane's git decoration puts the mark into
// the name cell's data under GitMarkRole; the row delegate reserves room for it and draws it at
// the right end of the cell.

#include "git/RepoStatus.h"

#include <QColor>
#include <QModelIndex>

class QPainter;
class QRect;

namespace orwick {

// The mark of a row: a Change as its number, or changesBelowMark.
inline constexpr int GitMarkRole = Qt::UserRole + 40;
inline constexpr int changesBelowMark = 100;

QColor gitMarkColor(Change change);

// The width to keep free at the right of the cell for the index's mark; 0 when it has none.
int gitMarkWidth(const QModelIndex& index);
// Draws the index's mark, if any, at the right end of `cell`.
void paintGitMark(QPainter* painter, const QRect& cell, const QModelIndex& index);

} // namespace orwick
