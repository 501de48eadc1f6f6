#pragma once
// Change: how a file differs from the last commit, read from the two status letters git prints
// for it (porcelain v1, "XY path"), and the word that names each kind. Needs no Qt: orwick-cli's
// status is read before Qt would load (src/cli/StatusReport.h).

#include <string_view>

namespace orwick {

// In the order the kinds are listed to people.
enum class Change { modified, added, deleted, renamed, untracked, conflicted };
inline constexpr int changeKinds = 6;

// The kind of a status record from its index letter `x` and working-tree letter `y`:
// "??" untracked; "U" on either side, "AA" or "DD" conflicted; then the index letter decides
// (A added, R or C renamed), a "D" on either side deleted, anything else modified.
Change changeOf(char x, char y);

// Staged: the index differs from the last commit. Unstaged: the working tree differs from the index.
inline bool isStagedChange(char x) { return x != ' ' && x != '?'; }
inline bool isUnstagedChange(char y) { return y != ' '; }

// "modified", "added", "deleted", "renamed", "untracked", "conflicted".
std::string_view changeKeyword(Change change);

} // namespace orwick
