#pragma once
// Reading what git prints for the review's lists — commits, branches, stashes — and cutting a
// diff to what is shown. Pure functions of git's output; safe on any thread. Records that don't
// have their fields are passed over, never guessed at.

#include "git/GitRepository.h"

namespace orwick {

// The separators of the formats below: unit separator between fields, record separator after
// each commit.
inline constexpr char16_t kGitFieldSeparator = 0x1F;
inline constexpr char16_t kGitRecordSeparator = 0x1E;

// `log --format=%H<US>%h<US>%an<US>%ct<US>%s<RS>`: full hash, short hash, author, commit time in
// Unix seconds, subject.
QList<GitCommit> parseLog(QStringView output);
// `for-each-ref --format=%(refname:short)<US>%(HEAD)<US>%(upstream:short)<US>%(committerdate:unix)`,
// one branch a line, in git's order.
QList<GitBranch> parseBranches(QStringView output);
// `stash list --format=%gd<US>%s<US>%ct`, one stash a line, the latest first.
QList<GitStash> parseStashes(QStringView output);
// A diff or patch as git printed it, cut after `maxLines` lines, binary files said so.
GitDiff readDiff(const QByteArray& bytes, int maxLines = kMaxDiffLines);

} // namespace orwick
