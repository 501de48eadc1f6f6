#pragma once
// The menu bar and context menus, built from the command catalogue: one QAction per command,
// whose shortcut, title and icon are the command's. A menu shows each command's enabled state as
// it opens; a shortcut runs the command only when its predicate holds. A chord of a dimmed
// command (Ctrl+Z with nothing to undo) says why in a toast; a plain key (Delete) stays quiet.

#include "state/WindowState.h"

#include <QHash>
#include <QKeySequence>
#include <QSet>
#include <QObject>

class QAction;
class QMainWindow;
class QMenu;

namespace orwick {

struct AppCommand;

class CommandMenus : public QObject {
    Q_OBJECT
public:
    CommandMenus(QMainWindow* window, WindowState* state);

    QAction* action(const QString& id) const { return m_actions.value(id); }
    // The context menu for the active pane's selection (or for its folder when nothing is selected).
    void showContextMenu(const QPoint& globalPosition);

Q_SIGNALS:
    void messageRequested(const QString& message);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* makeAction(const QString& id);
    QMenu* addMenu(const QString& title, const QStringList& ids);
    void refresh(QMenu* menu);
    // Sets the command's icon on its action the first time a menu shows it.
    void giveIcon(QAction* action, const AppCommand& command);
    void addImageMenu(QMenu& menu);

    QMainWindow* m_window;
    WindowState* m_state;
    QHash<QString, QAction*> m_actions;
    QSet<QAction*> m_withIcons;
    QKeySequence m_pressedKey; // the key of the shortcut being handled, empty for a menu's click
};

// The icon for a command's symbol name: a tag's dot, a theme's swatch, the icon theme's picture
// or Orwick's own drawn mark (empty when none fits).
QIcon commandIcon(const QString& symbol);

} // namespace orwick
