#include "notes/NewNote.h"

#include "fileops/UniqueName.h"
#include "notes/NoteFile.h"

namespace orwick::NewNote {

QByteArray fileName(const QString& title)
{
    QString name;
    for (const QChar c : title)
        name.append(c == u'/' || c.category() == QChar::Other_Control || c == QChar(0) ? QChar(u' ') : c);
    name = name.simplified();
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    name = name.trimmed();
    if (name.isEmpty())
        name = QString::fromLatin1(kUntitled);
    QByteArray bytes = name.toUtf8();
    // 255 bytes a name, ".md" included, cut on a character boundary.
    while (bytes.size() > 252) {
        name.chop(name.size() > 1 && name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
        bytes = name.toUtf8();
    }
    return bytes + ".md";
}

PropertyMap valuesFromFilters(const FolderColumns& settings, const std::function<PropertyType(const QString&)>& typeOf)
{
    PropertyMap values;
    for (const PropertyFilter& filter : settings.filters) {
        const QString operand = filter.value.trimmed();
        const PropertyType type = typeOf(filter.key);
        switch (filter.condition) {
        case PropertyFilter::Condition::equals:
        case PropertyFilter::Condition::contains:
            if (operand.isEmpty())
                break;
            if (type == PropertyType::list)
                values.insert(filter.key, PropertyValue::ofList({operand}));
            else if (type == PropertyType::number && propertytext::parseDecimal(operand))
                values.insert(filter.key, PropertyValue::ofNumber(*propertytext::parseDecimal(operand)));
            else
                values.insert(filter.key, PropertyValue::ofText(operand));
            break;
        case PropertyFilter::Condition::checked:
            values.insert(filter.key, PropertyValue::ofBool(true));
            break;
        case PropertyFilter::Condition::unchecked:
            values.insert(filter.key, PropertyValue::ofBool(false));
            break;
        default:
            break;
        }
    }
    return values;
}

Result<Plan> plan(const FilePath& folder, const QString& title, const PropertyMap& values)
{
    const QString heading = title.simplified();
    QList<notefile::Change> changes;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        changes.append({it.key(), it.value(), std::nullopt});
    const QString body = heading.isEmpty() ? QString() : QStringLiteral("# ") + heading + QStringLiteral("\n");
    const QByteArray name = fileName(title);
    QString text = body;
    if (!changes.isEmpty()) {
        const auto withProperties = notefile::applyToNoteText(body, changes, QString::fromUtf8(name));
        if (!withProperties)
            return failure(withProperties.error());
        text = *withProperties;
    }
    return Plan{uniqueURL(folder.child(QByteArrayView(name)), false), text.toUtf8()};
}

} // namespace orwick::NewNote
