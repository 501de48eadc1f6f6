#include "ui/notes/FilterChipsBar.h"

#include "ui/text/LiteralText.h"
#include "ui/notes/FilterRowEditor.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace orwick {

FilterChipsBar::FilterChipsBar(FileProperties* store, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_row(new QHBoxLayout(this))
{
    m_row->setContentsMargins(6, 2, 6, 2);
    m_row->setSpacing(4);
    connect(store, &FileProperties::columnsChanged, this, [this](const FilePath& folder) {
        if (folder == m_folder)
            rebuild();
    });
    rebuild();
}

void FilterChipsBar::setFolder(const FilePath& folder, const FileItems& items)
{
    m_folder = folder;
    m_items = items;
    rebuild();
}

void FilterChipsBar::store(QList<PropertyFilter> filters)
{
    if (!m_store || m_folder.isEmpty())
        return;
    FolderColumns columns = m_store->columns(m_folder);
    columns.filters = std::move(filters);
    if (const Status saved = m_store->setColumns(m_folder, columns); !saved)
        Q_EMIT saveFailed(saved.error());
}

void FilterChipsBar::putFilter(const PropertyFilter& filter)
{
    if (!m_store)
        return;
    QList<PropertyFilter> filters = m_store->columns(m_folder).filters;
    auto same = std::find_if(filters.begin(), filters.end(), [&](const PropertyFilter& f) { return f.id == filter.id; });
    if (same != filters.end())
        *same = filter;
    else
        filters.append(filter);
    store(filters);
}

void FilterChipsBar::removeFilter(const QUuid& id)
{
    if (!m_store)
        return;
    QList<PropertyFilter> filters = m_store->columns(m_folder).filters;
    filters.removeIf([&](const PropertyFilter& f) { return f.id == id; });
    store(filters);
}

QStringList FilterChipsBar::chipTexts() const
{
    QStringList texts;
    if (!m_store)
        return texts;
    for (const PropertyFilter& filter : m_store->columns(m_folder).filters)
        texts.append(filter.summary(m_store->type(filter.key, m_folder, m_items)));
    return texts;
}

PropertyType FilterChipsBar::typeOf(const QString& key) const
{
    return m_store ? m_store->type(key, m_folder, m_items) : PropertyType::text;
}

PropertyFilter FilterChipsBar::newFilter() const
{
    PropertyFilter blank;
    const QStringList keys = m_store ? m_store->keys(m_items) : QStringList();
    blank.key = keys.value(0);
    blank.condition = PropertyFilter::conditions(typeOf(blank.key)).first();
    return blank;
}

void FilterChipsBar::edit(const PropertyFilter& filter)
{
    FilterRowEditor editor(filter, m_store ? m_store->keys(m_items) : QStringList(),
                           [this](const QString& key) { return typeOf(key); }, this);
    if (editor.exec() == QDialog::Accepted)
        putFilter(editor.filter());
}

void FilterChipsBar::rebuild()
{
    // Later, not now: the chip that asked for this may still be emitting its click.
    while (QLayoutItem* item = m_row->takeAt(0)) {
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
    if (!m_store || m_folder.isEmpty())
        return;
    const QList<PropertyFilter> filters = m_store->columns(m_folder).filters;
    const QStringList texts = chipTexts();
    for (qsizetype i = 0; i < filters.size(); ++i) {
        const PropertyFilter filter = filters[i];
        auto* chip = new QToolButton(this);
        chip->setText(literalText(texts[i]));
        chip->setToolTip(QStringLiteral("Edit this filter"));
        chip->setAutoRaise(false);
        connect(chip, &QToolButton::clicked, this, [this, filter] { edit(filter); });
        auto* remove = new QToolButton(this);
        remove->setText(QStringLiteral("×"));
        remove->setToolTip(QStringLiteral("Remove this filter"));
        remove->setAutoRaise(true);
        connect(remove, &QToolButton::clicked, this, [this, id = filter.id] { removeFilter(id); });
        m_row->addWidget(chip);
        m_row->addWidget(remove);
    }
    auto* add = new QToolButton(this);
    add->setText(QStringLiteral("Add Filter…"));
    add->setAutoRaise(true);
    connect(add, &QToolButton::clicked, this, [this] { edit(newFilter()); });
    m_row->addWidget(add);
    m_row->addStretch(1);
}

} // namespace orwick
