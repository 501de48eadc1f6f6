#include "ui/panels/ComparePanel.h"

#include "platform/DirectoryReader.h"
#include "state/WindowState.h"
#include "ui/panels/FileComparisonView.h"
#include "ui/panels/FolderComparisonView.h"
#include "ui/panels/ImageComparisonView.h"

#include <QImageReader>
#include <QVBoxLayout>

namespace orwick {

PanelSheet* ComparePanel::open(WindowState& state, QWidget* window)
{
    if (state.panelItems().size() != 2)
        return nullptr;
    // Taken first: closing the sheet shown before may reset the state's panel and its items.
    const FilePath left = state.panelItems()[0];
    const FilePath right = state.panelItems()[1];
    PanelSheet::closeOpenSheet(window);
    return new ComparePanel(state, left, right, window);
}

bool ComparePanel::arePictures(const FilePath& left, const FilePath& right)
{
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    auto isPicture = [&formats](const FilePath& path) { return formats.contains(path.extension().toLatin1()); };
    return isPicture(left) && isPicture(right);
}

ComparePanel::ComparePanel(WindowState& state, const FilePath& left, const FilePath& right, QWidget* window)
    : PanelSheet(QStringLiteral("Compare"), left.abbreviated() + QStringLiteral("  ↔  ") + right.abbreviated(), window),
      m_left(left), m_right(right)
{
    setObjectName(QStringLiteral("comparePanel"));
    const auto leftStat = statPath(left, FollowLinks::yes);
    const bool folders = leftStat && leftStat->isDirectory();
    if (folders) {
        auto* view = new FolderComparisonView(state, left, right, this);
        connect(view, &FolderComparisonView::footerChanged, this, &PanelSheet::setFooter);
        connect(view, &FolderComparisonView::pairOpened, this, [this, &state](const FilePath& l, const FilePath& r) {
            closeSheet();
            state.showPanel(WindowState::Panel::compare, l, {l, r});
        });
        m_view = view;
    } else if (arePictures(left, right)) {
        auto* view = new ImageComparisonView(left, right, this);
        connect(view, &ImageComparisonView::footerChanged, this, &PanelSheet::setFooter);
        m_view = view;
    } else {
        auto* view = new FileComparisonView(left, right, this);
        connect(view, &FileComparisonView::footerChanged, this, &PanelSheet::setFooter);
        m_view = view;
    }
    body()->addWidget(m_view, 1);
    present(m_view);
}

void ComparePanel::stopWork()
{
    if (auto* folders = qobject_cast<FolderComparisonView*>(m_view))
        folders->stop();
    else if (auto* files = qobject_cast<FileComparisonView*>(m_view))
        files->stop();
    else if (auto* pictures = qobject_cast<ImageComparisonView*>(m_view))
        pictures->stop();
}

} // namespace orwick
