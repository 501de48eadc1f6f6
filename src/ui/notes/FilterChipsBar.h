#pragma once
// FilterChipsBar: a folder's property filters as chips above its list — "status is done" with a
// remove button — and "Add Filter…". A chip opens its row for editing. Every change is saved at
// once in the folder's settings through FileProperties, whose columnsChanged(folder) tells the
// pane to filter again.

#include "notes/FileProperties.h"

#include <QPointer>
#include <QWidget>

class QHBoxLayout;

namespace orwick {

class FilterChipsBar : public QWidget {
    Q_OBJECT
public:
    explicit FilterChipsBar(FileProperties* store, QWidget* parent = nullptr);

    // The folder whose filters show; `items` give the keys offered and the properties' types.
    void setFolder(const FilePath& folder, const FileItems& items);

    // Adds a row, or replaces the row with the same id; removes a row by id. Both save at once.
    void putFilter(const PropertyFilter& filter);
    void removeFilter(const QUuid& id);

    // The row "Add Filter…" starts from: the first property, with the first condition that fits
    // its type.
    PropertyFilter newFilter() const;

    // The chips' texts, in order (for the pane's status and for tests).
    QStringList chipTexts() const;

Q_SIGNALS:
    void saveFailed(const QString& message);

private:
    void rebuild();
    void edit(const PropertyFilter& filter);
    void store(QList<PropertyFilter> filters);
    PropertyType typeOf(const QString& key) const;

    QPointer<FileProperties> m_store;
    FilePath m_folder;
    FileItems m_items;
    QHBoxLayout* m_row;
};

} // namespace orwick
