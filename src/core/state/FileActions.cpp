#include "state/FileActions.h"

#include "async/Background.h"
#include "fileops/DropPlan.h"
#include "fileops/FileClipboard.h"
#include "files/Listing.h"
#include "platform/Trash.h"
#include "state/WindowState.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

namespace orwick {

bool isArchiveName(const QByteArray& name)
{
    static const QList<QByteArray> suffixes = {".zip", ".tar", ".tgz", ".tbz2", ".txz", ".tzst", ".7z", ".rar", ".gz",
                                               ".bz2", ".xz", ".zst", ".cpio", ".iso", ".cab", ".lzh", ".ar", ".jar"};
    const QByteArray lower = name.toLower();
    for (const QByteArray& suffix : suffixes)
        if (lower.endsWith(suffix) && lower.size() > suffix.size())
            return true;
    return false;
}

namespace {

QClipboard* clipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}

ClipboardFiles clipboardFiles()
{
    const QClipboard* board = clipboard();
    return board ? readFileClipboard(board->mimeData()) : ClipboardFiles{};
}

bool showsFolder(const PaneState* pane) { return pane && !pane->listing() && !pane->url().isEmpty(); }

} // namespace

FileActions::FileActions(WindowState* window, FileOperations* operations)
    : QObject(window), m_window(window), m_operations(operations)
{
}

PaneState* FileActions::pane() const { return m_window->activePane(); }

QList<FilePath> FileActions::selection() const { return m_window->selectedURLs(); }

bool FileActions::isRenaming() const
{
    for (const TabState* tab : m_window->tabs())
        for (const PaneState* each : tab->madePanes())
            if (each->renaming())
                return true;
    return false;
}

bool FileActions::showsTrash() const { return pane()->showsTrash(); }

bool FileActions::canActOnSelection() const { return m_operations && m_window->canActOnSelection(); }

bool FileActions::canCreateHere() const { return m_operations && showsFolder(pane()) && !isRenaming(); }

bool FileActions::canRename() const { return canActOnSelection() && pane()->selection().size() == 1 && !showsTrash(); }

bool FileActions::canChangeSelection() const { return canActOnSelection() && !showsTrash(); }

bool FileActions::canCompress() const { return canActOnSelection() && showsFolder(pane()); }

bool FileActions::canExtract() const
{
    if (!canChangeSelection())
        return false;
    const QList<FilePath> items = selection();
    return std::all_of(items.begin(), items.end(), [](const FilePath& item) { return isArchiveName(item.fileNameBytes()); });
}

bool FileActions::canPutBack() const
{
    if (!showsTrash() || !canActOnSelection())
        return false;
    for (const FilePath& item : selection())
        if (m_operations->trashLog().formerPath(item) || trash::originalPath(item))
            return true;
    return false;
}

bool FileActions::canTransferToOther() const
{
    return canActOnSelection() && showsFolder(m_window->selectedTab()->otherPane());
}

bool FileActions::canPaste() const { return canCreateHere() && !clipboardFiles().items.isEmpty(); }

void FileActions::newFolder()
{
    if (!canCreateHere())
        return;
    QPointer<PaneState> target = pane();
    m_operations->newFolder(target->url(), m_window->undoStack(), [this, target](const FilePath& made) { renameWhenShown(target, made); });
}

void FileActions::newFile()
{
    if (!canCreateHere())
        return;
    QPointer<PaneState> target = pane();
    m_operations->newFile(target->url(), kNewFileName, m_window->undoStack(),
                          [this, target](const FilePath& made) { renameWhenShown(target, made); });
}

void FileActions::renameWhenShown(const QPointer<PaneState>& target, const FilePath& made)
{
    if (!target)
        return;
    target->setPendingSelection({made});
    target->setPendingRename(made);
    target->reload();
}

void FileActions::beginRename()
{
    if (canRename())
        m_window->beginRename();
}

void FileActions::commitRename(const FilePath& item, const QString& name)
{
    PaneState* renamingPane = pane();
    for (TabState* tab : m_window->tabs())
        for (PaneState* each : tab->madePanes())
            if (each->renaming() == item)
                renamingPane = each;
    endRename();
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || !m_operations)
        return;
    renamingPane->setPendingSelection({item.parent().child(trimmed)});
    m_operations->rename(item, trimmed.toUtf8(), m_window->undoStack());
}

void FileActions::endRename()
{
    for (TabState* tab : m_window->tabs())
        for (PaneState* each : tab->madePanes())
            each->setRenaming(std::nullopt);
}

void FileActions::duplicateSelection()
{
    if (canChangeSelection())
        m_operations->duplicate(selection(), m_window->undoStack());
}

void FileActions::trashSelection()
{
    if (canChangeSelection())
        m_operations->trash(selection(), QStringLiteral("Move to Trash"), m_window->undoStack());
}

void FileActions::putBackSelection()
{
    if (canPutBack())
        m_operations->putBack(selection(), m_window->undoStack());
}

void FileActions::compressSelection()
{
    if (canCompress())
        m_operations->compress(selection(), m_window->undoStack());
}

void FileActions::extractSelection()
{
    if (canExtract())
        m_operations->extract(selection(), m_window->undoStack());
}

void FileActions::copySelection(bool cut)
{
    QClipboard* board = clipboard();
    if (!board || !canActOnSelection())
        return;
    board->setMimeData(makeFileClipboard(selection(), cut).release());
}

void FileActions::paste(bool forceMove)
{
    if (!canCreateHere())
        return;
    const ClipboardFiles files = clipboardFiles();
    if (files.items.isEmpty())
        return;
    const bool move = forceMove || files.cut;
    transferInto(files.items, pane(), pane()->url(), move ? FileOperations::Mode::move : FileOperations::Mode::copy);
    if (move) // a cut is pasted once; moved files are no longer where the clipboard says
        clipboard()->clear();
}

void FileActions::transferSelectionToOtherPane(FileOperations::Mode mode)
{
    if (!canTransferToOther())
        return;
    PaneState* other = m_window->selectedTab()->otherPane();
    transferInto(selection(), other, other->url(), mode);
}

void FileActions::linkSelectionToOtherPane()
{
    if (canTransferToOther())
        m_operations->makeLinks(selection(), m_window->selectedTab()->otherPane()->url(), m_window->undoStack());
}

bool FileActions::transferSelection(const FilePath& folder, FileOperations::Mode mode)
{
    if (!canActOnSelection() || folder.isEmpty())
        return false;
    transferInto(selection(), paneShowing(folder), folder, mode);
    return true;
}

PaneState* FileActions::paneShowing(const FilePath& folder) const
{
    PaneState* shown = nullptr;
    for (PaneState* each : m_window->selectedTab()->panes())
        if (showsFolder(each) && each->url() == folder)
            shown = each;
    return shown;
}

bool FileActions::transferHere(const QList<FilePath>& items, FileOperations::Mode mode, FileOperations::Moved moved)
{
    if (!canCreateHere() || items.isEmpty())
        return false;
    transferInto(items, pane(), pane()->url(), mode, std::move(moved));
    return true;
}

void FileActions::transferInto(const QList<FilePath>& items, PaneState* target, const FilePath& folder, FileOperations::Mode mode,
                               FileOperations::Moved moved)
{
    // The items are selected where they landed, as it went: a copy kept beside another under
    // its new name, a skipped one not at all.
    m_operations->transfer(
        items, folder, mode, m_window->undoStack(),
        [pane = QPointer<PaneState>(target), folder](const QList<FilePath>& landed) {
            if (pane)
                pane->selectLanded(folder, landed);
        },
        std::move(moved));
}

void FileActions::drop(const QList<QUrl>& urls, const FilePath& folder, Qt::KeyboardModifiers modifiers)
{
    if (!m_operations || isRenaming())
        return;
    const DropPlan plan = planDrop(urls, folder, modifiers);
    if (plan.isRefused()) {
        Q_EMIT m_window->messageRequested(plan.refusal);
        return;
    }
    if (plan.action == DropAction::none)
        return;
    if (plan.action == DropAction::link) {
        m_operations->makeLinks(plan.items, folder, m_window->undoStack());
        return;
    }
    transferInto(plan.items, paneShowing(folder), folder, plan.action == DropAction::move ? FileOperations::Mode::move : FileOperations::Mode::copy);
}

void FileActions::openDroppedInTabs(const QList<QUrl>& urls)
{
    const TabDropPlan plan = planTabDrop(urls);
    if (!plan.refusal.isEmpty())
        Q_EMIT m_window->messageRequested(plan.refusal);
    for (const FilePath& folder : plan.folders)
        m_window->newTab(folder);
}

void FileActions::requestTidyUp()
{
    if (canCreateHere())
        Q_EMIT tidyUpRequested(pane()->url());
}

void FileActions::tidyUp(const FilePath& folder)
{
    if (m_operations && !folder.isEmpty())
        m_operations->tidyUp(folder, m_window->undoStack());
}

void FileActions::requestEmptyTrash()
{
    if (m_measuringTrash)
        return; // the question comes once the running measure ends
    m_measuringTrash = true;
    runInBackground(this, [] { return TrashContents::measure(); }, [this](const TrashContents& contents) {
        m_measuringTrash = false;
        if (contents.isEmpty())
            Q_EMIT m_window->messageRequested(emptyText::trash);
        else
            Q_EMIT emptyTrashRequested(contents);
    });
}

void FileActions::emptyTrash(const TrashContents& contents)
{
    if (m_operations && !contents.isEmpty())
        m_operations->emptyTrash(contents.items, m_window->undoStack());
}

} // namespace orwick

#include "moc_FileActions.cpp"
