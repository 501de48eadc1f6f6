#include "search/QuerySearch.h"

#include "places/TagList.h"
#include "platform/UniqueFd.h"
#include "platform/Xattr.h"
#include "search/SearchRoots.h"

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::QuerySearch {

namespace {

// Types whose bytes are never text: their contents are not searched.
bool isBinaryCategory(FileCategory category)
{
    switch (category) {
    case FileCategory::image:
    case FileCategory::video:
    case FileCategory::audio:
    case FileCategory::pdf:
    case FileCategory::archive:
    case FileCategory::diskImage:
    case FileCategory::app:
    case FileCategory::package:
    case FileCategory::folder: return true;
    default: return false;
    }
}

QString lowerExtension(const QByteArray& name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return {};
    return QString::fromUtf8(name.mid(dot + 1)).toLower();
}

} // namespace

bool fileContains(int folderFd, const QByteArray& name, const TextNeedle& needle, qint64 limit)
{
    const int fd = openat(folderFd, name.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return false;
    const UniqueFd file(fd);
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size > limit || st.st_size == 0)
        return false;
    thread_local std::unique_ptr<char[]> buffer;
    thread_local qint64 capacity = 0;
    const qint64 want = st.st_size;
    if (capacity < want) {
        capacity = std::max<qint64>(want, 65536);
        buffer.reset(new char[size_t(capacity)]);
    }
    qint64 have = 0;
    while (have < want) {
        const ssize_t n = ::read(fd, buffer.get() + have, size_t(want - have));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        have += n;
        if (have == n && looksBinary(QByteArrayView(buffer.get(), have)))
            return false;
    }
    const QByteArrayView content(buffer.get(), have);
    return !looksBinary(content) && needle.inContent(content);
}

std::vector<FilePath> roots(const SearchQuery& query)
{
    if (query.scope == SearchQuery::Scope::mac)
        return SearchRoots::homeAndDrives();
    return query.folder.isEmpty() ? std::vector<FilePath>{} : std::vector<FilePath>{query.folder};
}

SearchWalker::Test makeTest(const SearchQuery& query, const Options& options)
{
    auto needle = std::make_shared<const TextNeedle>(query.text);
    const std::optional<Timestamp> earliest = SearchQuery::since(query.changed, options.now);
    const SearchQuery::Kind kind = query.kind;
    const bool contents = options.contents && !needle->isEmpty();
    return [needle, earliest, kind, contents](const SearchCandidate& candidate) {
        const bool isFolder = candidate.isFolder();
        FileCategory category = FileCategory::other;
        const bool needsCategory = kind != SearchQuery::Kind::any || contents;
        QString extension;
        auto categoryOf = [&] {
            extension = lowerExtension(candidate.name());
            return categorize(extension, isFolder, false);
        };
        const bool nameHit = needle->inName(candidate.name());
        if (!nameHit && (!contents || isFolder))
            return false;
        if (needsCategory)
            category = categoryOf();
        if (!SearchQuery::kindMatches(kind, category, isFolder, extension))
            return false;
        if (earliest) {
            const auto& st = candidate.stat();
            if (!st || st->modifiedMs() < *earliest)
                return false;
        }
        if (nameHit)
            return true;
        return !isBinaryCategory(category) && candidate.isRegularFile()
            && fileContains(candidate.folderFd(), candidate.name(), *needle);
    };
}

qint64 run(const SearchQuery& query, const Options& options, const SearchWalker::Sink& sink, const CancelFlag& cancel)
{
    if (!query.isRunnable())
        return 0;
    SearchWalker::Options walk;
    walk.roots = roots(query);
    walk.recursive = query.scope != SearchQuery::Scope::here;
    walk.showHidden = options.showHidden;
    walk.makeItems = options.makeItems;
    walk.threads = options.threads;
    walk.limit = options.limit;
    return SearchWalker::run(walk, makeTest(query, options), sink, cancel);
}

bool tagsContain(QByteArrayView tags, const QString& tag) { return TagList::parse(tags).contains(tag); }

qint64 runTag(const QString& tag, const FilePath& root, bool showHidden, const SearchWalker::Sink& sink, const CancelFlag& cancel)
{
    SearchWalker::Options walk;
    walk.roots = {root};
    walk.showHidden = showHidden;
    return SearchWalker::run(walk, [tag](const SearchCandidate& candidate) {
        const auto tags = xattr::get(candidate.path(), xattr::tags);
        return tags && tagsContain(*tags, tag);
    }, sink, cancel);
}

} // namespace orwick::QuerySearch
