#pragma once
// The fixture of the git action tests: a real repository with an identity of its own, a second
// local bare repository to serve as its remote, and a second working copy of that remote to play
// the colleague who pushes meanwhile. Git runs as Orwick runs it (GitRepository).

#include "git/GitRepository.h"
#include "git/GitRunner.h"
#include "support/GitTestRepo.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QByteArray& bytes, std::ostream* out) { *out << '"' << bytes.toStdString() << '"'; }

namespace orwick::test {

class GitActionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH";
        identify(repo.root());
    }

    // The repository's own identity: Orwick's git reads no test configuration.
    static void identify(const FilePath& folder)
    {
        GitTestRepo::gitIn(folder, {QStringLiteral("config"), QStringLiteral("user.name"), QStringLiteral("Orwick Test")});
        GitTestRepo::gitIn(folder, {QStringLiteral("config"), QStringLiteral("user.email"), QStringLiteral("test@orwick.invalid")});
    }

    GitRepository actions() const { return GitRepository(gitExecutable(), repo.root()); }

    // A bare repository "remote.git" beside the working copy, added as its "origin".
    FilePath addRemote()
    {
        const FilePath bare = tree.folder(QStringLiteral("remote.git"));
        GitTestRepo::gitIn(bare, {QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("--bare"), QStringLiteral("-b"),
                                  QStringLiteral("main")});
        repo.git({QStringLiteral("remote"), QStringLiteral("add"), QStringLiteral("origin"), bare.text()});
        return bare;
    }

    // A second working copy of `bare`, cloned into "colleague", with its own identity.
    FilePath cloneAsColleague(const FilePath& bare)
    {
        GitTestRepo::gitIn(tree.root(), {QStringLiteral("clone"), QStringLiteral("-q"), bare.text(), QStringLiteral("colleague")});
        const FilePath colleague = tree.path(QStringLiteral("colleague"));
        identify(colleague);
        return colleague;
    }

    // Git's own answers, for checking what an action did.
    QString gitText(const QStringList& arguments) const { return QString::fromUtf8(repo.git(arguments, true)).trimmed(); }
    QString head() const { return gitText({QStringLiteral("rev-parse"), QStringLiteral("HEAD")}); }
    QByteArray stagedNames() const
    {
        return repo.git({QStringLiteral("diff"), QStringLiteral("--cached"), QStringLiteral("--name-only"), QStringLiteral("-z")}, true);
    }

    TempTree tree;
    GitTestRepo repo{tree};
};

} // namespace orwick::test
