// LinkUpdater's object: follows the engine's moves, plans off the interface thread and hands
// the edits to the engine as one "Update Links" step.

#include "fileops/LinkUpdater.h"

#include "app/Settings.h"
#include "async/Background.h"
#include "fileops/FileOperations.h"

#include <algorithm>

namespace orwick {

namespace {
const QString kSettingKey = QStringLiteral("updateLinksOnMove");
} // namespace

LinkUpdater::LinkUpdater(FileOperations* operations, QObject* parent)
    : QObject(parent)
    , m_operations(operations)
{
    connect(operations, &FileOperations::itemsRelocated, this,
            [this](const QList<FileMove>& moves, QUndoStack* undo) { filesMoved(moves, undo); });
}

LinkUpdater& LinkUpdater::shared()
{
    static LinkUpdater* instance = new LinkUpdater(&FileOperations::shared(), &FileOperations::shared());
    return *instance;
}

bool LinkUpdater::isEnabled()
{
    return readSettingsBool(*openSettings(), kSettingKey, true);
}

void LinkUpdater::setEnabled(bool on)
{
    auto settings = openSettings();
    settings->setValue(kSettingKey, on);
    settings->sync();
}

void LinkUpdater::done(LinkUpdateCount count, const Finished& finished)
{
    if (finished)
        finished(count);
    Q_EMIT linksUpdated(count);
}

void LinkUpdater::filesMoved(const QList<FileMove>& given, QUndoStack* undo, Finished finished)
{
    // What comes back from the Trash had no links left pointing at it there. A batch of
    // thousands that has none is kept as it came, not copied.
    const auto fromTrash = [](const FileMove& move) {
        return move.from.native().contains("/Trash/files/") || move.from.native().contains("/.Trash-");
    };
    QList<FileMove> moves = given;
    if (std::any_of(given.begin(), given.end(), fromTrash))
        moves.removeIf(fromTrash);
    if (moves.isEmpty() || !isEnabled()) {
        done({}, finished);
        return;
    }
    QPointer<QUndoStack> stack(undo);
    runInBackground(this, [moves]() { return plan(moves); },
                    [this, moves, stack, finished = std::move(finished)](Plan planned) {
                        if (planned.edits.isEmpty()) {
                            done({0, planned.skipped}, finished);
                            return;
                        }
                        apply(planned, moves, stack, finished);
                    });
}

void LinkUpdater::apply(const Plan& plan, const QList<FileMove>& moves, QUndoStack* undo, Finished finished)
{
    if (!m_operations || plan.edits.isEmpty()) {
        done({0, plan.skipped}, finished);
        return;
    }
    const FilePath root = vaultOf(moves);
    QList<FileOperations::Rewrite> rewrites;
    rewrites.reserve(plan.edits.size());
    for (const Edit& edit : plan.edits) {
        rewrites.append({edit.note, [edit, moves, root](const QByteArray& contents) -> Result<QByteArray> {
                             if (contents == edit.oldBytes)
                                 return edit.newBytes; // as planned
                             // Edited again from what the note holds now, so a change made
                             // since it was planned is kept.
                             return rewriteBytes(contents, edit.oldNote, edit.note, moves, root).value_or(contents);
                         }});
    }
    FileOperations::RewriteTexts texts;
    texts.title = QStringLiteral("Updating links in %1 notes").arg(rewrites.size());
    texts.actionName = QStringLiteral("Update Links");
    texts.done = QStringLiteral("Updated links in");
    texts.counted = QStringLiteral("note");
    texts.icon = QStringLiteral("link");
    const int skipped = plan.skipped;
    QPointer<LinkUpdater> guard(this);
    m_operations->rewriteFiles(std::move(rewrites), texts, undo, [guard, finished, skipped](const QList<FilePath>& written) {
        if (guard)
            guard->done({int(written.size()), skipped}, finished);
        else if (finished)
            finished({int(written.size()), skipped});
    });
}

} // namespace orwick

#include "moc_LinkUpdater.cpp"
