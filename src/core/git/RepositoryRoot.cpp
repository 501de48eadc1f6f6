#include "git/RepositoryRoot.h"

#include "git/GitFolder.h"

namespace orwick {

std::optional<FilePath> findRepositoryRoot(const FilePath& folder)
{
    const QByteArray& native = folder.native();
    if (const auto root = findGitRoot(std::string_view(native.constData(), size_t(native.size()))))
        return FilePath::fromNative(QByteArray::fromStdString(*root));
    return std::nullopt;
}

} // namespace orwick
