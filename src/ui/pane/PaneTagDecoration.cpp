#include "ui/pane/PaneTagDecoration.h"

#include "places/FinderTags.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/FileListModel.h"
#include "ui/views/TagDots.h"

namespace orwick {

PaneTagDecoration::PaneTagDecoration(PaneWidget* widget, FinderTags* tags) : QObject(widget), m_widget(widget), m_tags(tags)
{
    widget->model()->addDecorator([self = QPointer(this)](const FileItem& item, int column, int role) {
        return self ? self->decorate(item, column, role) : QVariant();
    });
    connect(widget->pane(), &PaneState::loadingChanged, this, &PaneTagDecoration::loadFinished);
    connect(tags, &FinderTags::changed, this, [this] {
        if (m_widget)
            m_widget->model()->refreshDecorations();
    });
    loadFinished();
}

QVariant PaneTagDecoration::decorate(const FileItem& item, int column, int role) const
{
    if (column != FileListModel::NameColumn || !m_tags || (role != TagColorsRole && role != Qt::ToolTipRole))
        return {};
    const TagList tags = m_tags->tagsOf(item.url);
    if (tags.isEmpty())
        return {};
    if (role == TagColorsRole) {
        const QList<int> colors = tags.colors();
        return colors.isEmpty() ? QVariant() : QVariant::fromValue(colors);
    }
    return QStringLiteral("Tags: ") + tags.names().join(QStringLiteral(", "));
}

void PaneTagDecoration::loadFinished()
{
    PaneState* pane = m_widget ? m_widget->pane() : nullptr;
    if (!pane || !m_tags || pane->isLoading() || pane->error())
        return;
    if (!pane->listing()) {
        m_tags->refreshFolder(pane->url());
        return;
    }
    // A listing's items lie in many folders: their own tags are read, a bounded number.
    QList<FilePath> files;
    for (const FileItem& item : pane->items()) {
        if (files.size() >= 5000)
            break;
        files.append(item.url);
    }
    m_tags->refreshItems(files);
}

} // namespace orwick
