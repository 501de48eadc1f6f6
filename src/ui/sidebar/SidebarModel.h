#pragma once
// SidebarModel: the sidebar's rows as one flat list — a title row per section, then the
// section's rows unless it is folded. Built from the shared SidebarStore (favourites, groups,
// saved searches, folds), Locations (drives, Trash), Frecency (Recent) and FinderTags (the
// colour tags, then the other tags some file carries);
// rebuilt whole when any of them changes. Names of favourites, group rows, groups and saved
// searches are editable in place (setData renames them in the store). A rebuild that changes
// nothing leaves the model alone; one that changes only names or figures of the same rows (a
// drive's free space, the Trash's count) signals dataChanged for those rows; any other resets
// the model, and the view keeps its current place. While rebuilds are held (a name is being
// edited: a reset would close the editor), a rebuild waits, and runs once they are released.

#include "base/FilePath.h"
#include "files/Listing.h"
#include "search/SavedSearch.h"

#include <QAbstractListModel>
#include <QIcon>

namespace orwick {

class Frecency;
class Locations;
class SidebarStore;

struct SidebarRow {
    enum class Kind { title, favorite, groupItem, search, recent, thisComputer, drive, trash, tag };
    Kind kind = Kind::title;
    QString sectionId; // the section (or group id) the row belongs to
    QString name;
    QString trailing;  // dimmed, right-aligned
    QString detail;    // the tooltip, when there is more to say than the path
    QString symbol;
    FilePath path;     // folders and drives
    QString itemId;    // group rows, saved searches
    QString tagName;
    double fill = -1;  // a drive's used share
    bool isMissing = false;
    bool isEjectable = false;
    bool isCollapsed = false; // titles

    bool operator==(const SidebarRow&) const = default;
    // Whether two rows stand for the same place (the name or figures may differ).
    bool isSamePlace(const SidebarRow& other) const
    {
        return kind == other.kind && sectionId == other.sectionId && path == other.path && itemId == other.itemId && tagName == other.tagName;
    }
    bool isFolder() const { return kind == Kind::favorite || kind == Kind::groupItem || kind == Kind::recent || kind == Kind::drive; }
};

class SidebarModel : public QAbstractListModel {
    Q_OBJECT
public:
    static constexpr int kRecentCount = 6;

    SidebarModel(SidebarStore* store, Locations* locations, Frecency* frecency, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    const SidebarRow& rowAt(int row) const { return m_rows.at(row); }
    const QList<SidebarRow>& rows() const { return m_rows; }
    // The title row of a section or group; -1 when not shown.
    int titleRow(const QString& sectionId) const;
    static QIcon icon(const QString& symbol);
    static QString sectionTitle(const QString& sectionId);

    // Holds rebuilds back while `held`; releasing runs a rebuild that waited, from the event loop.
    void holdRebuilds(bool held);

public Q_SLOTS:
    void rebuild();

private:
    void addSection(QList<SidebarRow>& rows, const QString& sectionId) const;
    void addTitle(QList<SidebarRow>& rows, const QString& sectionId, const QString& name) const;

    SidebarStore* m_store;
    Locations* m_locations;
    Frecency* m_frecency;
    QList<SidebarRow> m_rows;
    bool m_held = false, m_rebuildWaiting = false;
};

} // namespace orwick
