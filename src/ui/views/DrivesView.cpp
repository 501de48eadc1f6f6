#include "ui/views/DrivesView.h"

#include "files/Formatting.h"
#include "platform/Drives.h"
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
    clear();
    for (const Drive& drive : listDrives()) {
        auto* row = new QTreeWidgetItem(this);
        row->setText(0, drive.name);
        row->setToolTip(0, drive.root.text());
        row->setIcon(0, categoryIcon(FileCategory::diskImage));
        row->setText(1, formatByteCount(drive.freeBytes));
        row->setText(2, formatByteCount(drive.totalBytes));
        row->setText(3, drive.isNetwork ? QStringLiteral("Network share (%1)").arg(drive.fileSystem) : drive.fileSystem);
        row->setData(0, Qt::UserRole, QVariant::fromValue(drive.root));
    }
    if (topLevelItemCount() > 0)
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
