#pragma once
// The command palette on screen: a query field over rows grouped under headings, floating at the
// top centre of the window. Draws the window's PaletteState and forwards keys to it: Up/Down
// move, Return chooses (Ctrl+Return the alternate action), Tab completes a path, Esc closes.

#include "commands/PaletteState.h"

#include <QFrame>
#include <QPointer>

class QLabel;
class QLineEdit;
class QListWidget;

namespace orwick {

class PaletteWidget : public QFrame {
    Q_OBJECT
public:
    PaletteWidget(PaletteState* state, QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void sync();
    void fillRows();
    void showSelection();
    void place();

    PaletteState* m_state;
    QLabel* m_title;
    QLineEdit* m_query;
    QListWidget* m_rows;
    QLabel* m_footer;
    QList<int> m_listRowOf; // palette row → list row (headings take rows of their own)
    // Where the keyboard was when the palette opened, and goes back to when it closes, so the
    // pane that was active stays active for what the chosen row does.
    QPointer<QWidget> m_returnFocus;
};

} // namespace orwick
