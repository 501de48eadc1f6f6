#pragma once
// Colours as themes write them ("#RRGGBB"), the colour keys Orwick knows, and a complete colour
// set for one appearance (ThemeColors). Plain values; no widgets.
//
// Keys: the seven base keys every theme gives; the derived keys, computed from the base ones
// unless a theme sets them; the syntax colours of the text preview; the status colours (git
// marks, notes, failures); the file-category tints ("category.image"…) of icons and the treemap;
// the colour tags' dots ("tag.red"…).

#include <QColor>
#include <QMap>
#include <QString>
#include <QStringList>
#include <optional>

namespace orwick {

enum class Appearance { light, dark };

QString appearanceName(Appearance appearance); // "light" / "dark"
std::optional<Appearance> appearanceFromName(QStringView name);

namespace themekeys {
const QStringList& base();     // background, sidebar, elevated, text, textSecondary, textTertiary, accent
const QStringList& derived();  // hover, pressed, selection, selectionUnfocused, border, borderStrong, accentFill
const QStringList& syntax();   // keyword, string, comment, number, type, function, property, attribute
const QStringList& status();   // warning, positive, negative, informative
const QStringList& category(); // "category." + each FileCategory's name
// "tag.gray", "tag.green", "tag.purple", "tag.blue", "tag.yellow", "tag.red", "tag.orange": in
// the order of the colour tags' indices 1–7 (FinderTag.h), so tag()[index - 1] is a tag's key.
const QStringList& tag();
bool isKnown(const QString& key);
} // namespace themekeys

// "#RRGGBB" (either case) as an opaque colour; nothing for any other text.
std::optional<QColor> parseThemeColor(QStringView text);
// "#RRGGBB", upper case.
QString themeColorText(const QColor& color);
// CSS text for views that render HTML: "rgba(R,G,B,A)", alpha with three decimals.
QString cssColor(const QColor& color);
// `from` moved `amount` (0–1) of the way to `to`; opaque.
QColor mixColors(const QColor& from, const QColor& to, double amount);

// One appearance's colours, every known key filled once resolved.
class ThemeColors {
public:
    ThemeColors() = default;
    explicit ThemeColors(QMap<QString, QColor> values) : m_values(std::move(values)) {}

    // The colour under `key`; an invalid QColor when there is none.
    QColor color(const QString& key) const { return m_values.value(key); }
    bool has(const QString& key) const { return m_values.contains(key); }
    void set(const QString& key, const QColor& color) { m_values.insert(key, color); }
    void remove(const QString& key) { m_values.remove(key); }
    const QMap<QString, QColor>& values() const { return m_values; }
    // Whether the background is dark (picks the direction of derived tints).
    bool isDark() const;
    // Fills every derived key that is missing from the base keys.
    void deriveMissing();

    bool operator==(const ThemeColors&) const = default;

private:
    QMap<QString, QColor> m_values;
};

} // namespace orwick
