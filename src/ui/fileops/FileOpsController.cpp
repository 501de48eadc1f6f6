#include "ui/fileops/FileOpsController.h"

#include "fileops/FileClipboard.h"
#include "platform/Trash.h"
#include "ui/fileops/ConflictDialog.h"
#include "ui/fileops/InlineRename.h"
#include "ui/fileops/ProgressCard.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/FileListView.h"
#include "ui/window/ToastHost.h"

#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

namespace orwick {

namespace {

bool isArchiveName(const QByteArray& name)
{
    static const QList<QByteArray> suffixes = {".zip", ".tar", ".tgz", ".tbz2", ".txz", ".tzst", ".7z", ".rar", ".gz",
                                               ".bz2", ".xz", ".zst", ".cpio", ".iso", ".cab", ".lzh", ".ar", ".jar"};
    const QByteArray lower = name.toLower();
    for (const QByteArray& suffix : suffixes)
        if (lower.endsWith(suffix))
            return true;
    return false;
}

} // namespace

FileOpsController::FileOpsController(QWidget* window, WindowState* state, ToastHost* toasts, FileOperations* operations)
    : QObject(window), m_window(window), m_state(state), m_toasts(toasts), m_operations(operations)
{
    m_card = new ProgressCard(operations, window);
    operations->setResolveConflicts([this](const FileOperations::ConflictQuestion& question, FileOperations::ConflictAnswer answer) {
        askConflict(m_window, question, std::move(answer));
    });
    operations->setReportErrors([this](const QString& message) { m_toasts->show(message); });
    connect(operations, &FileOperations::announced, this, [this](const Toast& toast) {
        QUndoStack* stack = m_state->undoStack();
        if (toast.canUndo)
            m_toasts->show(toast.text, QStringLiteral("Undo"), [stack] { stack->undo(); });
        else
            m_toasts->show(toast.text);
    });
}

void FileOpsController::attach(PaneWidget* pane)
{
    m_panes.append(pane);
    // Every view of the pane's stack (list, empty-folder text, drives) can hold the keyboard;
    // the path bar's field keeps its own Ctrl+C.
    if (auto* stack = pane->findChild<QStackedWidget*>())
        for (int i = 0; i < stack->count(); ++i)
            stack->widget(i)->installEventFilter(this);
    pane->listView()->installEventFilter(this);
    // Started once the load that shows the item has been drawn.
    connect(pane->pane(), &PaneState::renameRequested, this, [this](const FilePath& url) {
        QTimer::singleShot(0, this, [this, url] { startRename(url); });
    });
}

PaneWidget* FileOpsController::paneWidget() const
{
    for (const auto& widget : m_panes)
        if (widget && widget->pane() == m_state->activePane())
            return widget;
    return m_panes.isEmpty() ? nullptr : m_panes.first().data();
}

PaneState* FileOpsController::pane() const { return m_state->activePane(); }

QList<FilePath> FileOpsController::selection() const
{
    QList<FilePath> items;
    for (const FileItem& item : pane()->selectedItems())
        items.append(item.url);
    return items;
}

bool FileOpsController::canActOnSelection() const { return !m_renaming && !pane()->selection().isEmpty(); }

bool FileOpsController::canCreateHere() const { return !pane()->listing() && !pane()->url().isEmpty(); }

bool FileOpsController::canPaste() const
{
    return canCreateHere() && !readFileClipboard(QApplication::clipboard()->mimeData()).items.isEmpty();
}

bool FileOpsController::canPutBack() const
{
    if (!pane()->listing() || pane()->listing()->kind != Listing::Kind::trash)
        return false;
    for (const FilePath& item : selection())
        if (m_operations->trashLog().formerPath(item) || trash::originalPath(item))
            return true;
    return false;
}

bool FileOpsController::canExtract() const
{
    const QList<FilePath> items = selection();
    return !items.isEmpty() && std::all_of(items.begin(), items.end(), [](const FilePath& p) { return isArchiveName(p.fileNameBytes()); });
}

bool FileOpsController::handleKey(QKeyEvent* event)
{
    if (m_renaming)
        return false;
    const auto modifiers = event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool ctrl = modifiers == Qt::ControlModifier;
    const bool ctrlShift = modifiers == (Qt::ControlModifier | Qt::ShiftModifier);
    switch (event->key()) {
    case Qt::Key_C:
        if (!ctrl || !canActOnSelection())
            return false;
        copySelection(false);
        return true;
    case Qt::Key_X:
        if (!ctrl || !canActOnSelection())
            return false;
        copySelection(true);
        return true;
    case Qt::Key_V:
        if (!ctrl)
            return false;
        paste();
        return true;
    case Qt::Key_Delete:
        if ((modifiers != Qt::NoModifier && !ctrl) || !canActOnSelection())
            return false;
        trashSelection();
        return true;
    case Qt::Key_F2:
        if (modifiers != Qt::NoModifier)
            return false;
        beginRename();
        return true;
    case Qt::Key_N:
        if (!ctrlShift)
            return false;
        newFolder();
        return true;
    case Qt::Key_D:
        if (!ctrl || !canActOnSelection())
            return false;
        duplicateSelection();
        return true;
    case Qt::Key_Z:
        if (ctrl)
            undo();
        else if (ctrlShift)
            redo();
        else
            return false;
        return true;
    case Qt::Key_Y:
        if (!ctrl)
            return false;
        redo();
        return true;
    default:
        return false;
    }
}

bool FileOpsController::eventFilter(QObject* watched, QEvent* event)
{
    // Ctrl+C and Ctrl+Z are claimed before the view's own copy and the application's shortcuts.
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (event->type() == QEvent::ShortcutOverride) {
            // Only say "ours"; the key press that follows does the work.
            if (!m_renaming && (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Cut)
                                || key->matches(QKeySequence::Paste) || key->matches(QKeySequence::Undo)
                                || key->matches(QKeySequence::Redo))) {
                event->accept();
                return true;
            }
            return false;
        }
        if (handleKey(key)) {
            event->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void FileOpsController::copySelection(bool cut)
{
    const QList<FilePath> items = selection();
    if (items.isEmpty())
        return;
    QApplication::clipboard()->setMimeData(makeFileClipboard(items, cut).release());
}

void FileOpsController::paste(bool forceMove)
{
    if (!canCreateHere())
        return;
    const ClipboardFiles files = readFileClipboard(QApplication::clipboard()->mimeData());
    if (files.items.isEmpty())
        return;
    const bool move = forceMove || files.cut;
    QList<FilePath> landing;
    for (const FilePath& item : files.items)
        landing.append(pane()->url().child(QByteArrayView(item.fileNameBytes())));
    selectWhenShown(landing);
    m_operations->transfer(files.items, pane()->url(), move ? FileOperations::Mode::move : FileOperations::Mode::copy,
                           m_state->undoStack());
    if (move) // a cut is pasted once
        QApplication::clipboard()->clear();
}

void FileOpsController::trashSelection()
{
    if (pane()->listing() && pane()->listing()->kind == Listing::Kind::trash)
        return; // already there
    m_operations->trash(selection(), QStringLiteral("Move to Trash"), m_state->undoStack());
}

void FileOpsController::beginRename()
{
    const QList<FilePath> items = selection();
    if (items.size() == 1 && !pane()->listing())
        startRename(items.first());
}

void FileOpsController::startRename(const FilePath& url)
{
    PaneWidget* widget = paneWidget();
    if (!widget || m_renaming)
        return;
    auto commit = [this](const FilePath& item, const QString& name) { commitRename(item, name); };
    // In the list the name is edited in place; the other views ask in a small sheet.
    QWidget* editor = widget->listView()->isVisible() ? startInlineRename(widget->listView(), url, commit) : nullptr;
    if (!editor) {
        auto* dialog = new QInputDialog(m_window);
        dialog->setWindowTitle(QStringLiteral("Rename"));
        dialog->setLabelText(QStringLiteral("Name:"));
        dialog->setTextValue(url.fileName());
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setWindowModality(Qt::WindowModal);
        connect(dialog, &QInputDialog::textValueSelected, this, [commit, url](const QString& name) { commit(url, name); });
        dialog->open();
        editor = dialog;
    }
    m_renaming = true;
    // The editor ends by committing or cancelling; either way the keys come back.
    connect(editor, &QObject::destroyed, this, [this] { m_renaming = false; });
}

void FileOpsController::commitRename(const FilePath& url, const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return;
    selectWhenShown({url.parent().child(trimmed)});
    m_operations->rename(url, trimmed.toUtf8(), m_state->undoStack());
}

void FileOpsController::newFolder()
{
    if (!canCreateHere())
        return;
    QPointer<PaneState> target = pane();
    m_operations->newFolder(target->url(), m_state->undoStack(), [target](const FilePath& made) {
        if (!target)
            return;
        target->setPendingSelection({made});
        target->setPendingRename(made);
        target->reload();
    });
}

void FileOpsController::duplicateSelection()
{
    m_operations->duplicate(selection(), m_state->undoStack());
}

void FileOpsController::putBackSelection()
{
    if (canPutBack())
        m_operations->putBack(selection(), m_state->undoStack());
}

void FileOpsController::compressSelection()
{
    if (canActOnSelection() && canCreateHere())
        m_operations->compress(selection(), m_state->undoStack());
}

void FileOpsController::extractSelection()
{
    if (canExtract() && canCreateHere())
        m_operations->extract(selection(), m_state->undoStack());
}

void FileOpsController::tidyUp()
{
    if (!canCreateHere())
        return;
    const FilePath folder = pane()->url();
    auto* box = new QMessageBox(QMessageBox::Question, QStringLiteral("Tidy Up Folder…"),
                                QStringLiteral("Tidy up “%1”?").arg(folder.fileName()), QMessageBox::Cancel, m_window);
    box->setInformativeText(QStringLiteral("Folders, hidden files and downloads in progress stay put. You can undo this."));
    QPushButton* tidy = box->addButton(QStringLiteral("Tidy Up"), QMessageBox::AcceptRole);
    box->setDefaultButton(tidy);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    connect(box, &QMessageBox::finished, this, [this, box, tidy, folder] {
        if (box->clickedButton() == static_cast<QAbstractButton*>(tidy))
            m_operations->tidyUp(folder, m_state->undoStack());
    });
    box->open();
}

void FileOpsController::undo()
{
    if (m_state->undoStack()->canUndo())
        m_state->undoStack()->undo();
}

void FileOpsController::redo()
{
    if (m_state->undoStack()->canRedo())
        m_state->undoStack()->redo();
}

void FileOpsController::selectWhenShown(const QList<FilePath>& items)
{
    pane()->setPendingSelection(QSet<FilePath>(items.begin(), items.end()));
}

void FileOpsController::fillContextMenu(QMenu* menu)
{
    auto add = [menu](const QString& title, const QString& shortcut, bool enabled, auto slot) {
        QAction* action = menu->addAction(title, slot);
        if (!shortcut.isEmpty())
            action->setShortcut(QKeySequence(shortcut));
        action->setEnabled(enabled);
    };
    const bool inTrash = pane()->listing() && pane()->listing()->kind == Listing::Kind::trash;
    if (inTrash) {
        add(QStringLiteral("Put Back"), {}, canPutBack(), [this] { putBackSelection(); });
        return;
    }
    add(QStringLiteral("New Folder"), QStringLiteral("Ctrl+Shift+N"), canCreateHere(), [this] { newFolder(); });
    menu->addSeparator();
    add(QStringLiteral("Rename"), QStringLiteral("F2"), canActOnSelection() && selection().size() == 1, [this] { beginRename(); });
    add(QStringLiteral("Duplicate"), QStringLiteral("Ctrl+D"), canActOnSelection(), [this] { duplicateSelection(); });
    add(QStringLiteral("Compress to Zip"), {}, canActOnSelection() && canCreateHere(), [this] { compressSelection(); });
    add(QStringLiteral("Extract Here"), {}, canExtract() && canCreateHere(), [this] { extractSelection(); });
    menu->addSeparator();
    add(QStringLiteral("Cut"), QStringLiteral("Ctrl+X"), canActOnSelection(), [this] { copySelection(true); });
    add(QStringLiteral("Copy"), QStringLiteral("Ctrl+C"), canActOnSelection(), [this] { copySelection(false); });
    add(QStringLiteral("Paste"), QStringLiteral("Ctrl+V"), canPaste(), [this] { paste(); });
    menu->addSeparator();
    add(QStringLiteral("Move to Trash"), QStringLiteral("Ctrl+Del"), canActOnSelection(), [this] { trashSelection(); });
    add(QStringLiteral("Tidy Up Folder…"), {}, canCreateHere(), [this] { tidyUp(); });
}

} // namespace orwick
