#pragma once
// The "filter this folder" field above a pane's view. Shown while the pane is filtering; each
// keystroke narrows the pane's items (the pane arranges, this only passes the text on). Esc
// closes it and clears the text; Return, Down or Tab hand the keys back to the view and keep
// the filter (Down with no cursor on a shown row puts it on the first); Ctrl+F in the field
// turns it into a search below the folder with the same text (the pane's search field takes
// over). The text follows the pane when the pane clears it (moving to another folder).
//
// Signals: finished() follows every hand-back of the keys to the view (closed or not).

#include <QLineEdit>
#include <QPointer>

namespace orwick {

class PaneState;

class FilterBar : public QLineEdit {
    Q_OBJECT
public:
    FilterBar(PaneState* pane, QWidget* parent = nullptr);

    // Opens (when closed) and puts the keyboard in the field.
    void open();

Q_SIGNALS:
    void finished();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void follow();

    QPointer<PaneState> m_pane;
};

} // namespace orwick
