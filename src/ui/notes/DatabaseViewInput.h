#pragma once
// What the database views (BoardWidget, CalendarWidget, GalleryWidget) share in taking input:
// each takes the keyboard by Tab and by click, over a background of the window's colour, and
// Return (or Enter) opens the keyboard's item through the view's openRequested signal.

#include "base/FilePath.h"

#include <QKeyEvent>
#include <QWidget>

#include <optional>

namespace orwick {

// Sets `view` up to take the keyboard and to fill its background with the window's colour.
inline void setUpDatabaseView(QWidget* view)
{
    view->setFocusPolicy(Qt::StrongFocus);
    view->setAutoFillBackground(true);
    view->setBackgroundRole(QPalette::Window);
}

// Return or Enter asks `view` to open its current item, when it has one; true when the key was
// one of them (and so is taken).
template <class View>
bool openCurrentOnReturn(View& view, const QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return false;
    if (const std::optional<FilePath> item = view.currentItem())
        Q_EMIT view.openRequested(*item);
    return true;
}

} // namespace orwick
