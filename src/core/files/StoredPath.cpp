#include "files/StoredPath.h"

namespace orwick {

QString storedPathText(const FilePath& path)
{
    if (isValidUtf8(path.native()))
        return path.text();
    return path.toUrl().toString(QUrl::FullyEncoded);
}

FilePath pathFromStoredText(const QString& text)
{
    if (text.startsWith(QLatin1StringView("file:")))
        return FilePath::fromUrl(QUrl(text, QUrl::StrictMode));
    if (!text.startsWith(QLatin1Char('/')))
        return {};
    return FilePath::fromNative(text.toUtf8());
}

} // namespace orwick
