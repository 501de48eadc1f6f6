#include "preview/FontSample.h"

#include "preview/FileHead.h"

#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>

namespace orwick::preview {

namespace {

// Draws `text` at `baseline` in `font`; returns the line's height.
qreal drawLine(QPainter& painter, const QRawFont& font, const QString& text, qreal baseline)
{
    const QList<quint32> glyphs = font.glyphIndexesForString(text);
    const QList<QPointF> advances = font.advancesForGlyphIndexes(glyphs);
    QList<QPointF> positions;
    positions.reserve(glyphs.size());
    QPointF pen(12, 0);
    for (const QPointF& advance : advances) {
        positions.append(pen);
        pen += advance;
    }
    QGlyphRun run;
    run.setRawFont(font);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    painter.drawGlyphRun(QPointF(0, baseline), run);
    return font.ascent() + font.descent();
}

} // namespace

Result<FontSample> drawFontSample(const FilePath& path, qint64 maxBytes, int width, QColor ink, const CancelFlag& cancel)
{
    const auto head = readHead(path, maxBytes, cancel);
    if (!head)
        return failure(head.error());
    if (!head->isWhole())
        return failure(QStringLiteral("Too large to preview"));
    QRawFont probe(head->bytes, 32);
    if (!probe.isValid())
        return failure(QStringLiteral("“%1” isn’t a font Orwick can read.").arg(path.fileName()));
    FontSample sample;
    sample.family = probe.familyName();
    sample.style = probe.styleName();
    if (cancel.isCancelled())
        return sample;
    const struct Line {
        QString text;
        int pixels;
    } lines[] = {
        {sample.family + (sample.style.isEmpty() ? QString() : QStringLiteral(" ") + sample.style), 30},
        {QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), 22},
        {QStringLiteral("abcdefghijklmnopqrstuvwxyz"), 22},
        {QStringLiteral("0123456789 .,;:!?&@(){}[]"), 22},
        {QStringLiteral("The quick brown fox jumps over the lazy dog."), 18},
        {QStringLiteral("The quick brown fox jumps over the lazy dog."), 13},
    };
    int height = 16;
    for (const Line& line : lines)
        height += int(line.pixels * 1.5);
    sample.image = QImage(std::max(width, 64), height, QImage::Format_ARGB32_Premultiplied);
    sample.image.fill(Qt::transparent);
    QPainter painter(&sample.image);
    painter.setPen(ink);
    painter.setRenderHint(QPainter::TextAntialiasing);
    qreal y = 8;
    for (const Line& line : lines) {
        const QRawFont font(head->bytes, line.pixels);
        y += font.ascent();
        drawLine(painter, font, line.text, y);
        y += font.descent() + line.pixels * 0.4;
    }
    return sample;
}

} // namespace orwick::preview
