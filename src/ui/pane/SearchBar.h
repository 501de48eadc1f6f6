#pragma once
// The search field above a pane's view: the text, then where to look ("This Folder", "Below",
// "Home and Drives"), which kind and how recently changed. Shown while the pane is searching;
// it only passes each change to the pane, which waits a quarter second and runs the search.
// Esc ends the search and brings the folder back; Return or Down hand the keys to the results
// (Down with no cursor on a result puts it on the first); Tab walks through the three choices
// (each opens with Alt+Down or Space, like any list box).
// The field follows the pane: opening a saved search fills it, leaving the folder closes it.
//
// Signals: finished() follows every hand-back of the keys to the view.

#include <QPointer>
#include <QWidget>

class QComboBox;
class QLineEdit;

namespace orwick {

class PaneState;

class SearchBar : public QWidget {
    Q_OBJECT
public:
    SearchBar(PaneState* pane, QWidget* parent = nullptr);

    // Opens (when closed) and puts the keyboard in the text.
    void open();
    QLineEdit* field() const { return m_field; }
    QComboBox* scopeBox() const { return m_scope; }
    QComboBox* kindBox() const { return m_kind; }
    QComboBox* changedBox() const { return m_changed; }

Q_SIGNALS:
    void finished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();

    QPointer<PaneState> m_pane;
    QLineEdit* m_field;
    QComboBox* m_scope;
    QComboBox* m_kind;
    QComboBox* m_changed;
};

} // namespace orwick
