#pragma once
// ShowInFolderService: Orwick answering other programs' "Show in folder" requests, through the
// freedesktop interface org.freedesktop.FileManager1 on the session bus (ShowFolders, ShowItems,
// ShowItemProperties). The bus name is claimed only while the setting "takeOverShowInFolder" is
// on (default off). When another program holds the name, or there is no session bus, Orwick runs
// on without it and problem() says why, in a sentence the settings sheet shows.
//
// One instance per process, made by the program at start; instance() is null until then (and in
// tests that don't make one). The requests go to the open router: ShowFolders opens the folders,
// ShowItems and ShowItemProperties select the items in their folders. While the setting is on,
// the bus can also start Orwick for such a request when none runs (BusActivationFile.h).
//
// Signals: stateChanged() follows every change of isOn(), isClaimed() or problem().

#include "app/OpenRequest.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QString>
#include <optional>

class QDBusServiceWatcher;

namespace orwick {

class OpenRouter;

class ShowInFolderService : public QObject {
    Q_OBJECT
public:
    static constexpr const char* settingKey = "takeOverShowInFolder";
    // The help text the settings sheet shows under the switch.
    static QString helpText();

    static constexpr const char* busName = "org.freedesktop.FileManager1";
    static constexpr const char* objectPath = "/org/freedesktop/FileManager1";

    // Claims the name at once when the setting is on; becomes instance(). `bus` is the session
    // bus unless given; it is reached only once the setting is on. `program` is what the bus
    // starts for a request while no Orwick runs: this program unless given.
    explicit ShowInFolderService(OpenRouter* router, QObject* parent = nullptr,
                                 std::optional<QDBusConnection> bus = std::nullopt, QString program = {});
    ~ShowInFolderService() override; // gives the name back

    static ShowInFolderService* instance();

    bool isOn() const;          // the setting
    bool isClaimed() const;     // the bus name is ours now
    // Why it is on but not claimed, or else why the bus can't start Orwick; empty otherwise.
    QString problem() const;
    // Stores the setting, claims or releases the name at once, and puts the bus's activation
    // file in place or takes it away.
    void setOn(bool on);

    // The requests of the D-Bus methods, as the router gets them (file URIs or absolute paths;
    // anything else is left out).
    static OpenRequests requestsFor(const QStringList& uris, bool reveal);
    // `startupId` lets the window come to the front where the desktop asks for one.
    void show(const QStringList& uris, bool reveal, const QString& startupId = {});

Q_SIGNALS:
    void stateChanged();

private:
    void claim();
    void release();
    void setState(bool claimed, const QString& problem);
    void followActivationFile(bool on);

    QPointer<OpenRouter> m_router;
    QDBusConnection& bus();

    std::optional<QDBusConnection> m_bus;
    QDBusServiceWatcher* m_watcher = nullptr;
    QString m_program;
    bool m_claimed = false;
    QString m_problem;
    QString m_activationProblem;
};

} // namespace orwick
