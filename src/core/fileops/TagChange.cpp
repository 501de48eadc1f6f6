// ChangeRunner's tag changes: one tag added to or removed from a file's "user.xdg.tags", the
// other names kept, and the exact old value written back on undo.

#include "fileops/FileChange.h"
#include "fileops/OperationTexts.h"
#include "places/TagList.h"
#include "platform/ErrorText.h"
#include "platform/Xattr.h"

#include <cerrno>
#include <sys/stat.h>

namespace orwick {

namespace {

// Why the tags of `item` can't be read or written, to finish "Couldn’t tag “x”: …".
QString tagRefusal(int error, const FilePath& item)
{
    struct stat st {};
    if (error == EPERM && ::lstat(item.c_str(), &st) == 0 && S_ISLNK(st.st_mode))
        return QStringLiteral("a link can’t carry tags");
    switch (error) {
    case ENOTSUP: return QStringLiteral("that disk doesn’t keep tags");
    case ENOSPC:
    case E2BIG:
    case ERANGE: return QStringLiteral("there’s no room left for tags there");
    default: return errorReason(error);
    }
}

QString sentence(const QString& verb, const FilePath& item, int error)
{
    return QStringLiteral("Couldn’t %1 %2: %3.").arg(verb, quoted(item.fileName()), tagRefusal(error, item));
}

TagList listOf(const std::optional<QByteArray>& attribute) { return attribute ? TagList::parse(*attribute) : TagList(); }

} // namespace

bool ChangeRunner::changeTag(const FilePath& item, const QString& tag, bool adding)
{
    const QString verb = adding ? QStringLiteral("tag") : QStringLiteral("untag");
    const xattr::Reading now = xattr::read(item, xattr::tags);
    if (now.error == ENOENT) {
        ++m_report.skipped;
        return false;
    }
    if (now.error) {
        fail(sentence(verb, item, now.error));
        return false;
    }
    TagList tags = listOf(now.value);
    if (!(adding ? tags.add(tag) : tags.remove(tag)))
        return true; // already as asked
    const std::optional<QByteArray> after = tags.toAttribute();
    if (const int error = xattr::write(item, xattr::tags, after)) {
        if (error == ENOENT)
            ++m_report.skipped;
        else
            fail(sentence(verb, item, error));
        return false;
    }
    FileChange change{FileChange::Kind::tagged, item, {}, {}};
    change.attributeBefore = now.value;
    change.attributeAfter = after;
    m_report.changes.push_back(std::move(change));
    m_report.retagged.append(item);
    return true;
}

void ChangeRunner::rewriteTags(const FileChange& change, bool forward)
{
    const std::optional<QByteArray>& expected = forward ? change.attributeBefore : change.attributeAfter;
    const std::optional<QByteArray>& wanted = forward ? change.attributeAfter : change.attributeBefore;
    const QString verb = QStringLiteral("change the tags of");
    const xattr::Reading now = xattr::read(change.from, xattr::tags);
    if (now.error == ENOENT) {
        ++m_report.skipped;
        return;
    }
    if (now.error) {
        fail(sentence(verb, change.from, now.error));
        return;
    }
    std::optional<QByteArray> value = wanted;
    if (now.value != expected) {
        // Another program changed the tags since: only this step's own difference is taken
        // back (or made again), so its changes stay.
        const TagList from = listOf(expected);
        const TagList to = listOf(wanted);
        TagList current = listOf(now.value);
        for (const QString& name : from.names())
            if (!to.contains(name))
                current.remove(name);
        for (const QString& name : to.names())
            if (!from.contains(name))
                current.add(name);
        if (current == listOf(now.value))
            return;
        value = current.toAttribute();
    }
    if (const int error = xattr::write(change.from, xattr::tags, value)) {
        if (error == ENOENT)
            ++m_report.skipped;
        else
            fail(sentence(verb, change.from, error));
        return;
    }
    m_report.retagged.append(change.from);
}

} // namespace orwick
