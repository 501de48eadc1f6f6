#include "fileops/RenameSteps.h"

#include "base/PathParts.h"
#include "fileops/ItemCopier.h"
#include "fileops/UniqueName.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <utility>

#include <QHash>

namespace orwick {

namespace {

// Attempts at a free name beside a taken one, when other programs keep taking the one found.
constexpr int kAttemptsBeside = 8;

bool isAsciiLetter(char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }

// A move's paths cut into folder part (with its closing "/") and name, once for every look at
// them: a batch looks at thousands.
struct MoveParts {
    MoveParts(const FilePath& from, const FilePath& to)
    {
        const qsizetype fromStart = nameStart(from);
        const qsizetype toStart = nameStart(to);
        fromFolder = QByteArrayView(from.native()).first(fromStart);
        fromName = QByteArrayView(from.native()).sliced(fromStart);
        toFolder = QByteArrayView(to.native()).first(toStart);
        toName = QByteArrayView(to.native()).sliced(toStart);
    }
    explicit MoveParts(const FileMove& move) : MoveParts(move.from, move.to) {}
    QByteArrayView fromFolder;
    QByteArrayView fromName;
    QByteArrayView toFolder;
    QByteArrayView toName;
};

// True when two different names in one folder are one name but for letter case; such a rename
// goes through a temporary name, since a case-insensitive disk takes both for one item.
bool onlyLetterCaseChanges(const MoveParts& move)
{
    if (move.fromFolder != move.toFolder)
        return false;
    const QByteArrayView from = move.fromName;
    const QByteArrayView to = move.toName;
    bool ascii = true;
    for (const char c : from)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    for (const char c : to)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    if (!ascii)
        return displayName(from).compare(displayName(to), Qt::CaseInsensitive) == 0;
    if (from.size() != to.size())
        return false;
    for (qsizetype i = 0; i < from.size(); ++i) {
        const char a = from[i];
        const char b = to[i];
        if (a != b && !(isAsciiLetter(a) && (a ^ 0x20) == b))
            return false;
    }
    return true;
}

// Renames without replacing, relative to a descriptor of the folder when both names lie in one
// (kept open for the next rename in that folder), so the kernel walks the folder's path once.
class FolderRenamer {
public:
    bool rename(const FilePath& from, const FilePath& to) { return rename(from, to, MoveParts(from, to)); }
    bool rename(const FilePath& from, const FilePath& to, const MoveParts& parts)
    {
        if (parts.fromFolder != parts.toFolder || !openFolder(parts.fromFolder))
            return renameNoReplace(from, to);
        return ::renameat2(m_fd.get(), from.c_str() + parts.fromFolder.size(), m_fd.get(),
                           to.c_str() + parts.toFolder.size(), RENAME_NOREPLACE) == 0;
    }

private:
    bool openFolder(QByteArrayView folder)
    {
        if (m_fd.ok() && folder == m_folder)
            return true;
        m_folder = folder.toByteArray();
        const QByteArray path = folder.size() > 1 ? m_folder.chopped(1) : QByteArray("/");
        m_fd = UniqueFd(::open(path.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        return m_fd.ok();
    }

    QByteArray m_folder; // with its closing "/"
    UniqueFd m_fd;
};

// An item set aside in phase one: `temporary` is its name meanwhile, empty when it waits in place
// to cross to another disk.
struct Waiting {
    qsizetype index;
    FilePath temporary;
};

} // namespace

std::vector<RenameStepResult> renameInSteps(const QList<FileMove>& moves, WhenNameTaken whenTaken,
                                            CopyProgress& progress, const std::function<bool()>& stop)
{
    using Outcome = RenameStepResult::Outcome;
    const size_t count = size_t(moves.size());
    std::vector<RenameStepResult> results(count);
    FolderRenamer folders;
    std::vector<Waiting> waiting;
    const auto failedAt = [](const FileMove& move, int error) -> RenameStepResult {
        if (error == ENOENT && !pathExists(move.from))
            return {Outcome::vanished, {}, {}};
        const QString reason = error == ENOENT ? writeErrorReason(ENOENT, -1) : errorReason(error);
        return {Outcome::failed, move.from, reason};
    };

    // An item whose new name another item of the set still holds waits for that one to move
    // (a → b after b → c), unless that one waits too (a cycle): then it goes aside, which frees
    // its name for the one waiting on it. Which item holds a name is looked up only when a name
    // is found taken, so a set without such names builds no table.
    enum class State : char { pending, waitingForName, settled };
    std::vector<State> states(count, State::pending);
    std::vector<qsizetype> waiter(count, -1); // the item waiting for item i's name
    QHash<QByteArray, qsizetype> bySource;
    const auto holderOf = [&](const FilePath& name) -> qsizetype {
        if (bySource.isEmpty()) {
            bySource.reserve(qsizetype(count));
            for (qsizetype i = 0; i < moves.size(); ++i)
                bySource.insert(moves[i].from.native(), i);
        }
        return bySource.value(name.native(), -1);
    };
    const auto goAside = [&](qsizetype i) {
        const FileMove& move = moves[i];
        FilePath temporary = temporarySibling(move.from, "rename");
        if (folders.rename(move.from, temporary))
            waiting.push_back({i, std::move(temporary)});
        else
            results[size_t(i)] = failedAt(move, errno);
    };
    // Renames item `first`, then each item that was waiting for the name it freed.
    const auto renameFrom = [&](qsizetype first) {
        for (qsizetype i = first; i >= 0;) {
            const FileMove& move = moves[i];
            const MoveParts parts(move);
            states[size_t(i)] = State::settled;
            if (onlyLetterCaseChanges(parts)) {
                goAside(i);
            } else if (folders.rename(move.from, move.to, parts)) {
                results[size_t(i)] = {Outcome::renamed, move.to, {}};
            } else if (errno == EXDEV) {
                waiting.push_back({i, {}});
            } else if (errno != EEXIST && errno != ENOTEMPTY) {
                results[size_t(i)] = failedAt(move, errno);
            } else if (const qsizetype holder = holderOf(move.to);
                       holder >= 0 && holder != i && states[size_t(holder)] == State::pending && waiter[size_t(holder)] < 0) {
                states[size_t(i)] = State::waitingForName;
                waiter[size_t(holder)] = i;
                return;
            } else {
                goAside(i);
            }
            i = std::exchange(waiter[size_t(i)], -1);
        }
    };

    for (qsizetype i = 0; i < moves.size(); ++i) {
        if (stop && stop())
            break;
        if (states[size_t(i)] == State::pending)
            renameFrom(i);
    }

    for (const Waiting& wait : waiting) {
        const FileMove& move = moves[wait.index];
        RenameStepResult& result = results[size_t(wait.index)];
        if (wait.temporary.isEmpty()) {
            // To another disk: a copy and a removal (moveItem), onto a name that is free.
            const FilePath target = whenTaken == WhenNameTaken::takeNameBeside ? uniqueURL(move.to, false) : move.to;
            if (whenTaken == WhenNameTaken::fail && pathExists(target)) {
                result = {Outcome::failed, move.from, errorReason(EEXIST)};
                continue;
            }
            const CopyResult moved = moveItem(move.from, target, progress);
            if (moved.ok())
                result = {Outcome::renamed, target, {}};
            else if (moved.outcome == CopyResult::Outcome::vanished)
                result = {Outcome::vanished, {}, {}};
            else
                result = {Outcome::failed, move.from, moved.reason};
            continue;
        }
        if (folders.rename(wait.temporary, move.to)) {
            result = {Outcome::renamed, move.to, {}};
            continue;
        }
        int error = errno;
        if (whenTaken == WhenNameTaken::takeNameBeside && (error == EEXIST || error == ENOTEMPTY)) {
            for (int attempt = 0; attempt < kAttemptsBeside && result.outcome == Outcome::notTried; ++attempt) {
                const FilePath beside = uniqueURL(move.to, false);
                if (folders.rename(wait.temporary, beside))
                    result = {Outcome::renamed, beside, {}};
                else if (errno != EEXIST && errno != ENOTEMPTY)
                    break;
            }
            if (result.outcome == Outcome::renamed)
                continue;
            error = errno;
        }
        // Back to its old name; when that was taken meanwhile, beside it.
        result = {Outcome::failed, wait.temporary, errorReason(error)};
        if (folders.rename(wait.temporary, move.from)) {
            result.landed = move.from;
            continue;
        }
        for (int attempt = 0; attempt < kAttemptsBeside; ++attempt) {
            const FilePath beside = uniqueURL(move.from, false);
            if (folders.rename(wait.temporary, beside)) {
                result.landed = beside;
                break;
            }
        }
    }
    return results;
}

} // namespace orwick
