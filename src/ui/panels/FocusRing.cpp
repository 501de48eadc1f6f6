#include "ui/panels/FocusRing.h"

#include <QApplication>
#include <QWidget>

namespace orwick {

bool moveAroundFocusRing(const QList<QWidget*>& controls, bool next)
{
    QList<QWidget*> ring;
    for (QWidget* control : controls)
        if (control && control->isVisible() && control->isEnabled())
            ring.append(control);
    if (ring.isEmpty())
        return false;
    const qsizetype at = ring.indexOf(QApplication::focusWidget());
    const qsizetype to = at < 0 ? (next ? 0 : ring.size() - 1) : (at + (next ? 1 : ring.size() - 1)) % ring.size();
    ring.at(to)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

} // namespace orwick
