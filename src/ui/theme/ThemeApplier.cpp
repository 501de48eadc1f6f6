#include "ui/theme/ThemeApplier.h"

#include "theme/ThemeStore.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemedStyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QToolTip>

namespace orwick::theme {

namespace {

bool g_following = false;

Appearance noteSystemAppearance()
{
    static const Appearance noted = QApplication::palette().color(QPalette::Window).lightness() < 128 ? Appearance::dark
                                                                                                          : Appearance::light;
    return noted;
}

void apply()
{
    const ThemeStore& store = ThemeStore::shared();
    const QPalette palette = paletteFor(store.colors());
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
    // The theme's size is in pixels at the usual 96 dots per inch; points keep the sizes that
    // widgets derive from the base font (a smaller status line) working.
    QFont font = QApplication::font();
    if (const qreal points = store.current().fontSize * 72.0 / 96.0; !qFuzzyCompare(font.pointSizeF(), points)) {
        font.setPointSizeF(points);
        QApplication::setFont(font);
        // The windows hear of the font through posted events: delivered now, so that a window
        // being made is laid out with it before it first shows, not a frame later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::ApplicationFontChange);
    }
    // Row heights come from the theme: views lay their rows out again.
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* view = qobject_cast<QAbstractItemView*>(widget))
            view->doItemsLayout();
}

} // namespace

Appearance systemPaletteAppearance() { return noteSystemAppearance(); }

void follow()
{
    if (g_following)
        return;
    g_following = true;
    noteSystemAppearance();
    QApplication::setStyle(new ThemedStyle); // check boxes and radio buttons in the theme's colours
    apply();
    QObject::connect(&ThemeStore::shared(), &ThemeStore::changed, qApp, &apply);
}

QPalette paletteFor(const ThemeColors& colors)
{
    auto c = [&colors](const char* key) { return colors.color(QLatin1StringView(key)); };
    const QColor text = c("text");
    const QColor onAccent = c("accent").lightness() > 165 ? QColor(0x1D, 0x1E, 0x21) : QColor(Qt::white); // as theme::onAccent
    QPalette palette;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const bool disabled = group == QPalette::Disabled;
        const QColor foreground = disabled ? c("textTertiary") : text;
        palette.setColor(group, QPalette::Window, c("background"));
        palette.setColor(group, QPalette::WindowText, foreground);
        palette.setColor(group, QPalette::Base, c("background"));
        palette.setColor(group, QPalette::AlternateBase, c("hover"));
        palette.setColor(group, QPalette::Text, foreground);
        palette.setColor(group, QPalette::PlaceholderText, disabled ? c("textTertiary") : c("textSecondary"));
        palette.setColor(group, QPalette::Button, c("elevated"));
        palette.setColor(group, QPalette::ButtonText, foreground);
        palette.setColor(group, QPalette::BrightText, c("negative"));
        palette.setColor(group, QPalette::Light, c("elevated").lighter(110));
        palette.setColor(group, QPalette::Midlight, c("hover"));
        palette.setColor(group, QPalette::Mid, c("borderStrong"));
        palette.setColor(group, QPalette::Dark, c("borderStrong"));
        palette.setColor(group, QPalette::Shadow, mixColors(c("borderStrong"), QColor(Qt::black), 0.4));
        palette.setColor(group, QPalette::Highlight, disabled ? c("selectionUnfocused") : c("accent"));
        palette.setColor(group, QPalette::HighlightedText, disabled ? c("textTertiary") : onAccent);
        palette.setColor(group, QPalette::Link, c("accent"));
        palette.setColor(group, QPalette::LinkVisited, c("accent"));
        palette.setColor(group, QPalette::ToolTipBase, c("elevated"));
        palette.setColor(group, QPalette::ToolTipText, text);
    }
    return palette;
}

void whenChanged(QObject* context, std::function<void()> apply)
{
    apply();
    QObject::connect(&ThemeStore::shared(), &ThemeStore::changed, context, std::move(apply));
}

} // namespace orwick::theme
