#include "ui/views/DrivesView.h"

#include "async/TimeLimited.h"
#include "base/Formatting.h"
#include "places/Locations.h"
#include "ui/views/CategoryIcons.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace orwick {

DrivesView::DrivesView(PaneState* pane, QWidget* parent) : QTreeWidget(parent), m_pane(pane)
{
    setColumnCount(4);
    setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Free"), QStringLiteral("Total"), QStringLiteral("Kind")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setFrameShape(QFrame::NoFrame);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setStretchLastSection(false);
    connect(this, &QTreeWidget::itemActivated, this, [this] { openCurrent(); });
}

void DrivesView::refresh()
{
    // A hung network share blocks whoever asks it for its space: never the window, nor the
    // shared pool; past the time limit the drives shown stay as they are.
    const auto ticket = m_listing.start();
    runWithTimeLimit(this, Locations::kReadTimeoutMs, [] { return listDrives(); }, [this, ticket](const QList<Drive>& drives) {
        if (!m_listing.isCurrent(ticket))
            return;
        m_listing.finish(ticket);
        showDrives(drives);
    }, [this, ticket] { m_listing.finish(ticket); });
}

void DrivesView::showDrives(const QList<Drive>& drives)
{
    const QVariant current = currentItem() ? currentItem()->data(0, Qt::UserRole) : QVariant();
    clear();
    for (const Drive& drive : drives) {
        auto* row = new QTreeWidgetItem(this);
        row->setText(0, drive.name);
        row->setToolTip(0, drive.url.text());
        row->setIcon(0, categoryIcon(FileCategory::diskImage));
        row->setText(1, formatByteCount(drive.free));
        row->setText(2, formatByteCount(drive.total));
        row->setText(3, drive.isNetwork ? QStringLiteral("Network share (%1)").arg(drive.format) : drive.format);
        row->setData(0, Qt::UserRole, QVariant::fromValue(drive.url));
        if (current.isValid() && current.value<FilePath>() == drive.url)
            setCurrentItem(row); // a refresh keeps the cursor on its drive
    }
    if (!currentItem() && topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(0));
}

void DrivesView::openCurrent()
{
    if (QTreeWidgetItem* row = currentItem())
        m_pane->navigate(row->data(0, Qt::UserRole).value<FilePath>());
}

void DrivesView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        openCurrent();
        return;
    }
    if (event->key() == Qt::Key_Backspace || (event->key() == Qt::Key_Left && (event->modifiers() & Qt::AltModifier))) {
        m_pane->goBack();
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

} // namespace orwick
