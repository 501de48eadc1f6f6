#include "ui/theme/ThemeSwatch.h"

#include "theme/ThemeStore.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace orwick::theme {

namespace {

QPixmap drawSwatch(const ThemeColors& colors, int edge)
{
    QPixmap pixmap(edge, edge);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(0, 0, edge, edge).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = edge * 0.18;
    QPainterPath outline;
    outline.addRoundedRect(card, radius, radius);
    painter.setClipPath(outline);
    painter.fillRect(card, colors.color(QStringLiteral("background")));
    painter.fillRect(QRectF(0, 0, edge * 0.34, edge), colors.color(QStringLiteral("sidebar")));
    painter.fillRect(QRectF(edge * 0.34, 0, 1, edge), colors.color(QStringLiteral("border")));
    // The text colour as a line over the accent as a dot: what sets one theme apart at a glance.
    const qreal middle = edge * 0.67;
    painter.fillRect(QRectF(middle - edge * 0.2, edge * 0.2, edge * 0.4, std::max(1.0, edge / 8.0)), colors.color(QStringLiteral("text")));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.color(QStringLiteral("accent")));
    const qreal dot = edge * 0.42;
    painter.drawEllipse(QRectF(middle - dot / 2, edge * 0.44, dot, dot));
    painter.setClipping(false);
    // An edge in the theme's own line colour keeps a swatch as pale as the menu apart from it.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.color(QStringLiteral("borderStrong")), 1.0));
    painter.drawRoundedRect(card, radius, radius);
    return pixmap;
}

} // namespace

QIcon themeSwatchIcon(const QString& name)
{
    const ThemeStore& store = ThemeStore::shared();
    // Drawn again when the store changes: a theme file saved, another appearance shown.
    static QHash<QString, QIcon> drawn;
    static int drawnAt = -1;
    if (drawnAt != store.revision()) {
        drawn.clear();
        drawnAt = store.revision();
    }
    if (const auto found = drawn.constFind(name); found != drawn.cend())
        return *found;
    const std::optional<ResolvedTheme> theme = store.resolve(name, store.accentOverride());
    if (!theme)
        return {};
    const ThemeColors& colors = theme->colors(theme->appearance.value_or(store.appearance()));
    QIcon icon;
    for (const int edge : {16, 32})
        icon.addPixmap(drawSwatch(colors, edge));
    drawn.insert(name, icon);
    return icon;
}

} // namespace orwick::theme
