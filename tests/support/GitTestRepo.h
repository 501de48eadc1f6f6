#pragma once
// A real git repository in a temporary folder, driven by the real git with a fixed identity and
// no global or system configuration, so tests see exactly what git prints on a user's machine.

#include "support/TempHome.h"

#include <QStringList>

namespace orwick::test {

class GitTestRepo {
public:
    // Makes `name` under the temporary tree and runs `git init -b main` in it.
    explicit GitTestRepo(const TempTree& tree, const QString& name = QStringLiteral("repo"));

    FilePath root() const { return m_root; }
    FilePath path(const QString& relative) const { return m_root.child(relative); }

    // Runs git in the repository; a failure fails the test unless `mayFail`.
    QByteArray git(const QStringList& arguments, bool mayFail = false) const;
    // Runs git in `folder` (for clones, worktrees…).
    static QByteArray gitIn(const FilePath& folder, const QStringList& arguments, bool mayFail = false);

    FilePath write(const QString& relative, const QByteArray& content) const;
    void commitAll(const QString& message) const;

private:
    FilePath m_root;
};

} // namespace orwick::test
