#include "places/KnownTags.h"

#include <QMutex>

namespace orwick::KnownTags {

namespace {
struct Published {
    QMutex lock;
    TaggedFolders folders;
    bool complete = false;
};
Published& published()
{
    static Published state;
    return state;
}
} // namespace

void publish(const TaggedFolders& folders, bool complete)
{
    Published& state = published();
    QMutexLocker locked(&state.lock);
    state.folders = folders;
    state.complete = complete;
}

std::optional<QList<FilePath>> tagged(const QString& tag, const FilePath& root)
{
    TaggedFolders folders;
    {
        Published& state = published();
        QMutexLocker locked(&state.lock);
        if (!state.complete)
            return std::nullopt;
        folders = state.folders;
    }
    QList<FilePath> files;
    for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder)
        if (root.contains(folder.key()))
            for (auto file = folder->cbegin(); file != folder->cend(); ++file)
                if (file.value().contains(tag))
                    files.append(file.key());
    return files;
}

} // namespace orwick::KnownTags
