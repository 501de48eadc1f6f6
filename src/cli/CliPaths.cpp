#include "cli/CliPaths.h"
#include "cli/CliCommand.h"

#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"
#include "rename/FolderNames.h"

#include <cerrno>
#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::cli {

namespace {
constexpr qsizetype kShownLength = 80; // longer arguments show their start and end

// An argument whose path is its bytes read literally: no "." or ".." to resolve and no trailing
// "/" (which asks for a folder). Its item is the entry of that name in its folder, so a read of
// the folder can say it is there; any other argument is checked with a stat.
bool namesEntryPlainly(QByteArrayView argument)
{
    if (argument.isEmpty() || argument.endsWith('/') || argument.size() >= PATH_MAX)
        return false;
    return argument != ".." && !argument.startsWith("../") && !argument.endsWith("/..")
        && !argument.contains("/../");
}
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

QList<ItemArgument> itemArguments(const QList<QByteArray>& arguments, FolderNamesCache& folders)
{
    QByteArray workingFolder(PATH_MAX, '\0');
    if (::getcwd(workingFolder.data(), size_t(workingFolder.size())))
        workingFolder.truncate(qstrlen(workingFolder.constData()));
    else
        workingFolder.clear();
    const FilePath working = FilePath::fromNative(workingFolder);
    QList<ItemArgument> items;
    items.reserve(arguments.size());
    QList<bool> plain;
    plain.reserve(arguments.size());
    QList<FilePath> plainPaths;
    plainPaths.reserve(arguments.size());
    for (const QByteArray& argument : arguments) {
        const bool relative = !argument.isEmpty() && !argument.startsWith('/') && !workingFolder.isEmpty();
        if (relative) {
            // "./IMG_0001.jpg" as a shell's "./*.jpg" gives it: the working folder's own entry,
            // joined without the "./" so that the path needs no tidying (one allocation).
            QByteArrayView rest(argument);
            while (rest.startsWith("./"))
                rest = rest.sliced(2);
            items.append({working.child(rest), {}});
        } else {
            items.append({pathArgument(argument), {}});
        }
        plain.append(namesEntryPlainly(argument) && items.last().path.native().size() < PATH_MAX);
        if (plain.last())
            plainPaths.append(items.last().path);
    }
    folders.expect(plainPaths);
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        ItemArgument& item = items[i];
        const bool seen = plain[i] && folders.around(item.path).holds(nameOf(item.path)) == FolderNames::Answer::held;
        if (!seen)
            item.problem = problemWith(arguments[i], Expect::anything);
    }
    return items;
}

QList<FilePath> usableItems(const QList<QByteArray>& arguments)
{
    QList<FilePath> items;
    for (const QByteArray& argument : arguments) {
        if (const auto problem = problemWith(argument, Expect::anything))
            err() << *problem << Qt::endl;
        else
            items.append(pathArgument(argument));
    }
    return items;
}

} // namespace orwick::cli
