#include "ui/views/GitMarks.h"

#include "ui/theme/TextLine.h"
#include "ui/theme/Theme.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

namespace orwick {

namespace {

constexpr int padding = 6;
constexpr int dotSize = 5;

// Made once: a font resolved again for every row's paint costs more than drawing its letter.
const QFont& letterFont()
{
    static const QFont* const font = [] {
        auto* made = new QFont; // never freed: a QFont must not outlive the application's fonts
        made->setPointSizeF(9.5);
        made->setBold(true);
        return made;
    }();
    return *font;
}

const QFontMetrics& letterMetrics()
{
    static const QFontMetrics* const metrics = new QFontMetrics(letterFont());
    return *metrics;
}

std::optional<int> markOf(const QModelIndex& index)
{
    const QVariant mark = index.data(GitMarkRole);
    if (!mark.isValid())
        return std::nullopt;
    return mark.toInt();
}

} // namespace

QColor gitMarkColor(Change change)
{
    switch (change) {
    case Change::modified: return theme::warning();
    case Change::added:
    case Change::untracked: return theme::positive();
    case Change::deleted:
    case Change::conflicted: return theme::negative();
    case Change::renamed: return theme::informative();
    }
    return theme::dimText();
}

int gitMarkWidth(const QModelIndex& index)
{
    const auto mark = markOf(index);
    if (!mark)
        return 0;
    if (*mark == changesBelowMark)
        return dotSize + 2 * padding;
    static const int letterWidth = letterMetrics().horizontalAdvance(QLatin1Char('M'));
    return letterWidth + 2 * padding;
}

void paintGitMark(QPainter* painter, const QRect& cell, const QModelIndex& index)
{
    const auto mark = markOf(index);
    if (!mark)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (*mark == changesBelowMark) {
        QColor orange = theme::warning();
        orange.setAlphaF(0.85f);
        const QRectF dot(cell.right() - padding - dotSize + 1, cell.center().y() - dotSize / 2.0, dotSize, dotSize);
        painter->setPen(Qt::NoPen);
        painter->setBrush(orange);
        painter->drawEllipse(dot);
    } else {
        const Change change = Change(*mark);
        painter->setFont(letterFont());
        painter->setPen(gitMarkColor(change));
        const QRect area(cell.right() - gitMarkWidth(index) + 1, cell.top(), gitMarkWidth(index) - padding, cell.height());
        drawTextLine(painter, letterMetrics(), area, changeLetter(change), Qt::ElideNone, Qt::AlignRight);
    }
    painter->restore();
}

} // namespace orwick
