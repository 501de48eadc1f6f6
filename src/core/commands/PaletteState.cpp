#include "commands/PaletteState.h"

#include "commands/Frecency.h"
#include "commands/PaletteRanking.h"
#include "platform/XdgPaths.h"
#include "search/NameIndex.h"

namespace orwick {
namespace {

constexpr qsizetype kProjectRows = 100;
constexpr qsizetype kDestinationRows = PaletteRanking::kFolderRows;

} // namespace

PaletteState::PaletteState(Frecency* frecency, QObject* parent)
    : QObject(parent)
    , m_frecency(frecency)
{
    static const int registered = qRegisterMetaType<PaletteItem>();
    Q_UNUSED(registered);
}

PaletteState::~PaletteState() = default;

void PaletteState::open(PaletteMode mode, const FilePath& path)
{
    m_mode = mode;
    m_isOpen = true;
    m_query.clear();
    takeFrecency();
    takeIndexedNames();
    if (mode == PaletteMode::path) {
        const FilePath start = path.isEmpty() ? xdg::home() : path;
        m_paths.setBase(start);
        m_query = start.isRoot() ? QStringLiteral("/") : start.abbreviated() + QLatin1Char('/');
    }
    const bool wasWalking = m_projectWalk.isRunning();
    if (mode == PaletteMode::projects)
        startProjectWalk();
    else
        m_projectWalk.cancel();
    Q_EMIT openChanged();
    if (wasWalking && mode != PaletteMode::projects)
        Q_EMIT statusChanged();
    Q_EMIT queryChanged();
    recompute();
}

void PaletteState::openDestination(TransferKind kind, int itemCount, const FilePath& from)
{
    m_transferKind = kind;
    m_transferCount = itemCount;
    m_transferFrom = from;
    open(PaletteMode::destination);
}

void PaletteState::close()
{
    if (!m_isOpen)
        return;
    const bool wasWalking = m_projectWalk.isRunning();
    m_projectWalk.cancel();
    m_isOpen = false;
    m_query.clear();
    m_ranking.clear();
    m_candidates.setIndexedNames({}); // the index edits its own table without copying it
    setRows({});
    Q_EMIT openChanged();
    if (wasWalking)
        Q_EMIT statusChanged();
}

void PaletteState::takeFrecency()
{
    m_ranking = m_frecency ? m_frecency->ranked() : std::vector<FrecentFolder>{};
    m_candidates.setFolders(m_ranking);
}

void PaletteState::setCommands(QList<PaletteCommand> commands)
{
    m_candidates.setCommands(std::move(commands));
    if (m_isOpen && m_mode == PaletteMode::main)
        recompute();
}

void PaletteState::setFileCandidates(std::span<const FilePath> files)
{
    m_candidates.setFiles(files);
    if (m_isOpen && m_mode == PaletteMode::main)
        recompute();
}

void PaletteState::setEditorName(const QString& name) { m_editorName = name; }

void PaletteState::setNameIndex(NameIndex* index)
{
    if (m_nameIndex)
        disconnect(m_nameIndex, nullptr, this, nullptr);
    m_nameIndex = index;
    if (!index)
        return;
    connect(index, &NameIndex::tableChanged, this, [this] {
        if (m_isOpen && m_mode == PaletteMode::main) {
            takeIndexedNames();
            recompute();
        }
    });
}

void PaletteState::takeIndexedNames()
{
    if (!m_nameIndex || m_mode != PaletteMode::main) {
        m_candidates.setIndexedNames({});
        return;
    }
    m_nameIndex->start();
    m_candidates.setIndexedNames(m_nameIndex->table());
}

void PaletteState::setProjectWalk(const FilePath& root, ProjectWalkLimits limits)
{
    m_projectRoot = root;
    m_projectLimits = limits;
}

QString PaletteState::prompt() const
{
    switch (m_mode) {
    case PaletteMode::main:
        return QStringLiteral("Search folders, files and commands…");
    case PaletteMode::path:
        return QStringLiteral("Type a path…");
    case PaletteMode::projects:
        return QStringLiteral("Open a project…");
    case PaletteMode::destination: {
        const QString verb = m_transferKind == TransferKind::move ? QStringLiteral("Move") : QStringLiteral("Copy");
        return m_transferCount == 1 ? verb + QStringLiteral(" 1 item")
                                    : QStringLiteral("%1 %2 items").arg(verb).arg(m_transferCount);
    }
    }
    return {};
}

QString PaletteState::footer() const
{
    switch (m_mode) {
    case PaletteMode::path:
        return QStringLiteral("Go to path · Tab completes");
    case PaletteMode::projects:
        return QStringLiteral("Projects · Ctrl+Return opens in ")
               + (m_editorName.isEmpty() ? QStringLiteral("your editor") : m_editorName);
    case PaletteMode::main:
    case PaletteMode::destination:
        break;
    }
    return {};
}

QString PaletteState::status() const
{
    if (m_isOpen && m_mode == PaletteMode::projects && m_projectWalk.isRunning())
        return QStringLiteral("Looking for git repositories…");
    return {};
}

void PaletteState::startProjectWalk()
{
    const TaskSlot::Ticket ticket = m_projectWalk.start();
    const FilePath root = m_projectRoot.isEmpty() ? xdg::home() : m_projectRoot;
    runInBackground(
        this, [root, limits = m_projectLimits, token = ticket.token] { return findProjects(root, *token, limits); },
        [this, ticket](const ProjectSearch& found) {
            if (!m_projectWalk.isCurrent(ticket))
                return;
            m_projectWalk.finish(ticket);
            applyProjects(found.repositories);
            Q_EMIT statusChanged();
        });
    Q_EMIT statusChanged();
}

void PaletteState::applyProjects(const std::vector<FilePath>& repositories)
{
    // Projects the user visits often come first; the rest keep the walk's order.
    QHash<FilePath, double> frecency;
    for (const FrecentFolder& folder : m_ranking)
        frecency.insert(folder.path, folder.score);
    std::vector<FrecentFolder> projects;
    projects.reserve(repositories.size());
    for (const FilePath& repository : repositories)
        projects.push_back({repository, frecency.value(repository, 0.0)});
    std::stable_sort(projects.begin(), projects.end(),
                     [](const FrecentFolder& a, const FrecentFolder& b) { return a.score > b.score; });
    m_projects.assign(projects, qsizetype(projects.size()));
    if (m_isOpen && m_mode == PaletteMode::projects)
        recompute();
}

void PaletteState::setQuery(const QString& query)
{
    if (query == m_query)
        return;
    m_query = query;
    if (m_isOpen)
        recompute();
}

void PaletteState::recompute()
{
    const FuzzyQuery query(m_query);
    switch (m_mode) {
    case PaletteMode::main:
        setRows(PaletteRanking::rank(query, m_candidates));
        break;
    case PaletteMode::path:
        setRows({{QString(), m_paths.rows(m_query)}});
        break;
    case PaletteMode::projects:
        setRows({{QString(), PaletteRanking::rankFolders(query, m_projects, kProjectRows)}});
        break;
    case PaletteMode::destination: {
        // The items' own folder is no destination.
        QList<PaletteItem> folders = PaletteRanking::rankFolders(query, m_candidates.folders(), kDestinationRows + 1);
        folders.removeIf([this](const PaletteItem& row) { return row.path == m_transferFrom; });
        setRows({{QStringLiteral("Folders"), folders.first(std::min(folders.size(), kDestinationRows))}});
        break;
    }
    }
}

void PaletteState::setRows(QList<PaletteSection> sections)
{
    sections.removeIf([](const PaletteSection& section) { return section.items.isEmpty(); });
    m_sections = std::move(sections);
    m_rows = flattenSections(m_sections);
    m_selected = m_rows.isEmpty() ? -1 : 0;
    Q_EMIT resultsChanged();
}

const PaletteItem* PaletteState::selectedItem() const
{
    return m_selected >= 0 && m_selected < m_rows.size() ? &m_rows[m_selected] : nullptr;
}

void PaletteState::selectRow(int row)
{
    if (m_rows.isEmpty())
        return;
    row = std::clamp(row, 0, int(m_rows.size()) - 1);
    if (row == m_selected)
        return;
    m_selected = row;
    Q_EMIT selectionChanged();
}

void PaletteState::moveSelection(int delta) { selectRow(m_selected + delta); }

bool PaletteState::completePath()
{
    if (!m_isOpen || m_mode != PaletteMode::path)
        return false;
    const auto completed = m_paths.complete(m_query);
    if (!completed || *completed == m_query)
        return false;
    m_query = *completed;
    Q_EMIT queryChanged();
    recompute();
    return true;
}

bool PaletteState::choose(bool alternate)
{
    const PaletteItem* item = selectedItem();
    if (!m_isOpen || !item || !item->isEnabled)
        return false;
    const PaletteItem chosenItem = *item;
    const PaletteMode mode = m_mode;
    close();
    Q_EMIT chosen(chosenItem, mode, alternate);
    return true;
}

} // namespace orwick

#include "moc_PaletteState.cpp"
