#include "commands/PathCompletion.h"

#include "base/FuzzyMatch.h"
#include "base/NaturalCompare.h"
#include "platform/DirectoryReader.h"

#include <algorithm>
#include <dirent.h>

namespace orwick {
namespace {

const QString kGoToSymbol = QStringLiteral("arrow.turn.down.right");

PaletteItem goToItem(const FilePath& path, PaletteItem::Kind kind)
{
    PaletteItem item = pathItem(path, kind);
    item.title = QStringLiteral("Go to ") + path.abbreviated();
    item.subtitle.clear();
    item.symbol = kGoToSymbol;
    return item;
}

} // namespace

FilePath PathCompletion::resolve(const QString& typed) const
{
    if (typed.isEmpty())
        return m_base;
    if (typed.startsWith(QLatin1Char('/')) || typed == QLatin1StringView("~") || typed.startsWith(QLatin1StringView("~/")))
        return FilePath::fromText(typed);
    return FilePath::fromNative(m_base.native() + '/' + typed.toUtf8());
}

PathCompletion::Split PathCompletion::split(const QString& typed)
{
    const qsizetype slash = typed.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return {QString(), typed};
    return {typed.left(slash + 1), typed.mid(slash + 1)};
}

const std::vector<PathCompletion::Child>& PathCompletion::foldersIn(const FilePath& folder)
{
    if (folder == m_listed)
        return m_folders;
    m_listed = folder;
    m_folders.clear();
    const auto handle = DirectoryHandle::open(folder);
    std::vector<DirEntry> entries;
    if (!handle || !handle->readEntries(entries))
        return m_folders; // an unreadable folder offers nothing to complete
    for (const DirEntry& entry : entries) {
        bool isDirectory = entry.type == DT_DIR;
        if (entry.type == DT_LNK || entry.type == DT_UNKNOWN) {
            const auto stat = statAt(handle->fd(), entry.name.constData(), FollowLinks::yes);
            isDirectory = stat && stat->isDirectory();
        }
        if (isDirectory)
            m_folders.push_back({displayName(entry.name), entry.name});
    }
    std::sort(m_folders.begin(), m_folders.end(),
              [](const Child& a, const Child& b) { return naturalCompare(a.name, b.name) < 0; });
    return m_folders;
}

std::vector<const PathCompletion::Child*> PathCompletion::matches(const Split& parts, const FilePath& parent)
{
    const bool wantsHidden = parts.component.startsWith(QLatin1Char('.'));
    const FuzzyQuery query(parts.component);
    FuzzyCandidateBuffer buffer;
    std::vector<std::pair<int, const Child*>> scored;
    for (const Child& child : foldersIn(parent)) {
        if (!wantsHidden && child.name.startsWith(QLatin1Char('.')))
            continue;
        if (const auto score = FuzzyMatch::score(query, buffer.prepare(child.name)))
            scored.push_back({*score, &child});
    }
    std::stable_sort(scored.begin(), scored.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<const Child*> result;
    result.reserve(scored.size());
    for (const auto& [score, child] : scored)
        result.push_back(child);
    return result;
}

QList<PaletteItem> PathCompletion::rows(const QString& typed)
{
    QList<PaletteItem> rows;
    const FilePath full = resolve(typed);
    if (const auto stat = statPath(full, FollowLinks::yes)) {
        rows.append(goToItem(full, stat->isDirectory() ? PaletteItem::Kind::folder : PaletteItem::Kind::file));
    } else {
        PaletteItem missing;
        missing.id = QStringLiteral("missing:") + full.text();
        missing.kind = PaletteItem::Kind::folder;
        missing.title = QStringLiteral("Nothing at “%1”").arg(full.abbreviated());
        missing.subtitle = QStringLiteral("No folder or file has this path");
        missing.symbol = QStringLiteral("exclamationmark.triangle");
        missing.isEnabled = false;
        rows.append(missing);
    }

    const Split parts = split(typed);
    const FilePath parent = resolve(parts.parentText);
    for (const Child* child : matches(parts, parent)) {
        if (rows.size() >= kMaxRows)
            break;
        const FilePath path = parent.child(QByteArrayView(child->bytes));
        if (path != full)
            rows.append(goToItem(path, PaletteItem::Kind::folder));
    }
    return rows;
}

std::optional<QString> PathCompletion::complete(const QString& typed)
{
    const Split parts = split(typed);
    if (parts.component.isEmpty())
        return std::nullopt;
    const auto found = matches(parts, resolve(parts.parentText));
    if (found.empty())
        return std::nullopt;
    return parts.parentText + found.front()->name + QLatin1Char('/');
}

} // namespace orwick
