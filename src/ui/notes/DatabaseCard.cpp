#include "ui/notes/DatabaseCard.h"

#include "ui/theme/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QWidget>

namespace orwick {

QStringList cardLines(const DatabaseColumns& database, const FilePath& item, const QStringList& keys)
{
    QStringList lines;
    for (const QString& key : keys)
        if (const auto value = database.value(item, key); value && !value->text().isEmpty())
            lines.append(key + QStringLiteral(": ") + value->text());
    return lines;
}

int cardHeight(const QWidget* widget, int lines)
{
    const int line = widget->fontMetrics().height();
    return 12 + line + 4 + lines * (line + 2);
}

void drawCard(QPainter& painter, const QWidget* widget, const QRect& rect, const QString& title, const QStringList& lines,
              const CardLook& look)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& palette = widget->palette();
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), theme::cornerRadius(), theme::cornerRadius());
    painter.fillPath(shape, look.selected ? theme::selection() : palette.color(QPalette::Base));
    painter.setPen(QPen(look.cursor && look.focused ? theme::cursorRing() : theme::separator(), look.cursor ? 2 : 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(shape);
    const QRect inner = rect.adjusted(8, 6, -8, -6);
    const int line = widget->fontMetrics().height();
    QFont bold = widget->font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette.color(QPalette::Text));
    painter.drawText(QRect(inner.left(), inner.top(), inner.width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(bold).elidedText(title, Qt::ElideRight, inner.width()));
    painter.setFont(widget->font());
    painter.setPen(palette.color(QPalette::PlaceholderText));
    int y = inner.top() + line + 4;
    for (const QString& text : lines) {
        if (y + line > inner.bottom() + 1)
            break;
        painter.drawText(QRect(inner.left(), y, inner.width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                         widget->fontMetrics().elidedText(text, Qt::ElideRight, inner.width()));
        y += line + 2;
    }
    painter.restore();
}

} // namespace orwick
