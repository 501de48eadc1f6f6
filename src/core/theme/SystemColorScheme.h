#pragma once
// SystemColorScheme: whether the desktop asks for light or dark, followed live. The answer comes
// from the freedesktop settings portal (org.freedesktop.portal.Settings, key "color-scheme" of
// "org.freedesktop.appearance": 1 prefers dark, 2 prefers light, 0 has no preference) on the
// session bus, read at construction and then kept by its SettingChanged signal. Without a portal,
// or with no preference, the fallback decides (the program gives the Qt palette's lightness as
// the desktop style set it at start).
//
// On the GUI thread. changed() follows every change of appearance(), never a repeat of the same.

#include "theme/ThemeColors.h"

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

class QDBusVariant;

namespace orwick {

class SystemColorScheme : public QObject {
    Q_OBJECT
public:
    static constexpr const char* portalService = "org.freedesktop.portal.Desktop";
    static constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
    static constexpr const char* portalInterface = "org.freedesktop.portal.Settings";

    // Reads the portal on `bus`, waiting at most `waitMs` so that the first window is drawn in
    // the right colours; a portal that is slower to answer is listened to when it does.
    explicit SystemColorScheme(const QDBusConnection& bus, std::function<Appearance()> fallback, int waitMs = 300,
                               QObject* parent = nullptr);

    // What the portal says, when it says light or dark.
    std::optional<Appearance> portalAppearance() const { return m_portal; }
    Appearance appearance() const;

    // Reads the portal's "color-scheme" value (1 dark, 2 light, anything else none).
    static std::optional<Appearance> fromPortalValue(const QVariant& value);

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value);

private:
    void setPortal(std::optional<Appearance> portal);

    QDBusConnection m_bus;
    std::function<Appearance()> m_fallback;
    std::optional<Appearance> m_portal;
};

} // namespace orwick
