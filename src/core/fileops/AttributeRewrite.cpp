// ChangeRunner's attribute rewrites: one extended attribute of a file (the properties of a file
// that isn't a note) replaced by an edit of its value, and the exact old value (or its absence)
// written back on undo while the file still carries what the edit wrote.

#include "fileops/FileChange.h"
#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"
#include "platform/Xattr.h"

#include <cerrno>

namespace orwick {

namespace {

QString refusal(const QString& verb, const FilePath& file, int error)
{
    const QString reason = error == ENOTSUP ? QStringLiteral("that disk doesn’t keep properties")
        : error == EROFS                    ? QStringLiteral("it is on a read-only disk")
        : error == EACCES || error == EPERM ? QStringLiteral("it is read-only")
                                            : errorReason(error);
    return QStringLiteral("Couldn’t %1 %2: %3.").arg(verb, quoted(file.fileName()), reason);
}

} // namespace

bool ChangeRunner::rewriteAttribute(const FilePath& file, const QByteArray& name, const Rewrite& edit)
{
    const QString verb = QStringLiteral("change");
    const xattr::Reading now = xattr::read(file, name.constData());
    if (now.error == ENOENT) {
        ++m_report.skipped;
        return false;
    }
    if (now.error) {
        fail(refusal(verb, file, now.error));
        return false;
    }
    const auto edited = edit(now.value.value_or(QByteArray()));
    if (!edited) {
        fail(edited.error());
        return false;
    }
    const std::optional<QByteArray> after = edited->isEmpty() ? std::nullopt : std::optional(*edited);
    if (after == now.value)
        return true;
    if (const int error = xattr::write(file, name.constData(), after)) {
        if (error == ENOENT)
            ++m_report.skipped;
        else
            fail(refusal(verb, file, error));
        return false;
    }
    FileChange change{FileChange::Kind::attributeRewritten, file, {}, {}};
    change.attribute = name;
    change.attributeBefore = now.value;
    change.attributeAfter = after;
    m_report.changes.push_back(std::move(change));
    return true;
}

void ChangeRunner::rewriteAttributeBack(const FileChange& change, bool forward)
{
    const std::optional<QByteArray>& expected = forward ? change.attributeBefore : change.attributeAfter;
    const std::optional<QByteArray>& wanted = forward ? change.attributeAfter : change.attributeBefore;
    const QString verb = forward ? QStringLiteral("change") : QStringLiteral("change back");
    const xattr::Reading now = xattr::read(change.from, change.attribute.constData());
    if (now.error == ENOENT) {
        ++m_report.skipped;
        return;
    }
    if (now.error) {
        fail(refusal(verb, change.from, now.error));
        return;
    }
    if (now.value == wanted)
        return;
    if (now.value != expected) {
        // Another program's change since wins; it is not written over.
        fail(QStringLiteral("Couldn’t %1 %2: it changed since.").arg(verb, quoted(change.from.fileName())));
        return;
    }
    if (const int error = xattr::write(change.from, change.attribute.constData(), wanted))
        fail(refusal(verb, change.from, error));
}

} // namespace orwick
