#include "app/ShowInFolderService.h"

#include "app/OpenRouter.h"
#include "app/Settings.h"
#include "platform/BusActivationFile.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QUrl>

namespace orwick {

namespace {

QPointer<ShowInFolderService> sharedService;

// The object registered at /org/freedesktop/FileManager1: the interface's three methods.
class FileManager1 : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    explicit FileManager1(ShowInFolderService* service) : QObject(service), m_service(service) {}

public Q_SLOTS:
    void ShowFolders(const QStringList& uris, const QString& startupId) { m_service->show(uris, false, startupId); }
    void ShowItems(const QStringList& uris, const QString& startupId) { m_service->show(uris, true, startupId); }
    // There is no info panel yet: the items are selected in their folders.
    void ShowItemProperties(const QStringList& uris, const QString& startupId) { m_service->show(uris, true, startupId); }

private:
    ShowInFolderService* m_service;
};

QString taken() { return QStringLiteral("Another file manager answers “Show in folder” right now, so Orwick leaves it alone."); }

} // namespace

QString ShowInFolderService::helpText()
{
    return QStringLiteral("Other apps' “Show in folder” opens Orwick instead. Change it any time in Customize.");
}

ShowInFolderService* ShowInFolderService::instance() { return sharedService; }

ShowInFolderService::ShowInFolderService(OpenRouter* router, QObject* parent, std::optional<QDBusConnection> bus, QString program)
    : QObject(parent), m_router(router), m_bus(std::move(bus)),
      m_program(program.isEmpty() ? QCoreApplication::applicationFilePath() : std::move(program))
{
    sharedService = this;
    new FileManager1(this);
    // Each start brings the file up to date: a moved program, or one left behind with the
    // setting off (it would make the bus start an Orwick that doesn't answer).
    followActivationFile(isOn());
    if (isOn())
        claim();
}

ShowInFolderService::~ShowInFolderService() { release(); }

bool ShowInFolderService::isOn() const { return readSettingsBool(*openSettings(), QString::fromLatin1(settingKey), false); }

bool ShowInFolderService::isClaimed() const { return m_claimed; }

QString ShowInFolderService::problem() const { return m_problem.isEmpty() ? m_activationProblem : m_problem; }

void ShowInFolderService::setOn(bool on)
{
    openSettings()->setValue(QLatin1StringView(settingKey), on);
    followActivationFile(on);
    if (on)
        claim();
    else
        release();
    Q_EMIT stateChanged(); // the setting changed even when the claim did not
}

QDBusConnection& ShowInFolderService::bus()
{
    if (!m_bus)
        m_bus = QDBusConnection::sessionBus();
    return *m_bus;
}

void ShowInFolderService::claim()
{
    if (m_claimed)
        return;
    if (!bus().isConnected() || !bus().interface()) {
        setState(false, QStringLiteral("Orwick can't reach the desktop's message bus (D-Bus), so it can't answer “Show in folder”."));
        return;
    }
    // When the other file manager lets the name go, Orwick takes it, if the setting is still on.
    if (!m_watcher) {
        m_watcher = new QDBusServiceWatcher(QLatin1StringView(busName), bus(), QDBusServiceWatcher::WatchForUnregistration, this);
        connect(m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
            if (isOn() && !m_claimed)
                claim();
        });
    }
    auto* object = findChild<FileManager1*>();
    if (!bus().registerObject(QLatin1StringView(objectPath), object, QDBusConnection::ExportAllSlots)) {
        setState(false, taken());
        return;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = bus().interface()->registerService(
        QLatin1StringView(busName), QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        bus().unregisterObject(QLatin1StringView(objectPath));
        setState(false, reply.isValid() ? taken() : QStringLiteral("The desktop's message bus refused Orwick the name (%1).").arg(reply.error().message()));
        return;
    }
    setState(true, {});
}

void ShowInFolderService::release()
{
    if (m_claimed && bus().isConnected()) {
        bus().unregisterObject(QLatin1StringView(objectPath));
        bus().interface()->unregisterService(QLatin1StringView(busName));
    }
    setState(false, {});
}

void ShowInFolderService::setState(bool claimed, const QString& problem)
{
    if (claimed == m_claimed && problem == m_problem)
        return;
    m_claimed = claimed;
    m_problem = problem;
    Q_EMIT stateChanged();
}

void ShowInFolderService::followActivationFile(bool on)
{
    const Status done = on ? BusActivationFile::put(m_program) : BusActivationFile::take();
    m_activationProblem = done ? QString() : done.error();
}

OpenRequests ShowInFolderService::requestsFor(const QStringList& uris, bool reveal)
{
    OpenRequests requests;
    for (const QString& uri : uris) {
        FilePath path;
        if (uri.startsWith(QLatin1Char('/')))
            path = FilePath::fromNative(uri.toUtf8());
        else if (const QUrl url = QUrl::fromEncoded(uri.toUtf8(), QUrl::TolerantMode); url.isLocalFile())
            path = FilePath::fromUrl(url);
        if (!path.isEmpty())
            requests.append({path, reveal});
    }
    return requests;
}

void ShowInFolderService::show(const QStringList& uris, bool reveal, const QString& startupId)
{
    if (!m_router)
        return;
    OpenRouter::useActivationToken(startupId.toUtf8());
    m_router->open(requestsFor(uris, reveal));
}

} // namespace orwick

#include "ShowInFolderService.moc"

#include "moc_ShowInFolderService.cpp"
