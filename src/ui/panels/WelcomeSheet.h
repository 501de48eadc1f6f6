#pragma once
// WelcomeSheet: "Welcome to Orwick" — the few keys that matter most, each read from the command
// catalogue with its title, the hint on workspaces, and a button that opens the Orwick Guide. It
// draws the window's isWelcoming(): the sheet opens when the window is set welcoming and clears
// the field when it closes (Esc, the close button, or the guide taking its place). The program
// sets it once, at a user's first plain start (help/FirstStartWelcome.h); the "Welcome to Orwick"
// command at any time.

#include "ui/panels/PanelSheet.h"

class QMainWindow;
class QPushButton;

namespace orwick {

class WindowState;

class WelcomeSheet : public PanelSheet {
    Q_OBJECT
public:
    WelcomeSheet(WindowState& state, QWidget* window);

    // Opens or closes the welcome over `window` as `state`'s isWelcoming() changes.
    static void follow(WindowState& state, QMainWindow* window);

    // The commands whose keys the sheet shows, in its order.
    static const QStringList& keyCommands();
    // The hint on workspaces, word for word.
    static QString workspaceHint();
    QPushButton* guideButton() const { return m_guide; }

private:
    WindowState& m_state;
    QPushButton* m_guide;
};

} // namespace orwick
