#pragma once
// RecognizedTextSheet: the text "Copy Text from Image" read, shown whole over the content area
// when its toast's "Show" is pressed — read-only, selectable, with Copy (all of it, or what is
// selected with Ctrl+C). Esc closes it and the keyboard goes back to the pane. Drawn as the
// other sheets (PanelSheet).

#include "ui/panels/PanelSheet.h"

class QMainWindow;
class QPlainTextEdit;
class QPushButton;

namespace orwick {

class WindowState;

class RecognizedTextSheet : public PanelSheet {
    Q_OBJECT
public:
    RecognizedTextSheet(const QString& title, const QString& text, QWidget* window);

    // Opens the sheet over `window` each time `state` asks to show a text.
    static void follow(WindowState& state, QMainWindow* window);

    QPlainTextEdit* textView() const { return m_text; }
    QPushButton* copyButton() const { return m_copy; }

private:
    QPlainTextEdit* m_text;
    QPushButton* m_copy;
};

} // namespace orwick
