#pragma once
// NamePatternPrompt: the small field "Select by Pattern…" and "Deselect by Pattern…" ask for —
// a pattern such as "*.txt; *.md" (after "|" the names to leave out), prefilled with the last
// one used and selected so that typing replaces it. Return marks the active pane's matching
// items (PaneState::markMatching) and closes; a pattern that takes nothing says so under the
// field and stays open to be corrected; Esc cancels and changes nothing.

#include "state/PaneState.h"

#include <QDialog>

class QLabel;
class QLineEdit;

namespace orwick {

class WindowState;

class NamePatternPrompt : public QDialog {
    Q_OBJECT
public:
    NamePatternPrompt(WindowState* state, PaneState::Mark mark, QWidget* window);

    // Opens a prompt over `window` each time `state` asks for a pattern.
    static void follow(WindowState* state, QWidget* window);

    QLineEdit* patternField() const { return m_pattern; }
    // The line under the field: the hint, or why nothing was marked.
    QString note() const;

private:
    void apply();

    WindowState* m_state;
    PaneState::Mark m_mark;
    QLineEdit* m_pattern;
    QLabel* m_note;
};

} // namespace orwick
