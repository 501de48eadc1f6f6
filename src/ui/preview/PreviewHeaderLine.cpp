#include "ui/preview/PreviewHeaderLine.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace orwick {

PreviewHeaderLine::PreviewHeaderLine(Tone tone, QWidget* parent) : QWidget(parent), m_tone(tone)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFixedHeight(fontMetrics().height() + 2);
}

void PreviewHeaderLine::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    setToolTip(text);
    update();
}

QString PreviewHeaderLine::shownText() const
{
    return fontMetrics().elidedText(m_text, Qt::ElideRight, std::max(1, width()));
}

QSize PreviewHeaderLine::sizeHint() const { return {100, height()}; }
QSize PreviewHeaderLine::minimumSizeHint() const { return {0, height()}; }

void PreviewHeaderLine::paintEvent(QPaintEvent*)
{
    if (m_text.isEmpty())
        return;
    QPainter painter(this);
    painter.setPen(palette().color(m_tone == Tone::dim ? QPalette::PlaceholderText : QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

void PreviewHeaderLine::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // A new font (the theme's size, a bold title) changes the line's height, the one time its
    // size may change.
    if (event->type() == QEvent::FontChange)
        setFixedHeight(fontMetrics().height() + 2);
}

} // namespace orwick
