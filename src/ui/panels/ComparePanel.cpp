#include "ui/panels/ComparePanel.h"

#include "platform/DirectoryReader.h"
#include "state/WindowState.h"
#include "ui/panels/FileComparisonView.h"
#include "ui/panels/FolderComparisonView.h"
#include "ui/panels/ImageComparisonView.h"

#include <QImageReader>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

namespace orwick {

namespace {
void stopView(QWidget* view)
{
    if (auto* folders = qobject_cast<FolderComparisonView*>(view))
        folders->stop();
    else if (auto* files = qobject_cast<FileComparisonView*>(view))
        files->stop();
    else if (auto* pictures = qobject_cast<ImageComparisonView*>(view))
        pictures->stop();
}
} // namespace

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
        connect(view, &FolderComparisonView::footerChanged, this, [this, view](const QString& text) { showFooter(view, text); });
        connect(view, &FolderComparisonView::pairOpened, this, &ComparePanel::openPair);
        m_view = view;
    } else {
        m_view = makeFileView(left, right);
    }
    body()->addWidget(m_view, 1);
    present(m_view);
}

QWidget* ComparePanel::makeFileView(const FilePath& left, const FilePath& right)
{
    if (arePictures(left, right)) {
        auto* view = new ImageComparisonView(left, right, this);
        connect(view, &ImageComparisonView::footerChanged, this, [this, view](const QString& text) { showFooter(view, text); });
        return view;
    }
    auto* view = new FileComparisonView(left, right, this);
    connect(view, &FileComparisonView::footerChanged, this, [this, view](const QString& text) { showFooter(view, text); });
    return view;
}

void ComparePanel::openPair(const FilePath& left, const FilePath& right)
{
    closePair();
    m_pairName = relativeText(m_left, left);
    m_pair = makeFileView(left, right);
    m_view->hide();
    body()->addWidget(m_pair, 1);
    m_pair->show();
    m_pair->setFocus(Qt::OtherFocusReason);
    showFooter(m_pair, QString());
}

void ComparePanel::closePair()
{
    if (!m_pair)
        return;
    stopView(m_pair);
    QWidget* pair = std::exchange(m_pair, nullptr);
    pair->hide();
    pair->deleteLater();
    m_view->show();
    m_view->setFocus(Qt::OtherFocusReason);
    setFooter(m_folderFooter);
}

void ComparePanel::showFooter(QWidget* from, const QString& text)
{
    if (from == m_view && m_pair) {
        m_folderFooter = text; // shown again when the pair goes
        return;
    }
    if (from != m_pair) {
        m_folderFooter = text;
        setFooter(text);
        return;
    }
    QString words = text;
    for (const QString closes : {QStringLiteral(" · Esc closes"), QStringLiteral("Esc closes")})
        if (words.endsWith(closes)) {
            words.chop(closes.size());
            break;
        }
    QStringList parts{m_pairName};
    if (!words.isEmpty())
        parts.append(words);
    parts.append(QStringLiteral("Esc goes back to the folders"));
    setFooter(parts.join(QStringLiteral(" · ")));
}

void ComparePanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_pair) {
        closePair();
        return;
    }
    PanelSheet::keyPressEvent(event);
}

void ComparePanel::stopWork()
{
    stopView(m_view);
    stopView(m_pair);
}

} // namespace orwick
