#pragma once
// Workspaces: the named sessions the user saved ("Save Workspace…") and opens from the palette.
// One shared instance for the program, used on the GUI thread.
//
// Kept in workspaces.json in Orwick's data folder through a StoreFile: a JSON array of
// {"name": text, "session": Session}. The file is read at first use; a damaged one (not an array,
// or an entry that isn't a workspace) is set aside by the StoreFile with a notice and gives an
// empty list, and nothing is written over it until the next successful save. Each save or removal
// is applied, under the file's lock, to what is on disk then, so two Orwick processes don't undo
// each other's workspaces. Names are unique ignoring case, and the list is sorted by name
// ignoring case.

#include "app/Session.h"
#include "platform/StoreFile.h"

namespace orwick {

struct Workspace {
    QString name;
    Session session;

    QJsonObject toJson() const;
    static std::optional<Workspace> fromJson(const QJsonValue& value);
    bool operator==(const Workspace&) const = default;
};

class Workspaces {
public:
    // The program's workspaces, in workspaces.json of the data folder of the moment it is first used.
    static Workspaces& shared();
    explicit Workspaces(FilePath file);

    const FilePath& file() const { return m_store.path(); }
    // Sorted by name ignoring case; read from the file at first use.
    const QList<Workspace>& all();
    // Replaces the workspace of the same name ignoring case, or adds it; keeps the list sorted and
    // writes it whole. Fails with a sentence when the file can't be written (the list is
    // then unchanged).
    [[nodiscard]] Status save(const Workspace& workspace);
    // Removes the workspace of that name (ignoring case) and writes the list.
    [[nodiscard]] Status remove(const QString& name);

    // The list in the file's JSON and back (nothing when the document isn't a list of workspaces).
    static QJsonDocument toJson(const QList<Workspace>& list);
    static std::optional<QList<Workspace>> fromJson(const QJsonDocument& document);

private:
    using Change = std::function<void(QList<Workspace>&)>;
    Status apply(const Change& change);

    StoreFile m_store;
    std::optional<QList<Workspace>> m_list;
};

} // namespace orwick
