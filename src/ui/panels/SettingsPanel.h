#pragma once
// SettingsPanel: the "Customize…" sheet. Draws the SettingsSheet's sections: per row a switch
// (QCheckBox) or a choice (QComboBox), its help dimmed below and, when there is one, a note (why
// the row is unavailable, what went wrong). A change goes straight to the row's owner, so it
// applies at once in every window and is kept; the rows redraw whenever an owner announces a
// change, wherever it came from.
//
// Keys: Tab and Shift+Tab (round the rows), or Up and Down, move between rows; Space switches a switch or opens a
// choice's list; Left and Right step through a choice; Esc closes and gives the keyboard back.

#include "app/SettingsSheet.h"
#include "ui/panels/PanelSheet.h"

class QLabel;
class QMainWindow;
class QScrollArea;

namespace orwick {

class WindowState;

class SettingsPanel : public PanelSheet {
    Q_OBJECT
public:
    SettingsPanel(const SettingsSheet::Owners& owners, QWidget* window);

    // Shows the sheet while the window state's panel is Panel::settings (the "customize"
    // command sets it), over the program's own owners; a sheet the user closes sets it back.
    static void follow(WindowState& state, QMainWindow* window);

    // The switch or choice of the row kept under `key`, or null.
    QWidget* control(const QString& key) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row {
        const SettingRow* setting;
        QWidget* control;
        QLabel* note;
    };
    void addRow(const SettingRow& row, QWidget* content);
    void refresh();
    bool moveFocus(QWidget* from, int step, bool wrap);
    // Tints the row `block` as the one with the keyboard, or gives it back the sheet's colours.
    void tint(QWidget* block, bool focused);

    SettingsSheet* m_sheet;
    QScrollArea* m_scroll;
    QList<Row> m_rows;
};

} // namespace orwick
