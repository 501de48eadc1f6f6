// FolderDiff: the sync plans and the words the compare panel shows.

#include "disktools/DiskNames.h"
#include "disktools/FolderDiff.h"

#include <QLocale>

namespace orwick::FolderDiff {

SyncPlan plan(const Result& result, const FilePath& left, const FilePath& right, SyncMode mode, const ModifiedTime& modified)
{
    SyncPlan plan;
    auto copy = [&plan](const FilePath& fromRoot, const FilePath& toRoot, const QByteArray& path, bool replacing) {
        const FilePath to = toRoot.child(QByteArrayView(path));
        plan.copies.append({fromRoot.child(QByteArrayView(path)), to});
        if (replacing)
            plan.replacing.append(to);
    };
    const bool toRight = mode.toRight;
    for (const Entry& entry : result.entries) {
        switch (entry.status) {
        case Status::same: break;
        case Status::onlyLeft:
        case Status::onlyRight: {
            const bool onLeft = entry.status == Status::onlyLeft;
            const FilePath& here = onLeft ? left : right;
            const FilePath& there = onLeft ? right : left;
            const bool towardsThere = onLeft == toRight; // the entry's side is the source side
            if (mode.kind == SyncMode::Kind::bothWays || towardsThere)
                copy(here, there, entry.path, false);
            else if (mode.kind == SyncMode::Kind::mirror)
                plan.toTrash.append(here.child(QByteArrayView(entry.path))); // extra on the target
            break;
        }
        case Status::changed:
            if (mode.kind == SyncMode::Kind::mirror) {
                copy(toRight ? left : right, toRight ? right : left, entry.path, true);
            } else if (mode.kind == SyncMode::Kind::bothWays) {
                const auto l = modified(left.child(QByteArrayView(entry.path)));
                const auto r = modified(right.child(QByteArrayView(entry.path)));
                if (l && r && *l > *r)
                    copy(left, right, entry.path, true);
                else if (l && r && *r > *l)
                    copy(right, left, entry.path, true);
            }
            break;
        }
    }
    return plan;
}

QString syncTitle(SyncMode mode, const FilePath& left, const FilePath& right)
{
    switch (mode.kind) {
    case SyncMode::Kind::copyMissing:
        return QStringLiteral("Copy what's missing to ") + (mode.toRight ? right : left).fileName();
    case SyncMode::Kind::bothWays: return QStringLiteral("Both ways, newer file wins");
    case SyncMode::Kind::mirror: return QStringLiteral("Mirror (extra files go to the Trash)");
    }
    return {};
}

namespace {

QString items(qsizetype count) { return count == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(QLocale().toString(qlonglong(count))); }

} // namespace

QString confirmation(SyncMode mode, const SyncPlan& plan, const FilePath& left, const FilePath& right)
{
    const QString target = (mode.toRight ? right : left).fileName();
    const QString source = (mode.toRight ? left : right).fileName();
    QString text;
    switch (mode.kind) {
    case SyncMode::Kind::copyMissing:
        text = QStringLiteral("Copy %1 missing from “%2” into it; nothing is overwritten or removed").arg(items(plan.copies.size()), target);
        break;
    case SyncMode::Kind::bothWays:
        text = QStringLiteral("Copy %1 across in both directions; where a file differs, the newer one replaces the older, which goes to the Trash")
                   .arg(items(plan.copies.size()));
        break;
    case SyncMode::Kind::mirror:
        text = QStringLiteral("Make “%1” the same as “%2”: copy %3 into it (files they replace go to the Trash) and move %4 that only “%1” has to the Trash")
                   .arg(target, source, items(plan.copies.size()), items(plan.toTrash.size()));
        break;
    }
    return text + QStringLiteral(". Undo puts everything back.");
}

QString summary(const Result& result)
{
    const qint64 onlyLeft = result.count(Status::onlyLeft);
    const qint64 onlyRight = result.count(Status::onlyRight);
    const qint64 changed = result.count(Status::changed);
    if (onlyLeft + onlyRight + changed == 0)
        return QStringLiteral("No differences: every file matches");
    QStringList parts;
    const QLocale locale;
    if (onlyLeft)
        parts << QStringLiteral("%1 only on the left").arg(locale.toString(onlyLeft));
    if (onlyRight)
        parts << QStringLiteral("%1 only on the right").arg(locale.toString(onlyRight));
    if (changed)
        parts << QStringLiteral("%1 changed").arg(locale.toString(changed));
    return parts.join(QStringLiteral(" · "));
}

QString entryDetail(const Entry& entry)
{
    if (entry.isFolder && entry.status != Status::changed)
        return entry.files == 1 ? QStringLiteral("folder, 1 file")
                                : QStringLiteral("folder, %1 files").arg(QLocale().toString(entry.files));
    auto size = [](const std::optional<qint64>& bytes) { return bytes ? byteCountText(*bytes) : QStringLiteral("folder"); };
    switch (entry.status) {
    case Status::onlyLeft: return size(entry.leftSize);
    case Status::onlyRight: return size(entry.rightSize);
    case Status::same: return size(entry.leftSize);
    case Status::changed:
        if (entry.leftSize && entry.rightSize && *entry.leftSize == *entry.rightSize)
            return size(entry.leftSize) + QStringLiteral(", contents differ");
        return size(entry.leftSize) + QStringLiteral(" → ") + size(entry.rightSize)
             + (entry.leftSize && entry.rightSize ? QStringLiteral(", contents differ") : QString());
    }
    return {};
}

QString partialNote(const Result& result, qint64 limit)
{
    return result.isPartial ? QStringLiteral(" (first %1 files)").arg(QLocale(QLocale::English).toString(limit)) : QString();
}

} // namespace orwick::FolderDiff
