#include "notes/NoteNames.h"

#include "notes/NoteFile.h"

#include <algorithm>

namespace orwick {

namespace {

// "Plan.md" → "Plan"; "pic.png" stays (only a note's extension goes).
QString withoutNoteExtension(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot > 0 && notefile::isNote(FilePath::fromNative("/" + name.toUtf8())))
        return name.left(dot);
    return name;
}

// A path in lower case without a note extension, for comparing with a wikilink's folders.
QString comparable(const QString& path) { return withoutNoteExtension(path).toLower(); }

qsizetype depth(const FilePath& path) { return path.native().count('/'); }

} // namespace

QString NoteNames::keyOfNote(const FilePath& note) { return withoutNoteExtension(note.fileName()).toLower(); }

QString NoteNames::keyOfName(const QByteArray& name)
{
    const QString text = QString::fromUtf8(name);
    return withoutNoteExtension(text.section(u'/', -1)).toLower();
}

void NoteNames::add(const FilePath& note)
{
    QList<FilePath>& notes = m_byKey[keyOfNote(note)];
    if (notes.contains(note))
        return;
    notes.append(note);
    ++m_count;
}

void NoteNames::remove(const FilePath& note)
{
    const auto found = m_byKey.find(keyOfNote(note));
    if (found == m_byKey.end() || !found->removeOne(note))
        return;
    --m_count;
    if (found->isEmpty())
        m_byKey.erase(found);
}

std::optional<FilePath> NoteNames::resolve(const QByteArray& name, const FilePath& from) const
{
    const auto found = m_byKey.constFind(keyOfName(name));
    if (found == m_byKey.cend() || found->isEmpty())
        return std::nullopt;
    const QList<FilePath>& notes = *found;
    QString text = QString::fromUtf8(name);
    if (text.contains(u'/')) {
        while (text.startsWith(u'/'))
            text.remove(0, 1);
        const QString wanted = comparable(text);
        const auto at = [&](const FilePath& base) -> std::optional<FilePath> {
            const QString prefix = comparable(base.text()) + (base.isRoot() ? QString() : QStringLiteral("/"));
            for (const FilePath& note : notes)
                if (comparable(note.text()) == prefix + wanted)
                    return note;
            return std::nullopt;
        };
        if (auto fromTop = at(m_vault.isEmpty() ? from.parent() : m_vault))
            return fromTop;
        if (auto beside = at(from.parent()))
            return beside;
        const QString suffix = u'/' + wanted;
        std::optional<FilePath> best;
        for (const FilePath& note : notes)
            if (comparable(note.text()).endsWith(suffix) && (!best || depth(note) < depth(*best) || (depth(note) == depth(*best) && note < *best)))
                best = note;
        return best;
    }
    if (notes.size() == 1)
        return notes.first();
    const FilePath folder = from.parent();
    const FilePath* best = nullptr;
    for (const FilePath& note : notes) {
        if (note.parent() == folder)
            return note;
        if (!best || depth(note) < depth(*best) || (depth(note) == depth(*best) && note < *best))
            best = &note;
    }
    return *best;
}

} // namespace orwick
