#include "places/TagList.h"

#include "base/FilePath.h"

namespace orwick {

namespace {

bool isSeparator(char c) { return c == ',' || c == ';' || c == '\n' || c == '\0'; }

// Spaces, tabs and carriage returns around a name are not part of it.
QByteArray trimmed(QByteArrayView bytes) { return bytes.trimmed().toByteArray(); }

} // namespace

TagList TagList::parse(QByteArrayView attribute)
{
    TagList list;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= attribute.size(); ++i) {
        if (i < attribute.size() && !isSeparator(attribute[i]))
            continue;
        const QByteArray item = trimmed(attribute.sliced(start, i - start));
        start = i + 1;
        if (!item.isEmpty() && !list.contains(displayName(item)))
            list.m_items.append(item);
    }
    return list;
}

std::optional<QByteArray> TagList::toAttribute() const
{
    if (m_items.isEmpty())
        return std::nullopt;
    return m_items.join(',');
}

QStringList TagList::names() const
{
    QStringList list;
    for (const QByteArray& item : m_items)
        list.append(displayName(item));
    return list;
}

QList<int> TagList::colors() const
{
    QList<int> list;
    for (const QByteArray& item : m_items)
        if (const auto color = FinderTag::colorIndex(displayName(item)))
            list.append(*color);
    return list;
}

bool TagList::contains(const QString& name) const
{
    for (const QByteArray& item : m_items)
        if (FinderTag::sameName(displayName(item), name))
            return true;
    return false;
}

bool TagList::add(const QString& name)
{
    // A separator inside the name would split it on the next read.
    QString cleaned = name;
    for (QChar& c : cleaned)
        if (c.unicode() < 128 && isSeparator(char(c.unicode())))
            c = u' ';
    const FinderTag tag = FinderTag::named(cleaned.simplified());
    if (tag.name.isEmpty() || contains(tag.name))
        return false;
    m_items.append(tag.name.toUtf8());
    return true;
}

bool TagList::remove(const QString& name)
{
    return m_items.removeIf([&name](const QByteArray& item) { return FinderTag::sameName(displayName(item), name); }) > 0;
}

} // namespace orwick
