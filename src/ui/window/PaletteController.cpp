#include "ui/window/PaletteController.h"

#include "commands/CommandActions.h"
#include "commands/CommandCatalog.h"
#include "search/NameIndex.h"
#include "ui/window/PaletteWidget.h"

namespace orwick {

PaletteController::PaletteController(WindowState* state, Frecency* frecency, QWidget* window)
    : QObject(window), m_state(state), m_palette(new PaletteState(frecency, this)), m_widget(new PaletteWidget(m_palette, window))
{
    m_palette->setEditorName(actions::hasEditor(*state) ? actions::editorName() : QString());
    m_palette->setNameIndex(&NameIndex::shared());
    connect(state, &WindowState::paletteRequested, this, &PaletteController::open);
    connect(m_palette, &PaletteState::chosen, this, &PaletteController::carryOut);
}

void PaletteController::open(PaletteRequest request)
{
    QList<PaletteCommand> commands;
    for (const AppCommand& command : CommandCatalog::all(*m_state))
        commands.append({command.id, command.title, command.keywords, command.symbol, command.shortcutText(), command.disabledNote,
                         command.enabledIn(*m_state)});
    m_palette->setCommands(std::move(commands));
    std::vector<FilePath> files;
    for (const FileItem& item : m_state->activePane()->items())
        files.push_back(item.url);
    m_palette->setFileCandidates(files);
    const int selected = int(m_state->activePane()->selection().size());
    switch (request) {
    case PaletteRequest::main: m_palette->open(PaletteMode::main); break;
    case PaletteRequest::path: m_palette->open(PaletteMode::path, m_state->activePane()->url()); break;
    case PaletteRequest::projects: m_palette->open(PaletteMode::projects); break;
    case PaletteRequest::copyDestination: m_palette->openDestination(TransferKind::copy, selected, m_state->activePane()->url()); break;
    case PaletteRequest::moveDestination: m_palette->openDestination(TransferKind::move, selected, m_state->activePane()->url()); break;
    }
}

void PaletteController::carryOut(const PaletteItem& item, PaletteMode mode, bool alternate)
{
    PaneState* pane = m_state->activePane();
    switch (item.kind) {
    case PaletteItem::Kind::command:
        CommandCatalog::run(item.commandId, *m_state);
        return;
    case PaletteItem::Kind::file:
        pane->reveal({item.path});
        return;
    case PaletteItem::Kind::folder:
        break;
    }
    if (mode == PaletteMode::destination) {
        m_state->transferSelection(m_palette->transferKind() == TransferKind::move, item.path);
        return;
    }
    if (mode == PaletteMode::projects && alternate) {
        pane->navigate(item.path);
        actions::openInEditor(*m_state);
        return;
    }
    if (alternate)
        m_state->newTab(item.path);
    else
        pane->navigate(item.path);
}

} // namespace orwick
