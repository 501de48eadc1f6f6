#include "disktools/DuplicatesChoice.h"

namespace orwick {

void DuplicatesChoice::tickExtraCopies()
{
    for (const Duplicates::Group& group : m_scan.groups) {
        const FilePath& keep = Duplicates::suggestedKeep(group).url;
        for (const Duplicates::File& file : group.files) {
            if (file.url == keep)
                m_chosen.remove(file.url);
            else
                m_chosen.insert(file.url);
        }
    }
}

void DuplicatesChoice::toggle(const FilePath& file)
{
    if (!m_chosen.remove(file))
        m_chosen.insert(file);
}

std::vector<FilePath> DuplicatesChoice::toTrash() const
{
    std::vector<FilePath> out;
    for (const Duplicates::Group& group : m_scan.groups)
        for (const Duplicates::File& file : group.files)
            if (m_chosen.contains(file.url))
                out.push_back(file.url);
    return out;
}

qint64 DuplicatesChoice::chosenBytes() const
{
    qint64 bytes = 0;
    for (const Duplicates::Group& group : m_scan.groups)
        for (const Duplicates::File& file : group.files)
            if (m_chosen.contains(file.url))
                bytes += group.size;
    return bytes;
}

void DuplicatesChoice::removeMoved(const std::vector<FilePath>& moved)
{
    const QSet<FilePath> gone(moved.begin(), moved.end());
    for (Duplicates::Group& group : m_scan.groups)
        std::erase_if(group.files, [&](const Duplicates::File& file) { return gone.contains(file.url); });
    std::erase_if(m_scan.groups, [](const Duplicates::Group& group) { return group.files.size() < 2; });
    for (const FilePath& file : moved)
        m_chosen.remove(file);
}

} // namespace orwick
