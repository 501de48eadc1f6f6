#pragma once
// The one-line status under a pane: item count, selection count and size, "Loading…"; the right
// side carries what other subsystems add (the git branch).

#include "state/PaneState.h"

#include <QWidget>

class QLabel;

namespace orwick {

class StatusLine : public QWidget {
    Q_OBJECT
public:
    explicit StatusLine(PaneState* pane, QWidget* parent = nullptr);

    void setTrailingText(const QString& text, const QString& toolTip = {});
    QString text() const; // the left side, for tests and screen readers

    // "12 items", "3 of 12 selected, 4.2 MB", "Loading…"
    static QString describe(const PaneState& pane);

private:
    void update();

    PaneState* m_pane;
    QLabel* m_left;
    QLabel* m_right;
};

} // namespace orwick
