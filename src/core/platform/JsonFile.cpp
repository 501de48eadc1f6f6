#include "platform/JsonFile.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace orwick {

std::optional<QJsonDocument> readJsonFile(const FilePath& path)
{
    QFile file(path.text());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return std::nullopt;
    return document;
}

Status writeJsonFile(const FilePath& path, const QJsonDocument& document)
{
    if (!QDir().mkpath(path.parent().text()))
        return failure(QStringLiteral("Couldn’t make the folder “%1”.").arg(path.parent().abbreviated()));
    QSaveFile file(path.text());
    if (!file.open(QIODevice::WriteOnly))
        return failure(QStringLiteral("Couldn’t write “%1”.").arg(path.abbreviated()));
    const QByteArray bytes = document.toJson(QJsonDocument::Indented);
    if (file.write(bytes) != bytes.size() || !file.commit())
        return failure(QStringLiteral("Couldn’t write “%1”: the disk may be full.").arg(path.abbreviated()));
    return {};
}

} // namespace orwick
