#include "help/GuideTopics.h"

#include <QFile>

namespace orwick::guide {

const QList<GuideTopic>& topics()
{
    static const QList<GuideTopic> list{
        {QStringLiteral("gettingAround"), QStringLiteral("Getting Around"), QStringLiteral(":/guide/getting-around.md")},
        {QStringLiteral("copyingAndMoving"), QStringLiteral("Copying and Moving"), QStringLiteral(":/guide/copying-and-moving.md")},
        {QStringLiteral("searchAndFilter"), QStringLiteral("Search and Filter"), QStringLiteral(":/guide/search-and-filter.md")},
        {QStringLiteral("notesAndProperties"), QStringLiteral("Notes and Properties"), QStringLiteral(":/guide/notes-and-properties.md")},
        {QStringLiteral("reviewingGitChanges"), QStringLiteral("Reviewing Git Changes"), QStringLiteral(":/guide/reviewing-git-changes.md")},
        {QStringLiteral("diskTools"), QStringLiteral("Disk Tools"), QStringLiteral(":/guide/disk-tools.md")},
        {QStringLiteral("terminal"), QStringLiteral("The Terminal"), QStringLiteral(":/guide/the-terminal.md")},
        {QStringLiteral("pictures"), QStringLiteral("Pictures"), QStringLiteral(":/guide/pictures.md")},
    };
    return list;
}

const GuideTopic* find(const QString& id)
{
    for (const GuideTopic& topic : topics())
        if (topic.id == id)
            return &topic;
    return nullptr;
}

QString articleText(const GuideTopic& topic)
{
    QFile file(topic.resource);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

} // namespace orwick::guide
