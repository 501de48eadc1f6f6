#include "cli/CliPaths.h"

#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"

#include <cerrno>
#include <climits>
#include <sys/stat.h>

namespace orwick::cli {

namespace {
constexpr qsizetype kShownLength = 80; // longer arguments show their start and end
} // namespace

FilePath pathArgument(const QByteArray& argument) { return FilePath::fromNative(argument); }

QString shownArgument(const QByteArray& argument)
{
    QString text = visibleName(argument);
    if (text.size() > kShownLength)
        text = text.left(kShownLength / 2) + QStringLiteral("…") + text.right(kShownLength / 4);
    return quoted(text);
}

std::optional<QString> problemWith(const QByteArray& argument, Expect expect)
{
    if (argument.isEmpty())
        return QStringLiteral("An empty argument names no file.");
    const FilePath path = pathArgument(argument);
    // The kernel takes paths of at most PATH_MAX bytes with the closing NUL.
    if (path.native().size() >= PATH_MAX)
        return QStringLiteral("%1 can’t be used: the path is %2 bytes long, and Linux takes at most %3.")
            .arg(shownArgument(argument))
            .arg(path.native().size())
            .arg(PATH_MAX - 1);
    struct stat info {};
    const int result = expect == Expect::folder ? ::stat(path.c_str(), &info) : ::lstat(path.c_str(), &info);
    if (result != 0) {
        if (errno == ENOENT)
            return shownArgument(argument) + QStringLiteral(" isn’t there.");
        return QStringLiteral("%1 can’t be reached: %2.").arg(shownArgument(argument), errorReason(errno));
    }
    if (expect == Expect::folder && !S_ISDIR(info.st_mode))
        return shownArgument(argument) + QStringLiteral(" isn’t a folder.");
    return std::nullopt;
}

} // namespace orwick::cli
