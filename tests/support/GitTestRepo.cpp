#include "support/GitTestRepo.h"

#include <QProcess>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace orwick::test {

GitTestRepo::GitTestRepo(const TempTree& tree, const QString& name) : m_root(tree.folder(name))
{
    git({QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("-b"), QStringLiteral("main")});
}

QByteArray GitTestRepo::gitIn(const FilePath& folder, const QStringList& arguments, bool mayFail)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GIT_CONFIG_NOSYSTEM"), QStringLiteral("1"));
    environment.insert(QStringLiteral("GIT_CONFIG_GLOBAL"), QStringLiteral("/dev/null"));
    for (const char* who : {"AUTHOR", "COMMITTER"}) {
        environment.insert(QStringLiteral("GIT_%1_NAME").arg(QLatin1StringView(who)), QStringLiteral("Orwick Test"));
        environment.insert(QStringLiteral("GIT_%1_EMAIL").arg(QLatin1StringView(who)), QStringLiteral("test@orwick.invalid"));
    }
    environment.insert(QStringLiteral("GIT_EDITOR"), QStringLiteral("true"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder.text());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("git"),
                  QStringList{QStringLiteral("-c"), QStringLiteral("protocol.file.allow=always")} + arguments);
    process.waitForFinished(60000);
    const QByteArray output = process.readAll();
    if (!mayFail) {
        EXPECT_TRUE(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
            << "git " << arguments.join(' ').toStdString() << ": " << output.toStdString();
    }
    return output;
}

QByteArray GitTestRepo::git(const QStringList& arguments, bool mayFail) const { return gitIn(m_root, arguments, mayFail); }

FilePath GitTestRepo::write(const QString& relative, const QByteArray& content) const
{
    const FilePath path = m_root.child(relative);
    QDir().mkpath(path.parent().text());
    QFile file(path.text());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
    return path;
}

void GitTestRepo::commitAll(const QString& message) const
{
    git({QStringLiteral("add"), QStringLiteral("-A")});
    git({QStringLiteral("commit"), QStringLiteral("-q"), QStringLiteral("-m"), message});
}

} // namespace orwick::test
