#!/usr/bin/env bash
# Staging one hunk (Space on a hunk in the review panel) on the generated repository of 20,000
# tracked files, 2,000 of them changed: Orwick's patch and `git apply --cached` through the runner
# against `git apply --cached` of the same patch typed at a prompt in the repository, same run
# (bench_git_stage_hunk; both write the same 20,000-entry index). Target: within 1.2 × git.
# MODULES=20 makes a repository a tenth the size (a quick check of the script itself).
#   bench/git-stage.sh BUILD_DIR
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" git-stage git
source "$here/git-repo.bash"
program="$build/bench/bench_git_stage_hunk"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
modules=${MODULES:-200}
repo="$work/repo"

echo "generating the repository in $repo ($((modules * 100)) files)"
makeGitRepo "$repo" "$modules" $'line two\nline three\n'

# Not exec: the preamble's trap removes the repository afterwards.
"$program" "$repo" src/module0/file0.txt 60
