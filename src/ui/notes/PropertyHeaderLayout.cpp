#include "ui/notes/PropertyHeaderLayout.h"

#include "notes/FileProperties.h"
#include "ui/notes/PropertyColumnsModel.h"
#include "ui/views/FileListModel.h"
#include "ui/views/FileListView.h"

#include <QHeaderView>
#include <QScopeGuard>
#include <QTimer>

namespace orwick {

PropertyHeaderLayout::PropertyHeaderLayout(QHeaderView* header, PropertyColumnsModel* model, FileProperties* store,
                                           QObject* parent)
    : QObject(parent)
    , m_header(header)
    , m_model(model)
    , m_store(store)
    , m_widthSaver(new QTimer(this))
{
    m_widthSaver->setSingleShot(true);
    m_widthSaver->setInterval(400);
    connect(m_widthSaver, &QTimer::timeout, this, &PropertyHeaderLayout::saveWidths);
    // Sections are resized while the model resets (new columns get a width); only what happens
    // after the layout is the user's.
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_applying = true; });
    connect(model, &QAbstractItemModel::modelReset, this, &PropertyHeaderLayout::apply);
    connect(header, &QHeaderView::sectionMoved, this, &PropertyHeaderLayout::sectionMoved);
    connect(header, &QHeaderView::sectionResized, this, [this](int logical) {
        if (!m_applying && m_model->propertyColumn(logical))
            m_widthSaver->start();
    });
}

void PropertyHeaderLayout::setFolder(const FilePath& folder)
{
    m_folder = folder;
    apply();
}

void PropertyHeaderLayout::apply()
{
    m_applying = true;
    const auto done = qScopeGuard([this] { m_applying = false; });
    if (!m_header || !m_store)
        return;
    const FolderColumns settings = m_store->columns(m_folder);
    const bool hasFolder = !m_folder.isEmpty();
    if (m_header->count() >= FileListModel::ColumnCount) {
        // The list view owns its columns' visibility (it also hides some for room).
        const std::pair<int, bool> leftOut[] = {{FileListModel::ModifiedColumn, hasFolder && settings.hidesModified},
                                                {FileListModel::SizeColumn, hasFolder && settings.hidesSize},
                                                {FileListModel::KindColumn, hasFolder && !settings.showsKind}};
        auto* view = qobject_cast<FileListView*>(m_header->parentWidget());
        for (const auto& [column, out] : leftOut) {
            if (view)
                view->leaveOut(column, out);
            else
                m_header->setSectionHidden(column, out);
        }
    }
    // Property sections follow the built-in ones, in the folder's order (their logical order).
    const int first = m_model->firstPropertyColumn();
    for (int logical = first; logical < m_header->count(); ++logical) {
        m_header->moveSection(m_header->visualIndex(logical), logical);
        const PropertyColumn* column = m_model->propertyColumn(logical);
        if (!column)
            continue;
        m_header->setSectionHidden(logical, false);
        m_header->resizeSection(logical, int(settings.widths.value(column->key, kDefaultWidth)));
    }
}

void PropertyHeaderLayout::sectionMoved()
{
    if (m_applying || !m_header)
        return;
    // The order as the user left it, saved a moment later: the header is still inside its own
    // mouse handling, and a reset before then would lay the old order out again.
    QStringList order;
    for (int visual = 0; visual < m_header->count(); ++visual)
        if (const PropertyColumn* column = m_model->propertyColumn(m_header->logicalIndex(visual)))
            order.append(column->key);
    QTimer::singleShot(0, this, [this, order] { saveOrder(order); });
}

void PropertyHeaderLayout::saveOrder(QStringList order)
{
    if (!m_store || m_folder.isEmpty())
        return;
    FolderColumns settings = m_store->columns(m_folder);
    // Keys shown but not laid out here (none should be) keep their place at the end.
    for (const QString& key : std::as_const(settings.shown))
        if (!order.contains(key))
            order.append(key);
    order.removeIf([&](const QString& key) { return !settings.shown.contains(key); });
    if (order == settings.shown) {
        apply(); // a built-in section moved among the properties: put them back in line
        return;
    }
    settings.shown = order;
    if (const Status saved = m_store->setColumns(m_folder, settings); !saved)
        Q_EMIT saveFailed(saved.error());
}

void PropertyHeaderLayout::saveWidths()
{
    m_widthSaver->stop();
    if (!m_header || !m_store || m_folder.isEmpty())
        return;
    FolderColumns settings = m_store->columns(m_folder);
    const FolderColumns before = settings;
    // The last section stretches to the view's edge: its width is the window's, not a choice.
    const int stretched = m_header->stretchLastSection() ? m_header->logicalIndex(m_header->count() - 1) : -1;
    for (int logical = m_model->firstPropertyColumn(); logical < m_header->count(); ++logical) {
        const PropertyColumn* column = m_model->propertyColumn(logical);
        if (!column || logical == stretched)
            continue;
        const int width = m_header->sectionSize(logical);
        if (width != int(settings.widths.value(column->key, kDefaultWidth)))
            settings.widths.insert(column->key, width);
    }
    if (settings == before)
        return;
    if (const Status saved = m_store->setColumns(m_folder, settings); !saved)
        Q_EMIT saveFailed(saved.error());
}

} // namespace orwick
