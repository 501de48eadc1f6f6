#include "ui/panels/TreemapWidget.h"

#include "commands/ViewKeys.h"
#include "disktools/DiskNames.h"
#include "disktools/Treemap.h"
#include "files/FileCategory.h"
#include "theme/ThemeColors.h"
#include "ui/theme/TextLine.h"
#include "ui/theme/Theme.h"

#include <QContextMenuEvent>
#include <QHash>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace orwick {

namespace {
constexpr double kLabelMinWidth = 60;
constexpr double kLabelMinHeight = 34;
constexpr int kSwatch = 10;

FileCategory categoryOf(const SpaceNode& node)
{
    return categorize(FilePath::fromNative("/" + node.name), node.isFolder && !node.isPackage, node.isPackage);
}

// Inside a folder's block the next level is drawn, as Filelight and WinDirStat do, so where its
// space goes shows without going in. At most this many children, the largest; smaller ones and
// the folder's own files are the folder's plain ground.
constexpr size_t kInnerBlocks = 120;
constexpr double kInnerMinSide = 24;

std::vector<TreemapWidget::Block::Inner> layOutInside(const SpaceNode& folder, const QRectF& room)
{
    std::vector<TreemapWidget::Block::Inner> inside;
    if (!folder.isFolder || folder.isPackage || folder.children.empty() || folder.size <= 0 || room.width() < kInnerMinSide
        || room.height() < kInnerMinSide)
        return inside;
    std::vector<double> values;
    std::vector<const SpaceNode*> shown;
    qint64 drawn = 0;
    for (const auto& child : folder.children) { // largest first
        if (child->size <= 0 || shown.size() == kInnerBlocks)
            break;
        values.push_back(double(child->size));
        shown.push_back(child.get());
        drawn += child->size;
    }
    // The rest keeps its share of the room, undrawn, where its size puts it.
    const double rest = double(folder.size - drawn);
    const auto at = std::find_if(values.begin(), values.end(), [rest](double v) { return v < rest; });
    const auto restIndex = rest > 0 ? at - values.begin() : -1;
    if (rest > 0)
        values.insert(at, rest);
    const std::vector<QRectF> rects = Treemap::layout(values, room);
    for (qsizetype i = 0, child = 0; i < qsizetype(rects.size()); ++i) {
        if (i == restIndex)
            continue;
        const SpaceNode* node = shown[size_t(child++)];
        if (rects[size_t(i)].width() >= 2 && rects[size_t(i)].height() >= 2)
            inside.push_back({rects[size_t(i)], categoryOf(*node), node});
    }
    return inside;
}

// A block's fill: its category's tint over the ground, shaded as a cushion.
void paintCushion(QPainter& painter, const QRectF& rect, FileCategory category, double strength)
{
    const QColor fill = mixColors(theme::background(), theme::categoryTint(category), strength);
    QLinearGradient cushion(rect.topLeft(), rect.bottomRight());
    cushion.setColorAt(0, fill.lighter(112));
    cushion.setColorAt(1, fill.darker(112));
    painter.fillRect(rect, cushion);
}
} // namespace

QString TreemapWidget::legendName(FileCategory category)
{
    switch (category) {
    case FileCategory::folder: return QStringLiteral("Folders");
    case FileCategory::app: return QStringLiteral("Apps");
    case FileCategory::package: return QStringLiteral("Packages");
    case FileCategory::image: return QStringLiteral("Images");
    case FileCategory::video: return QStringLiteral("Videos");
    case FileCategory::audio: return QStringLiteral("Audio");
    case FileCategory::pdf: return QStringLiteral("PDFs");
    case FileCategory::archive: return QStringLiteral("Archives");
    case FileCategory::code: return QStringLiteral("Code");
    case FileCategory::data: return QStringLiteral("Data");
    case FileCategory::text: return QStringLiteral("Text");
    case FileCategory::diskImage: return QStringLiteral("Disk images");
    case FileCategory::other: break;
    }
    return QStringLiteral("Other and small files");
}

TreemapWidget::TreemapWidget(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setMinimumSize(200, 150);
    setFocusPolicy(Qt::StrongFocus);
}

void TreemapWidget::setNode(SpaceNode* node)
{
    m_node = node;
    relayout();
}

void TreemapWidget::relayout()
{
    // The keyboard stays on its block when the map is only laid out again (a resize).
    const SpaceNode* wasCurrent = currentBlock() ? currentBlock()->node : nullptr;
    const bool hadSmallFiles = currentBlock() && !currentBlock()->node;
    m_blocks.clear();
    m_hovered = nullptr;
    m_current = -1;
    if (m_node) {
        std::vector<double> values;
        for (const auto& child : m_node->children) {
            if (child->size > 0) {
                Block block;
                block.node = child.get();
                m_blocks.push_back(block);
                values.push_back(double(child->size));
            }
        }
        if (m_node->smallFiles > 0) {
            // The small files go where their size puts them among the children.
            auto at = std::find_if(values.begin(), values.end(), [&](double v) { return v < double(m_node->smallFiles); });
            const auto index = at - values.begin();
            values.insert(at, double(m_node->smallFiles));
            m_blocks.insert(m_blocks.begin() + index, Block{}); // the small files: no node
        }
        const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1 - legendArea().height());
        const auto rects = Treemap::layout(values, area);
        for (size_t i = 0; i < rects.size(); ++i)
            m_blocks[i].rect = rects[i];
    }
    QHash<int, qint64> taken;
    const int labelHeight = fontMetrics().height() * 2 + 6;
    for (Block& block : m_blocks) {
        block.category = block.node ? categoryOf(*block.node) : FileCategory::other;
        const bool labelled = block.rect.width() >= kLabelMinWidth && block.rect.height() >= kLabelMinHeight;
        if (block.node)
            block.inside = layOutInside(*block.node, block.rect.adjusted(3, labelled ? labelHeight : 3, -3, -3));
        qint64 folderOwn = block.node ? block.node->size : m_node->smallFiles;
        if (!block.inside.empty())
            for (const auto& child : block.node->children) // the legend names what is drawn inside too
                if (child->size > 0) {
                    taken[int(categoryOf(*child))] += child->size;
                    folderOwn -= child->size;
                }
        if (folderOwn > 0 || block.inside.empty())
            taken[int(block.category)] += std::max<qint64>(0, folderOwn);
    }
    m_legend.clear();
    for (auto it = taken.cbegin(); it != taken.cend(); ++it)
        m_legend.append(FileCategory(it.key()));
    std::sort(m_legend.begin(), m_legend.end(), [&taken](FileCategory a, FileCategory b) {
        return taken[int(a)] != taken[int(b)] ? taken[int(a)] > taken[int(b)] : int(a) < int(b);
    });
    for (size_t i = 0; i < m_blocks.size() && m_current < 0; ++i)
        if ((wasCurrent && m_blocks[i].node == wasCurrent) || (hadSmallFiles && !m_blocks[i].node))
            m_current = int(i);
    if (m_current < 0 && !m_blocks.empty())
        m_current = 0;
    Q_EMIT hovered(hasFocus() && currentBlock() ? describe(*currentBlock()) : QString());
    update();
}

const TreemapWidget::Block* TreemapWidget::currentBlock() const
{
    return m_current >= 0 && size_t(m_current) < m_blocks.size() ? &m_blocks[size_t(m_current)] : nullptr;
}

void TreemapWidget::setCurrent(int index)
{
    if (index < 0 || size_t(index) >= m_blocks.size())
        return;
    m_current = index;
    Q_EMIT hovered(describe(m_blocks[size_t(index)]));
    update();
}

int TreemapWidget::neighbour(int dx, int dy) const
{
    const Block* from = currentBlock();
    if (!from)
        return -1;
    const QPointF centre = from->rect.center();
    int best = -1;
    double bestScore = 0;
    for (size_t i = 0; i < m_blocks.size(); ++i) {
        const QRectF& r = m_blocks[i].rect;
        if (int(i) == m_current || r.width() < 1 || r.height() < 1)
            continue;
        // Beyond the current block's edge in the asked direction.
        const bool beyond = dx > 0 ? r.left() >= from->rect.right() - 0.5 : dx < 0 ? r.right() <= from->rect.left() + 0.5
                          : dy > 0 ? r.top() >= from->rect.bottom() - 0.5 : r.bottom() <= from->rect.top() + 0.5;
        if (!beyond)
            continue;
        // Along the direction counts once, across it twice: the block straight ahead wins.
        const QPointF there = r.center();
        const double along = dx != 0 ? std::abs(there.x() - centre.x()) : std::abs(there.y() - centre.y());
        const double across = dx != 0 ? std::max(0.0, std::max(r.top() - centre.y(), centre.y() - r.bottom()))
                                      : std::max(0.0, std::max(r.left() - centre.x(), centre.x() - r.right()));
        const double score = along + 2 * across;
        if (best < 0 || score < bestScore) {
            best = int(i);
            bestScore = score;
        }
    }
    return best;
}

bool TreemapWidget::event(QEvent* event)
{
    // Delete trashes the current block here, not the pane's selection (the window's key).
    if (event->type() == QEvent::ShortcutOverride
        && ViewKeys::matches(ViewKeyAction::spaceTrash, static_cast<QKeyEvent*>(event)->keyCombination())) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void TreemapWidget::keyPressEvent(QKeyEvent* event)
{
    using A = ViewKeyAction;
    const Block* current = currentBlock();
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::spaceUsed, event->keyCombination());
    if (!action) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (*action) {
    case A::spaceBlockLeft: setCurrent(neighbour(-1, 0)); return;
    case A::spaceBlockRight: setCurrent(neighbour(1, 0)); return;
    case A::spaceBlockUp: setCurrent(neighbour(0, -1)); return;
    case A::spaceBlockDown: setCurrent(neighbour(0, 1)); return;
    case A::spaceFirst: setCurrent(0); return;
    case A::spaceLast: setCurrent(int(m_blocks.size()) - 1); return;
    case A::spaceOpen:
        if (current && current->node)
            Q_EMIT clicked(current->node);
        return;
    case A::spaceTrash:
        if (current)
            Q_EMIT trashRequested(current->node);
        return;
    case A::spaceMenu:
        if (current && current->node)
            Q_EMIT menuRequested(current->node, mapToGlobal(current->rect.center().toPoint()));
        return;
    default: break; // Backspace: the panel's
    }
    QWidget::keyPressEvent(event);
}

void TreemapWidget::resizeEvent(QResizeEvent*) { relayout(); }

QString TreemapWidget::describe(const Block& block) const
{
    if (!block.node)
        return QStringLiteral("Files under 1 MB, together — %1 (%2 files)")
            .arg(byteCountText(m_node->smallFiles))
            .arg(m_node->smallCount);
    QString text = block.node->displayName() + QStringLiteral(" — ") + byteCountText(block.node->size);
    if (block.node->isFolder && !block.node->isPackage)
        text += QStringLiteral(" · click to go in");
    return text;
}

void TreemapWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFontMetrics metrics = fontMetrics();
    for (const Block& block : m_blocks) {
        if (block.rect.width() < 1 || block.rect.height() < 1)
            continue;
        // The tint laid over the ground, lighter where the pointer is, shaded as a cushion.
        const bool lit = &block == m_hovered || (&block == currentBlock() && hasFocus());
        paintCushion(painter, block.rect, block.category, lit ? 0.78 : 0.55);
        painter.setPen(theme::separator());
        painter.drawRect(block.rect);
        for (const Block::Inner& inner : block.inside) { // the next level, a shade softer
            paintCushion(painter, inner.rect, inner.category, lit ? 0.62 : 0.42);
            painter.drawRect(inner.rect);
        }
        for (const Block::Inner& inner : block.inside) // named where the name fits, its size below when that fits too
            paintInnerLabel(painter, inner, metrics);
        if (&block == currentBlock() && hasFocus()) {
            painter.setPen(QPen(theme::cursorRing(), 2));
            painter.drawRect(block.rect.adjusted(1, 1, -1, -1));
        }
        if (block.rect.width() >= kLabelMinWidth && block.rect.height() >= kLabelMinHeight) {
            const QRectF inner = block.rect.adjusted(5, 3, -5, -3);
            const QString name = block.node ? block.node->displayName() : QStringLiteral("Files under 1 MB, together");
            const qint64 size = block.node ? block.node->size : m_node->smallFiles;
            painter.setPen(theme::text());
            painter.drawText(inner, Qt::AlignLeft | Qt::AlignTop,
                             metrics.elidedText(name, Qt::ElideMiddle, int(inner.width())) + u'\n' + byteCountText(size));
        }
    }
    paintLegend(painter);
}

void TreemapWidget::paintInnerLabel(QPainter& painter, const Block::Inner& inner, const QFontMetrics& metrics) const
{
    const int line = metrics.height();
    const QRect room = inner.rect.toAlignedRect().adjusted(4, 2, -4, -2);
    if (!inner.node || room.width() < kLabelMinWidth || room.height() < line)
        return;
    painter.setPen(theme::text());
    drawTextLine(&painter, metrics, QRect(room.left(), room.top(), room.width(), line), inner.node->displayName(), Qt::ElideMiddle);
    if (room.height() >= 2 * line) {
        painter.setPen(theme::dimText());
        drawTextLine(&painter, metrics, QRect(room.left(), room.top() + line, room.width(), line), byteCountText(inner.node->size));
    }
}

QRectF TreemapWidget::legendArea() const
{
    const qreal height = fontMetrics().height() + 8;
    return QRectF(0, height < rect().height() ? rect().height() - height : 0, width(), height);
}

void TreemapWidget::paintLegend(QPainter& painter) const
{
    const QRectF area = legendArea();
    const QFontMetrics metrics = fontMetrics();
    qreal x = area.left() + 2;
    for (const FileCategory category : m_legend) {
        const QString name = legendName(category);
        const qreal width = kSwatch + 5 + metrics.horizontalAdvance(name) + 14;
        if (x + width > area.right())
            break; // a narrow map names its largest categories
        const QRectF swatch(x, area.center().y() - kSwatch / 2.0, kSwatch, kSwatch);
        painter.fillRect(swatch, mixColors(theme::background(), theme::categoryTint(category), 0.55));
        painter.setPen(theme::dimText());
        painter.drawText(QRectF(swatch.right() + 5, area.top(), width, area.height()), Qt::AlignLeft | Qt::AlignVCenter, name);
        x += width;
    }
}

const TreemapWidget::Block* TreemapWidget::blockAt(const QPointF& point) const
{
    for (const Block& block : m_blocks)
        if (block.rect.contains(point))
            return &block;
    return nullptr;
}

void TreemapWidget::mouseMoveEvent(QMouseEvent* event)
{
    const Block* block = blockAt(event->position());
    if (block == m_hovered)
        return;
    m_hovered = block;
    Q_EMIT hovered(block ? describe(*block) : QString());
    update();
}

void TreemapWidget::leaveEvent(QEvent*)
{
    m_hovered = nullptr;
    Q_EMIT hovered({});
    update();
}

void TreemapWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (const Block* block = blockAt(event->position()); block && block->node)
        Q_EMIT clicked(block->node);
}

void TreemapWidget::contextMenuEvent(QContextMenuEvent* event)
{
    // The Menu key's press opens the current block's menu; X11's keyboard context event beside it
    // would open a second one for the block under the pointer.
    if (event->reason() != QContextMenuEvent::Mouse)
        return event->accept();
    if (const Block* block = blockAt(event->pos()); block && block->node)
        Q_EMIT menuRequested(block->node, event->globalPos());
}

} // namespace orwick
