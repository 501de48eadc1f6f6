#include "servers/RecentServers.h"

#include "servers/ServerAddress.h"

namespace orwick {

namespace {

QString standard(const QString& address)
{
    const auto parsed = ServerAddress::parse(address);
    return parsed ? parsed->toString() : QString();
}

} // namespace

QStringList withRecentServer(const QStringList& recent, const QString& address, int max)
{
    const QString added = standard(address);
    if (added.isEmpty())
        return recent;
    QStringList list{added};
    for (const QString& entry : recent)
        if (list.size() < max && standard(entry) != added)
            list.append(entry);
    return list;
}

QStringList withoutRecentServer(const QStringList& recent, const QString& address)
{
    const QString removed = standard(address);
    QStringList list;
    for (const QString& entry : recent)
        if (standard(entry) != removed)
            list.append(entry);
    return list;
}

QStringList cleanRecentServers(const QStringList& stored, int max)
{
    QStringList list;
    for (const QString& entry : stored) {
        const QString address = standard(entry);
        if (!address.isEmpty() && !list.contains(address) && list.size() < max)
            list.append(address);
    }
    return list;
}

} // namespace orwick
