#pragma once
// Colour tags in one pane: after every load (a folder's first, and each its watcher causes) it
// asks the shared FinderTags to read the shown folder's tags again, or the listed items' tags
// for a listing; the rows show the dots of their colour tags (TagColorsRole) and name every tag
// in the tooltip, repainted whenever the cache changes. Nothing here reads the disk. Owned by
// the pane widget.

#include "files/FileItem.h"

#include <QObject>
#include <QPointer>

namespace orwick {

class FinderTags;
class PaneWidget;

class PaneTagDecoration : public QObject {
    Q_OBJECT
public:
    PaneTagDecoration(PaneWidget* widget, FinderTags* tags);

private:
    QVariant decorate(const FileItem& item, int column, int role) const;
    void loadFinished();

    QPointer<PaneWidget> m_widget;
    QPointer<FinderTags> m_tags;
};

} // namespace orwick
