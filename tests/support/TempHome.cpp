#include "support/TempHome.h"

#include <QDir>
#include <QFile>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::test {

namespace {
QByteArray& homeRoot()
{
    static QByteArray root;
    return root;
}

void makeParents(const FilePath& path)
{
    QByteArray bytes = path.parent().native();
    for (qsizetype i = 1; i <= bytes.size(); ++i)
        if (i == bytes.size() || bytes[i] == '/')
            mkdir(bytes.left(i).constData(), 0755);
}
} // namespace

FilePath tempHome() { return FilePath::fromNative(homeRoot()); }

void pointHomeAt(const QByteArray& root)
{
    homeRoot() = root;
    for (const char* sub : {"/.local/share", "/.config", "/.cache", "/runtime"})
        QDir().mkpath(QString::fromUtf8(root + sub));
    chmod((root + "/runtime").constData(), 0700);
    setenv("HOME", root.constData(), 1);
    setenv("XDG_DATA_HOME", (root + "/.local/share").constData(), 1);
    setenv("XDG_CONFIG_HOME", (root + "/.config").constData(), 1);
    setenv("XDG_CACHE_HOME", (root + "/.cache").constData(), 1);
    setenv("XDG_RUNTIME_DIR", (root + "/runtime").constData(), 1);
    unsetenv("XDG_DATA_DIRS_OVERRIDE");
}

TempTree::TempTree() : m_root(FilePath::fromNative(QFile::encodeName(m_dir.path()))) {}

FilePath TempTree::file(const QString& relative, const QByteArray& content) const
{
    return file(relative.toUtf8(), content);
}

FilePath TempTree::file(const QByteArray& relativeBytes, const QByteArray& content) const
{
    const FilePath path = m_root.child(QByteArrayView(relativeBytes));
    if (!writeFile(path, content))
        perror("TempTree::file");
    return path;
}

FilePath TempTree::folder(const QString& relative) const
{
    const FilePath path = m_root.child(relative);
    QDir().mkpath(path.text());
    return path;
}

FilePath TempTree::link(const QString& relative, const QByteArray& target) const
{
    const FilePath path = m_root.child(relative);
    makeParents(path);
    if (symlink(target.constData(), path.c_str()) != 0)
        perror("TempTree::link");
    return path;
}

void TempTree::touch(const FilePath& path, qint64 seconds) const
{
    struct timespec times[2] = {{seconds, 0}, {seconds, 0}};
    utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

bool writeFile(const FilePath& path, const QByteArray& content)
{
    makeParents(path);
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    const bool written = content.isEmpty() || ::write(fd, content.constData(), content.size()) == content.size();
    return ::close(fd) == 0 && written;
}

QByteArray readAll(const FilePath& path)
{
    QByteArray content;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return content;
    char buffer[65536];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0)
        content.append(buffer, n);
    ::close(fd);
    return content;
}

bool exists(const FilePath& path)
{
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

} // namespace orwick::test
