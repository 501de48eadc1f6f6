#include "ui/panels/DiskToolKeys.h"

#include "state/PaneState.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/SpacePanel.h"

#include <QMainWindow>
#include <QShortcut>

namespace orwick::DiskToolKeys {

namespace {

bool showsFolder(PaneState* pane) { return pane && !pane->url().isEmpty() && !pane->listing(); }

template <class Panel>
void open(QMainWindow* window, PaneState* pane)
{
    if (!showsFolder(pane))
        return;
    PanelSheet::closeOpenSheet(window);
    new Panel(pane, window);
}

} // namespace

void openDuplicates(QMainWindow* window, PaneState* pane) { open<DuplicatesPanel>(window, pane); }
void openSpace(QMainWindow* window, PaneState* pane) { open<SpacePanel>(window, pane); }
void openCleanUp(QMainWindow* window, PaneState* pane) { open<CleanUpPanel>(window, pane); }

void install(QMainWindow* window, PaneState* (*activePane)(QMainWindow*))
{
    const struct {
        QKeySequence keys;
        void (*action)(QMainWindow*, PaneState*);
    } bindings[] = {
        {QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_D), &openDuplicates},
        {QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S), &openSpace},
        {QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_B), &openCleanUp},
    };
    for (const auto& binding : bindings) {
        auto* shortcut = new QShortcut(binding.keys, window);
        shortcut->setContext(Qt::WindowShortcut);
        QObject::connect(shortcut, &QShortcut::activated, window,
                         [window, activePane, action = binding.action] { action(window, activePane(window)); });
    }
}

} // namespace orwick::DiskToolKeys
