#include "fileops/OutsideMoves.h"

#include "fileops/FileOperations.h"
#include "fileops/LinkUpdater.h"
#include "fileops/OperationTexts.h"
#include "notes/NoteFile.h"

#include <QMimeDatabase>
#include <sys/stat.h>

namespace orwick {

namespace {
constexpr qint64 kEngineMemoryMs = 10000; // how long a move of the engine's is recognised
constexpr int kCookiesKept = 64;
} // namespace

OutsideMoves::OutsideMoves(FileOperations* operations, LinkUpdater* updater, QObject* parent)
    : QObject(parent)
    , m_operations(operations)
    , m_updater(updater)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setInterval(kSettleMs);
    connect(&m_timer, &QTimer::timeout, this, &OutsideMoves::settle);
    connect(operations, &FileOperations::itemsMoved, this, [this](const QList<FileMove>& moves) {
        for (const FileMove& move : moves)
            m_engineMoves.append({move, m_clock.elapsed()});
    });
}

OutsideMoves& OutsideMoves::shared()
{
    static OutsideMoves* instance = new OutsideMoves(&FileOperations::shared(), &LinkUpdater::shared(), &FileOperations::shared());
    return *instance;
}

void OutsideMoves::observe(quint32 cookie, const FilePath& path, bool arrived)
{
    if (cookie == 0 || m_pairedCookies.contains(cookie))
        return;
    if (!arrived) {
        m_departed.insert(cookie, path);
        return;
    }
    const auto departed = m_departed.constFind(cookie);
    if (departed == m_departed.constEnd())
        return; // came from a folder nobody shows
    const FileMove move{*departed, path};
    m_departed.erase(departed);
    m_pairedCookies.append(cookie);
    if (m_pairedCookies.size() > kCookiesKept)
        m_pairedCookies.removeFirst();
    if (move.from == move.to || !isLinkable(move))
        return;
    m_pending.append(move);
    m_timer.start();
}

bool OutsideMoves::isLinkable(const FileMove& move)
{
    const QByteArray from = move.from.fileNameBytes();
    const QByteArray to = move.to.fileNameBytes();
    if (from.startsWith('.') || to.startsWith('.') || from.endsWith('~') || to.endsWith('~'))
        return false;
    struct stat st {};
    if (::lstat(move.to.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        return true;
    if (notefile::isNote(move.from) && notefile::isNote(move.to))
        return true;
    static const QMimeDatabase mimes;
    return mimes.mimeTypeForFile(move.from.fileName(), QMimeDatabase::MatchExtension).name().startsWith(u"image/")
           && mimes.mimeTypeForFile(move.to.fileName(), QMimeDatabase::MatchExtension).name().startsWith(u"image/");
}

void OutsideMoves::settle()
{
    if (m_operations && !m_operations->isIdle()) {
        m_timer.start(); // the engine's own move may not have reported yet
        return;
    }
    const qint64 now = m_clock.elapsed();
    m_engineMoves.removeIf([now](const auto& entry) { return now - entry.second > kEngineMemoryMs; });
    QList<FileMove> outside;
    for (const FileMove& move : std::as_const(m_pending)) {
        const bool ours = std::any_of(m_engineMoves.cbegin(), m_engineMoves.cend(), [&](const auto& entry) {
            return entry.first.from == move.from || entry.first.to == move.to;
        });
        if (!ours && !outside.contains(move))
            outside.append(move);
    }
    m_pending.clear();
    if (outside.isEmpty() || !LinkUpdater::isEnabled())
        return;
    Q_EMIT offered(outside, offerText(outside));
}

QString OutsideMoves::offerText(const QList<FileMove>& moves)
{
    if (moves.size() == 1)
        return QStringLiteral("Update links to %1?").arg(quoted(moves.first().to.fileName()));
    return QStringLiteral("Update links to %1?").arg(itemCount(moves.size()));
}

void OutsideMoves::accept(const QList<FileMove>& moves, QUndoStack* undo)
{
    if (m_updater)
        m_updater->filesMoved(moves, undo);
}

} // namespace orwick

#include "moc_OutsideMoves.cpp"
