#include "theme/SystemColorScheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace orwick {

namespace {

const QString kNamespace = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

QDBusMessage readMessage()
{
    QDBusMessage message = QDBusMessage::createMethodCall(QLatin1StringView(SystemColorScheme::portalService),
                                                          QLatin1StringView(SystemColorScheme::portalPath),
                                                          QLatin1StringView(SystemColorScheme::portalInterface), QStringLiteral("Read"));
    message << kNamespace << kKey;
    return message;
}

// The portal's Read wraps the value in one variant more than SettingChanged does.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

SystemColorScheme::SystemColorScheme(const QDBusConnection& bus, std::function<Appearance()> fallback, int waitMs, QObject* parent)
    : QObject(parent), m_bus(bus), m_fallback(std::move(fallback))
{
    if (!m_bus.isConnected())
        return;
    m_bus.connect(QLatin1StringView(portalService), QLatin1StringView(portalPath), QLatin1StringView(portalInterface),
                  QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QString,QString,QDBusVariant)));
    const QDBusMessage reply = m_bus.call(readMessage(), QDBus::Block, waitMs);
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        m_portal = fromPortalValue(reply.arguments().constFirst());
        return;
    }
    if (reply.errorName() != QLatin1StringView("org.freedesktop.DBus.Error.NoReply"))
        return; // no portal, or one without the setting: the fallback decides
    // A portal that is starting answers later; its answer applies when it comes.
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(readMessage()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        const QDBusMessage answer = call->reply();
        if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty())
            setPortal(fromPortalValue(answer.arguments().constFirst()));
    });
}

Appearance SystemColorScheme::appearance() const
{
    if (m_portal)
        return *m_portal;
    return m_fallback ? m_fallback() : Appearance::light;
}

std::optional<Appearance> SystemColorScheme::fromPortalValue(const QVariant& value)
{
    bool ok = false;
    const uint scheme = unwrapped(value).toUInt(&ok);
    if (!ok)
        return std::nullopt;
    if (scheme == 1)
        return Appearance::dark;
    if (scheme == 2)
        return Appearance::light;
    return std::nullopt;
}

void SystemColorScheme::settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value)
{
    if (nameSpace == kNamespace && key == kKey)
        setPortal(fromPortalValue(value.variant()));
}

void SystemColorScheme::setPortal(std::optional<Appearance> portal)
{
    const Appearance before = appearance();
    m_portal = portal;
    if (appearance() != before)
        Q_EMIT changed();
}

} // namespace orwick

#include "moc_SystemColorScheme.cpp"
