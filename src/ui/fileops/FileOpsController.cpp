#include "ui/fileops/FileOpsController.h"

#include "base/Formatting.h"
#include "fileops/OperationTexts.h"
#include "state/FileActions.h"
#include "ui/fileops/ConflictDialog.h"
#include "ui/fileops/DialogFocus.h"
#include "ui/fileops/FailureList.h"
#include "ui/fileops/InlineRename.h"
#include "ui/fileops/ProgressCard.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/ColumnsView.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"
#include "ui/window/ToastHost.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace orwick {

FileOpsController::FileOpsController(QWidget* window, WindowState* state, ToastHost* toasts, FileOperations* operations)
    : QObject(window), m_window(window), m_state(state), m_toasts(toasts)
{
    m_card = new ProgressCard(operations, window);
    // This window answers for the jobs its own commands started, and only for those.
    FileOperations::WindowHandlers handlers;
    handlers.resolveConflicts = [this](const FileOperations::ConflictQuestion& question, FileOperations::ConflictAnswer answer) {
        askConflict(m_window, question, std::move(answer));
    };
    handlers.reportErrors = [this](const OperationOutcome& outcome) { showOutcome(outcome); };
    handlers.announce = [this](const Toast& toast) { showToast(toast.text, toast.canUndo, {}); };
    operations->setWindowHandlers(state->undoStack(), this, std::move(handlers));
    // A toast's Undo belongs to the step it announced: once that step is undone some other way
    // (Ctrl+Z, the Edit menu) the button would undo the step before, so the toast goes.
    connect(state->undoStack(), &QUndoStack::indexChanged, this, [this](int index) {
        if (m_toastUndoIndex >= 0 && index != m_toastUndoIndex) {
            m_toastUndoIndex = -1;
            m_toasts->dismiss();
        }
    });
    connect(&state->files(), &FileActions::tidyUpRequested, this, &FileOpsController::confirmTidyUp);
    connect(&state->files(), &FileActions::emptyTrashRequested, this, &FileOpsController::confirmEmptyTrash);
}

bool FileOpsController::isRenaming() const { return m_state->files().isRenaming(); }

void FileOpsController::attach(PaneWidget* widget)
{
    m_panes.append(widget);
    PaneState* pane = widget->pane();
    // A new folder or file is renamed once the load that shows it has been drawn.
    connect(pane, &PaneState::renameRequested, this, [this, pane = QPointer<PaneState>(pane)](const FilePath& url) {
        QTimer::singleShot(0, this, [this, pane, url] {
            if (pane && !isRenaming())
                pane->setRenaming(url);
        });
    });
    connect(pane, &PaneState::renamingChanged, this, [this, pane] { showRename(pane); });
    connect(widget, &PaneWidget::filesDropped, &m_state->files(), &FileActions::drop);
}

PaneWidget* FileOpsController::widgetFor(const PaneState* pane) const
{
    for (const auto& widget : m_panes)
        if (widget && widget->pane() == pane)
            return widget;
    return nullptr;
}

void FileOpsController::showRename(PaneState* pane)
{
    PaneWidget* widget = widgetFor(pane);
    if (!pane->renaming() || m_editor || !widget)
        return;
    const FilePath url = *pane->renaming();
    FileActions* files = &m_state->files();
    auto commit = [files](const FilePath& item, const QString& name) { files->commitRename(item, name); };
    // The name is edited in place, in whichever view the pane shows.
    QWidget* editor = startNameEditor(widget, url, commit);
    if (!editor) { // the item isn't among the shown rows (filtered out): nothing to edit
        files->endRename();
        return;
    }
    m_editor = editor;
    // The editor ends by committing or cancelling; either way the file commands come back.
    connect(editor, &QObject::destroyed, files, &FileActions::endRename);
}

QWidget* FileOpsController::startNameEditor(PaneWidget* widget, const FilePath& url,
                                           std::function<void(const FilePath&, const QString&)> commit)
{
    switch (widget->pane()->viewMode()) {
    case ViewMode::grid: {
        // Under the picture, where the name is drawn.
        FileGridView* grid = widget->gridView();
        const int pictureBottom = 3 + 4 + grid->tileSize() + 2;
        const int lineHeight = grid->fontMetrics().height() + 6;
        return startInlineRename(grid, url, [pictureBottom, lineHeight](const QRect& tile) {
            return QRect(tile.left() + 2, tile.top() + pictureBottom, tile.width() - 4, lineHeight);
        }, std::move(commit));
    }
    case ViewMode::columns:
        return startInlineRename(widget->columnsView()->currentColumn(), url, [](const QRect& row) { return row.adjusted(24, 0, 0, 0); },
                                 std::move(commit));
    case ViewMode::table:
        return startInlineRename(widget->tableView(), url, [](const QRect& cell) { return cell.adjusted(24, 0, 0, 0); }, std::move(commit));
    case ViewMode::list: break;
    }
    return startInlineRename(widget->listView(), url, [](const QRect& cell) { return cell.adjusted(24, 0, 0, 0); }, std::move(commit));
}

void FileOpsController::showOutcome(const OperationOutcome& outcome)
{
    showToast(outcomeText(outcome), outcome.canUndo, outcome.errors.size() > 1 ? outcome.errors : QStringList());
}

void FileOpsController::showToast(const QString& text, bool canUndo, const QStringList& failures)
{
    QUndoStack* stack = m_state->undoStack();
    m_toastUndoIndex = canUndo ? stack->index() : -1;
    QList<ToastAction> actions;
    if (canUndo)
        actions.append({QStringLiteral("Undo"), [stack] { stack->undo(); }});
    if (!failures.isEmpty())
        actions.append({QStringLiteral("Show All"), [window = m_window, text, failures] {
                            if (window)
                                FailureList::showOver(window, text, failures);
                        }});
    m_toasts->show(text, actions);
}

void FileOpsController::confirmTidyUp(const FilePath& folder)
{
    auto* box = new QMessageBox(QMessageBox::Question, QStringLiteral("Tidy Up Folder…"),
                                QStringLiteral("Tidy up “%1”?").arg(folder.fileName()), QMessageBox::Cancel, m_window);
    box->setInformativeText(QStringLiteral("Folders, hidden files and downloads in progress stay put. You can undo this."));
    QPushButton* tidy = box->addButton(QStringLiteral("Tidy Up"), QMessageBox::AcceptRole);
    box->setDefaultButton(tidy);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    FileActions* files = &m_state->files();
    connect(box, &QMessageBox::finished, files, [files, box, tidy, folder] {
        if (box->clickedButton() == static_cast<QAbstractButton*>(tidy))
            files->tidyUp(folder);
    });
    returnKeyboardWhenClosed(box);
    box->open();
}

void FileOpsController::confirmEmptyTrash(const TrashContents& contents)
{
    auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Empty Trash…"),
                                QStringLiteral("Delete everything in the Trash for good?"), QMessageBox::Cancel, m_window);
    box->setObjectName(QStringLiteral("emptyTrashQuestion"));
    box->setInformativeText(QStringLiteral("%1 will be deleted. This frees %2 and can’t be undone.")
                                .arg(itemCount(contents.items.size()), formatByteCount(contents.bytes)));
    QPushButton* empty = box->addButton(QStringLiteral("Empty Trash"), QMessageBox::DestructiveRole);
    // It can't be undone: a Return pressed out of habit keeps everything.
    box->setDefaultButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    FileActions* files = &m_state->files();
    connect(box, &QMessageBox::finished, files, [files, box, empty, contents] {
        if (box->clickedButton() == static_cast<QAbstractButton*>(empty))
            files->emptyTrash(contents);
    });
    returnKeyboardWhenClosed(box);
    box->open();
}

} // namespace orwick
