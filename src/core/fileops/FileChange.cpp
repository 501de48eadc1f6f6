#include "fileops/FileChange.h"

#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "fileops/RenameSteps.h"
#include "fileops/UniqueName.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "platform/Trash.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

QString sentence(const QString& verb, const FilePath& item, const QString& reason)
{
    return QStringLiteral("Couldn’t %1 %2: %3.").arg(verb, quoted(item.fileName()), reason);
}

// The path itself when free, else the next free "name 2" beside it.
FilePath freePath(const FilePath& wanted) { return uniqueURL(wanted, false); }

} // namespace

bool ChangeRunner::isCancelled()
{
    if (m_progress.isCancelled())
        m_report.cancelled = true;
    return m_report.cancelled;
}

void ChangeRunner::keepNotes(const CopyResult& result)
{
    m_report.notes += result.notes;
    m_report.leftOut += result.leftOut;
    m_report.attributesLost += result.attributesLost;
    m_report.leftInPlace += result.leftInPlace;
}

bool ChangeRunner::copy(const FilePath& from, const FilePath& to)
{
    const CopyResult result = copyItem(from, to, m_progress);
    keepNotes(result);
    switch (result.outcome) {
    case CopyResult::Outcome::done:
        m_report.changes.push_back({FileChange::Kind::copied, from, to, {}});
        rememberMadeState(m_report.changes.back());
        return true;
    case CopyResult::Outcome::vanished:
        ++m_report.skipped;
        return false;
    case CopyResult::Outcome::cancelled:
        m_report.cancelled = true;
        return false;
    case CopyResult::Outcome::failed:
        fail(sentence(QStringLiteral("copy"), from, result.reason));
        return false;
    }
    return false;
}

bool ChangeRunner::move(const FilePath& from, const FilePath& to, const QString& verb)
{
    MoveKind how = MoveKind::renamed;
    const CopyResult result = moveItem(from, to, m_progress, &how);
    keepNotes(result);
    if (result.ok()) {
        m_report.changes.push_back({FileChange::Kind::moved, from, to, {}});
        m_report.moves.append({from, to});
        return true;
    }
    if (result.outcome == CopyResult::Outcome::vanished) {
        ++m_report.skipped;
        return false;
    }
    if (result.outcome == CopyResult::Outcome::cancelled) {
        m_report.cancelled = true;
        return false;
    }
    // A copy across volumes whose original could not be removed is still a copy to undo.
    if (how == MoveKind::copied && pathExists(to) && pathExists(from)) {
        m_report.changes.push_back({FileChange::Kind::copied, from, to, {}});
        rememberMadeState(m_report.changes.back());
    }
    fail(sentence(verb, from, result.reason));
    return false;
}

std::optional<FilePath> ChangeRunner::parkInTrash(const FilePath& item)
{
    const auto place = trash::trashItem(item);
    if (!place) {
        if (!pathExists(item))
            ++m_report.skipped;
        else
            fail(sentence(QStringLiteral("move"), item, QStringLiteral("it can’t go to the Trash: ") + place.error()));
        return std::nullopt;
    }
    m_report.trashLogAdded.append({*place, item});
    return *place;
}

bool ChangeRunner::trash(const FilePath& item)
{
    const auto place = parkInTrash(item);
    if (place)
        m_report.changes.push_back({FileChange::Kind::trashed, item, *place, {}});
    return place.has_value();
}

bool ChangeRunner::takeFromTrash(const FilePath& inTrash, const FilePath& to, bool record)
{
    MoveKind how = MoveKind::renamed;
    const CopyResult result = moveItem(inTrash, to, m_progress, &how);
    if (!result.ok()) {
        if (result.outcome == CopyResult::Outcome::vanished)
            fail(QStringLiteral("Couldn’t put back %1: it is no longer in the Trash.").arg(quoted(to.fileName())));
        else if (result.outcome != CopyResult::Outcome::cancelled)
            fail(QStringLiteral("Couldn’t put back %1: %2.").arg(quoted(to.fileName()), result.reason));
        return false;
    }
    trash::removeInfo(inTrash);
    m_report.trashLogRemoved.append(inTrash);
    if (record)
        m_report.changes.push_back({FileChange::Kind::restored, inTrash, to, {}});
    return true;
}

bool ChangeRunner::putBack(const FilePath& inTrash, const FilePath& to) { return takeFromTrash(inTrash, to, true); }

bool ChangeRunner::makeFolder(const FilePath& path)
{
    if (::mkdir(path.c_str(), 0755) != 0) {
        fail(QStringLiteral("Couldn’t make the folder %1: %2.").arg(quoted(path.fileName()), errorReason(errno)));
        return false;
    }
    m_report.changes.push_back({FileChange::Kind::madeFolder, {}, path, {}});
    return true;
}

std::optional<FilePath> ChangeRunner::makeLink(const FilePath& target, const FilePath& wanted)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        const FilePath at = freePath(wanted);
        if (::symlink(target.c_str(), at.c_str()) == 0)
            return at;
        if (errno != EEXIST)
            break;
    }
    fail(sentence(QStringLiteral("make a link to"), target, errorReason(errno)));
    return std::nullopt;
}

bool ChangeRunner::link(const FilePath& target, const FilePath& wanted)
{
    const auto at = makeLink(target, wanted);
    if (at)
        m_report.changes.push_back({FileChange::Kind::linked, target, *at, {}});
    return at.has_value();
}

void ChangeRunner::removeLink(const FileChange& change)
{
    // The link is taken aside first, so that what is checked is what gets removed: something
    // put in its place meanwhile is never removed.
    const FilePath aside = temporarySibling(change.to, "unlink");
    if (!renameNoReplace(change.to, aside)) {
        if (errno == ENOENT)
            ++m_report.skipped; // already gone: nothing to undo
        else
            fail(sentence(QStringLiteral("remove the link"), change.to, errorReason(errno)));
        return;
    }
    const auto pointsTo = readLinkAt(AT_FDCWD, aside.c_str());
    if (pointsTo && *pointsTo == change.from.native() && ::unlink(aside.c_str()) == 0)
        return;
    const int error = errno;
    if (!renameNoReplace(aside, change.to))
        renameNoReplace(aside, freePath(change.to));
    fail(sentence(QStringLiteral("remove the link"), change.to,
                  pointsTo && *pointsTo != change.from.native() ? QStringLiteral("it was changed after it was made")
                  : pointsTo                                    ? errorReason(error)
                                                                : QStringLiteral("it is no longer a link")));
}

void ChangeRunner::recordCreated(const FilePath& path)
{
    m_report.changes.push_back({FileChange::Kind::created, {}, path, {}});
    rememberMadeState(m_report.changes.back());
}

void ChangeRunner::moveInTwoPhases(const std::vector<FileChange*>& run, bool forward)
{
    // Each item goes straight to its place when that is free; only those whose place another
    // item of the run still holds (a → b, b → a) go aside first (see RenameSteps). A place taken
    // by something else since gives the free name beside it, and the record follows.
    QList<FileMove> moves;
    moves.reserve(qsizetype(run.size()));
    for (const FileChange* change : run)
        moves.append(forward ? FileMove{change->from, change->to} : FileMove{change->to, change->from});
    const std::vector<RenameStepResult> results = renameInSteps(moves, WhenNameTaken::takeNameBeside, m_progress);
    for (size_t i = 0; i < run.size(); ++i) {
        const FileMove& move = moves[qsizetype(i)];
        const RenameStepResult& result = results[i];
        const QString verb = forward ? QStringLiteral("move") : QStringLiteral("move back");
        switch (result.outcome) {
        case RenameStepResult::Outcome::renamed:
            m_report.moves.append({move.from, result.landed});
            (forward ? run[i]->to : run[i]->from) = result.landed;
            break;
        case RenameStepResult::Outcome::vanished:
            fail(sentence(verb, move.from, errorReason(ENOENT)));
            break;
        case RenameStepResult::Outcome::failed:
            fail(sentence(verb, move.from, result.reason));
            if (result.landed != move.from) { // its own place was taken meanwhile: it lies beside it
                m_report.moves.append({move.from, result.landed});
                (forward ? run[i]->from : run[i]->to) = result.landed;
            }
            break;
        case RenameStepResult::Outcome::notTried:
            break;
        }
    }
}

void ChangeRunner::undo(std::vector<FileChange>& changes)
{
    for (auto it = changes.rbegin(); it != changes.rend(); ++it) {
        FileChange& change = *it;
        switch (change.kind) {
        case FileChange::Kind::moved: {
            std::vector<FileChange*> run;
            for (; it != changes.rend() && it->kind == FileChange::Kind::moved; ++it)
                run.push_back(&*it);
            --it;
            moveInTwoPhases(run, false);
            break;
        }
        case FileChange::Kind::copied:
        case FileChange::Kind::created:
            // One changed since stays, as does one the Trash refused; redo then leaves it be.
            change.leftByUndo = !stillAsMade(change);
            if (change.leftByUndo)
                break;
            if (const auto place = parkInTrash(change.to))
                change.parked = *place;
            else
                change.leftByUndo = pathExists(change.to);
            break;
        case FileChange::Kind::madeFolder:
            ::rmdir(change.to.c_str()); // a folder that gained other items stays
            break;
        case FileChange::Kind::trashed: {
            const FilePath back = freePath(change.from);
            if (takeFromTrash(change.to, back, false))
                change.from = back;
            break;
        }
        case FileChange::Kind::restored:
            if (const auto place = parkInTrash(change.to))
                change.from = *place;
            break;
        case FileChange::Kind::linked:
            removeLink(change);
            break;
        case FileChange::Kind::tagged:
            rewriteTags(change, false);
            break;
        case FileChange::Kind::rewritten:
            rewriteContents(change, false);
            break;
        case FileChange::Kind::attributeRewritten:
            rewriteAttributeBack(change, false);
            break;
        case FileChange::Kind::accessChanged:
            rewriteAccess(change, false);
            break;
        case FileChange::Kind::replaced:
            swapVersions(change, false);
            break;
        }
    }
}

void ChangeRunner::redo(std::vector<FileChange>& changes)
{
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        FileChange& change = *it;
        switch (change.kind) {
        case FileChange::Kind::moved: {
            std::vector<FileChange*> run;
            for (; it != changes.end() && it->kind == FileChange::Kind::moved; ++it)
                run.push_back(&*it);
            --it;
            moveInTwoPhases(run, true);
            break;
        }
        case FileChange::Kind::copied:
            if (std::exchange(change.leftByUndo, false))
                break; // undo left the copy where it was: it is still there
            // The copy undo put in the Trash comes back; when the Trash was emptied, copy again.
            change.to = freePath(change.to);
            if (!change.parked.isEmpty() && pathExists(change.parked)) {
                if (takeFromTrash(change.parked, change.to, false)) {
                    change.parked = {};
                    rememberMadeState(change);
                }
            } else {
                const CopyResult result = copyItem(change.from, change.to, m_progress);
                if (result.ok())
                    rememberMadeState(change);
                else
                    fail(sentence(QStringLiteral("copy"), change.from, result.reason));
            }
            break;
        case FileChange::Kind::created:
            if (std::exchange(change.leftByUndo, false))
                break; // undo left it where it was
            if (change.parked.isEmpty()) {
                ++m_report.skipped; // it was gone before undo: nothing to bring back
                break;
            }
            change.to = freePath(change.to);
            if (takeFromTrash(change.parked, change.to, false)) {
                change.parked = {};
                rememberMadeState(change);
            }
            break;
        case FileChange::Kind::madeFolder:
            ::mkdir(change.to.c_str(), 0755);
            break;
        case FileChange::Kind::trashed:
            if (const auto place = parkInTrash(change.from))
                change.to = *place;
            break;
        case FileChange::Kind::restored:
            change.to = freePath(change.to);
            takeFromTrash(change.from, change.to, false);
            break;
        case FileChange::Kind::linked:
            if (const auto at = makeLink(change.from, change.to))
                change.to = *at;
            break;
        case FileChange::Kind::tagged:
            rewriteTags(change, true);
            break;
        case FileChange::Kind::rewritten:
            rewriteContents(change, true);
            break;
        case FileChange::Kind::attributeRewritten:
            rewriteAttributeBack(change, true);
            break;
        case FileChange::Kind::accessChanged:
            rewriteAccess(change, true);
            break;
        case FileChange::Kind::replaced:
            swapVersions(change, true);
            break;
        }
    }
}

QList<FilePath> pathsTouched(const std::vector<FileChange>& changes)
{
    QList<FilePath> paths;
    paths.reserve(qsizetype(changes.size()) * 2); // a move touches two; a batch has thousands
    for (const FileChange& change : changes) {
        switch (change.kind) {
        case FileChange::Kind::trashed:
            paths.append(change.from);
            break;
        case FileChange::Kind::restored:
            paths.append(change.to);
            break;
        case FileChange::Kind::copied:
        case FileChange::Kind::created:
        case FileChange::Kind::madeFolder:
        case FileChange::Kind::linked:
            paths.append(change.to);
            break;
        case FileChange::Kind::moved:
            paths.append(change.from);
            paths.append(change.to);
            break;
        case FileChange::Kind::replaced:
            paths.append(change.from); // a new file took its name
            break;
        case FileChange::Kind::tagged:
        case FileChange::Kind::rewritten:
        case FileChange::Kind::attributeRewritten:
        case FileChange::Kind::accessChanged:
            break; // names stay as they were
        }
    }
    return paths;
}

QList<FilePath> filesRewritten(const std::vector<FileChange>& changes)
{
    QList<FilePath> files;
    for (const FileChange& change : changes)
        if (change.kind == FileChange::Kind::rewritten || change.kind == FileChange::Kind::attributeRewritten
            || change.kind == FileChange::Kind::replaced)
            files.append(change.from);
    return files;
}

} // namespace orwick
