#pragma once
// PropertyHeaderLayout: keeps a table header in step with its folder's database settings. After
// every reset of the columns model it lays the property sections out in the folder's order (after
// the file list's own columns), gives each its stored width, and hides the built-in columns the
// folder hides (Date Modified, Size; Kind unless the folder shows it). What the user does to the
// header goes back into the folder's settings, saved in columns.json: dragging a property section
// to another place reorders the folder's columns, resizing one stores its width.

#include "base/FilePath.h"

#include <QObject>
#include <QPointer>

class QHeaderView;
class QTimer;

namespace orwick {

class FileProperties;
class PropertyColumnsModel;

class PropertyHeaderLayout : public QObject {
    Q_OBJECT
public:
    // Width of a property column the folder has no width for.
    static constexpr int kDefaultWidth = 140;

    PropertyHeaderLayout(QHeaderView* header, PropertyColumnsModel* model, FileProperties* store, QObject* parent);

    // The folder whose settings apply; an empty path (a listing) shows every built-in column.
    void setFolder(const FilePath& folder);
    // Lays the header out from the folder's settings now.
    void apply();
    // Stores the widths the user gave property sections (the resize handler does this shortly
    // after a drag; tests and the window's close call it at once).
    void saveWidths();

Q_SIGNALS:
    void saveFailed(const QString& message);

private:
    void sectionMoved();
    void saveOrder(QStringList order);

    QPointer<QHeaderView> m_header;
    PropertyColumnsModel* m_model;
    QPointer<FileProperties> m_store;
    FilePath m_folder;
    QTimer* m_widthSaver;
    bool m_applying = false;
};

} // namespace orwick
