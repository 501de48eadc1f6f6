#pragma once
// PanelSheet: the frame every disk-tool panel shows in — a sheet over the window's content area
// with a title row (title, the folder, tools on the right, a close button), the panel's body and
// a one-line footer. A panel adds its parts and then calls present(), last in its constructor,
// which puts the sheet on screen. Esc or the close button closes it: stopWork() runs at once (the
// panel's walk must stop within a fraction of a second), then the sheet goes and the keyboard
// focus returns to where it was when the sheet opened. closed() follows every close. Tab stays
// among the sheet's parts and meets them as they read: the tools, the close button, the body.

#include "base/FilePath.h"

#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace orwick {

class PaneWidget;

// How a panel names a file below its folder: the path from there ("src/a.c"), else the whole path.
QString relativeText(const FilePath& folder, const FilePath& file);

class PanelSheet : public QWidget {
    Q_OBJECT
public:
    PanelSheet(const QString& title, const QString& subtitle, QWidget* window);

    // Closes the sheet another panel would replace, if any.
    static void closeOpenSheet(QWidget* window);

    void setFooter(const QString& text);
    QString footer() const;

    // Asked for again while shown: the sheet comes to the front with the keyboard back in the
    // part that last had it (its list, usually), never in the sheet itself, where the arrows do
    // nothing and Delete would reach the window's Move to Trash beneath.
    void bringBack();

public Q_SLOTS:
    void closeSheet();

Q_SIGNALS:
    void closed();

protected:
    // Stops background work; runs when the sheet closes and when it is destroyed.
    virtual void stopWork() {}
    QVBoxLayout* body() const { return m_body; }
    // Puts the sheet on screen with the keyboard in `focus` (when null: the part the panel gave
    // it while building, else the sheet itself). The sheet is off screen until then, so the
    // panel's parts come on screen together, laid out and painted once: parts added to a sheet
    // already on screen would each show a moment later, and the sheet would be laid out and
    // painted again.
    void present(QWidget* focus = nullptr, Qt::FocusReason reason = Qt::OtherFocusReason);
    QHBoxLayout* tools() const { return m_tools; }

    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    // Tab and Shift+Tab go round the sheet's own parts, in the order the panel made them: the
    // window's chain would go on to the panes beneath the sheet, where the keyboard is out of sight.
    bool focusNextPrevChild(bool next) override;

private:
    void place();
    QWidget* lastFocusedPart();

    QVBoxLayout* m_body;
    QHBoxLayout* m_tools;
    QWidget* m_close;
    QLabel* m_footer;
    QPointer<QWidget> m_focusBefore; // the pane, usually
    QPointer<PaneWidget> m_paneBefore; // the pane m_focusBefore was in, if any
    bool m_closing = false;
};

} // namespace orwick
