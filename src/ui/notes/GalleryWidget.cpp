#include "ui/notes/GalleryWidget.h"

#include "commands/ViewKeys.h"

#include "ui/notes/DatabaseCard.h"
#include "ui/notes/DatabaseViewInput.h"
#include "ui/theme/Theme.h"
#include "ui/views/Thumbnails.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>

namespace orwick {

GalleryWidget::GalleryWidget(QWidget* parent) : QWidget(parent), m_thumbnails(new Thumbnails(this))
{
    setUpDatabaseView(this);
    connect(m_thumbnails, &Thumbnails::ready, this, [this] { update(); });
}

void GalleryWidget::setItems(FileItems items, DatabaseColumns database, QHash<FilePath, FilePath> covers)
{
    const std::optional<FilePath> keep = currentItem();
    m_items = std::move(items);
    m_database = std::move(database);
    m_covers = std::move(covers);
    m_cursor = 0;
    if (keep)
        for (int i = 0; i < m_items.size(); ++i)
            if (m_items.at(i).url == *keep)
                m_cursor = i;
    updateHeight();
    update();
}

std::optional<FilePath> GalleryWidget::currentItem() const
{
    if (m_cursor < 0 || m_cursor >= m_items.size())
        return std::nullopt;
    return m_items.at(m_cursor).url;
}

void GalleryWidget::updateHeight()
{
    auto* area = qobject_cast<QScrollArea*>(parentWidget() ? parentWidget()->parentWidget() : nullptr);
    m_layout.width = area ? area->viewport()->width() : width();
    m_layout.cardHeight = 160 + cardHeight(this, 2);
    const int wanted = m_layout.contentHeight(int(m_items.size()));
    const int least = area ? area->viewport()->height() : 0;
    setFixedHeight(std::max(wanted, least));
}

void GalleryWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_layout.width != width()) {
        m_layout.width = width();
        setFixedHeight(std::max(m_layout.contentHeight(int(m_items.size())), height()));
    }
}

void GalleryWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (m_items.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(0, 0, 0, -rect().height() / 2), Qt::AlignCenter, QStringLiteral("No items to show"));
        return;
    }
    const int cover = 160;
    for (int i = 0; i < m_items.size(); ++i) {
        const QRect card = m_layout.cardRect(i);
        if (!card.intersects(event->rect()))
            continue;
        const FileItem& item = m_items.at(i);
        const QStringList lines = cardLines(m_database, item.url, m_database.settings.shown.mid(0, 2));
        drawCard(painter, this, card, {}, {}, {i == m_cursor, i == m_cursor, hasFocus()});
        const QRect picture = card.adjusted(6, 6, -6, -(card.height() - cover));
        const auto found = m_covers.constFind(item.url);
        QImage image;
        if (found != m_covers.constEnd())
            image = m_thumbnails->thumbnail(FileItem::make(*found), std::max(picture.width(), picture.height()));
        if (!image.isNull()) {
            const QSize size = image.size().scaled(picture.size(), Qt::KeepAspectRatioByExpanding);
            const QRect source((size.width() - picture.width()) / 2 * image.width() / std::max(1, size.width()),
                               (size.height() - picture.height()) / 2 * image.height() / std::max(1, size.height()),
                               picture.width() * image.width() / std::max(1, size.width()),
                               picture.height() * image.height() / std::max(1, size.height()));
            painter.drawImage(picture, image, source);
        } else {
            painter.fillRect(picture, palette().color(QPalette::AlternateBase));
            painter.setPen(palette().color(QPalette::PlaceholderText));
            painter.drawText(picture, Qt::AlignCenter, item.isFolder ? QStringLiteral("Folder") : item.url.extension().toUpper());
        }
        drawCard(painter, this, QRect(card.left(), card.top() + cover, card.width(), card.height() - cover),
                 itemTitle(item, m_database.values.value(item.url)), lines, {i == m_cursor, false, false});
    }
}

void GalleryWidget::showCurrentItem(const FilePath& item)
{
    for (int i = 0; i < m_items.size(); ++i)
        if (m_items.at(i).url == item && i != m_cursor)
            return placeCursor(i);
}

void GalleryWidget::moveCursorTo(int index)
{
    if (index < 0 || index >= m_items.size())
        return;
    placeCursor(index);
    Q_EMIT currentChanged(m_items.at(index).url);
}

void GalleryWidget::placeCursor(int index)
{
    m_cursor = index;
    if (auto* area = qobject_cast<QScrollArea*>(parentWidget() ? parentWidget()->parentWidget() : nullptr)) {
        const QRect card = m_layout.cardRect(index);
        area->ensureVisible(card.center().x(), card.center().y(), card.width() / 2, card.height() / 2 + m_layout.spacing);
    }
    update();
}

void GalleryWidget::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const int count = int(m_items.size());
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::gallery, event->keyCombination());
    if (!action) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (*action) {
    case A::galleryOpen: openCurrentOnReturn(*this, event); return;
    case A::galleryLeft: return moveCursorTo(m_layout.moved(m_cursor, 0, -1, count));
    case A::galleryRight: return moveCursorTo(m_layout.moved(m_cursor, 0, 1, count));
    case A::galleryUp: return moveCursorTo(m_layout.moved(m_cursor, -1, 0, count));
    case A::galleryDown: return moveCursorTo(m_layout.moved(m_cursor, 1, 0, count));
    case A::galleryFirst: return moveCursorTo(0);
    case A::galleryLast: return moveCursorTo(count - 1);
    default: break;
    }
    QWidget::keyPressEvent(event);
}

void GalleryWidget::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    moveCursorTo(m_layout.indexAt(event->position().toPoint(), int(m_items.size())));
}

void GalleryWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    const int index = m_layout.indexAt(event->position().toPoint(), int(m_items.size()));
    if (index >= 0)
        Q_EMIT openRequested(m_items.at(index).url);
}

} // namespace orwick
