#pragma once
// The path bar over a pane: the folder's breadcrumbs (each one goes there when clicked), or the
// title of the listing shown.

#include "state/PaneState.h"

#include <QWidget>

class QHBoxLayout;

namespace orwick {

class PathBar : public QWidget {
    Q_OBJECT
public:
    explicit PathBar(PaneState* pane, QWidget* parent = nullptr);

private:
    void rebuild();

    PaneState* m_pane;
    QHBoxLayout* m_layout;
};

} // namespace orwick
