#pragma once
// StoreFile: one of Orwick's own JSON files in its data folder (trash-log.json, frecency.json,
// columns.json, …), handled the same way for every store:
//
// - Damage: a file that is there but isn't JSON, or isn't the shape the store expects, is
//   renamed aside to NAME.damaged.json (or "NAME.damaged 2.json"… when an earlier one is
//   there, which is never replaced), the store starts from its defaults, and one notice naming
//   the kept file goes to the window (StoreNotices).
// - Several writers: update() takes an exclusive flock on NAME.lock beside the file, reads what
//   is on disk now, lets the store apply its own changes to that, writes the result atomically
//   (JsonFile.h) and unlocks. Processes (and threads with their own StoreFile) that update the
//   same file therefore merge their changes instead of overwriting one another.
// - A file that can't be written: update() fails with a sentence, and the window hears of it once
//   until a write succeeds again, however many writes fail meanwhile. The store keeps what it
//   holds in memory and tries again with its next change.
//
// A StoreFile is a small value with no state of its own: copy it into background work freely.
// Every function may block briefly on the lock; none throws.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QJsonDocument>
#include <functional>
#include <optional>

namespace orwick {

class StoreFile {
public:
    // How the messages name the store and what the user gets when its file is damaged, as in
    // "Orwick couldn’t read {what}, so {afresh}."
    struct Words {
        QString what;   // "its column settings"
        QString afresh; // "folders show their default columns"
    };
    // Whether a parsed document has the shape the store expects.
    using Shape = std::function<bool(const QJsonDocument&)>;
    static bool isObject(const QJsonDocument& document) { return document.isObject(); }

    StoreFile(FilePath path, Words words, Shape shape = &StoreFile::isObject);

    const FilePath& path() const { return m_path; }
    FilePath lockPath() const;    // NAME.lock
    FilePath damagedPath() const; // NAME.damaged.json, the first name tried when setting aside

    // The document on disk; nothing when there is none yet, or when it was damaged (then set
    // aside, with a notice) or can't be read (with a notice; it is left as it is).
    std::optional<QJsonDocument> read() const;

    // Under the lock: `merge` gets what is on disk now (nothing when there is none or it was
    // damaged and set aside) and returns the document to write. Returns what was written.
    using Merge = std::function<QJsonDocument(const std::optional<QJsonDocument>& onDisk)>;
    [[nodiscard]] Result<QJsonDocument> update(const Merge& merge) const;

private:
    FilePath m_path;
    Words m_words;
    Shape m_shape;
};

} // namespace orwick
