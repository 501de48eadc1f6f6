#!/usr/bin/env bash
# Opening the review panel (Ctrl+Shift+U) on a generated repository of 20,000 tracked files with
# 2,000 of them changed, 500 untracked and 5,000 ignored: the list on screen against `git status`
# run as Orwick runs it, and the first diff after the list (bench_ui_git_review; under Xvfb when
# there is no display). Targets: the list within 1.2 × git status, the first diff within 50 ms.
# MODULES=20 makes a repository a tenth the size (a quick check of the script itself).
#   bench/git-review.sh BUILD_DIR
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" git-review git
source "$here/git-repo.bash"
program="$build/bench/bench_ui_git_review"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
modules=${MODULES:-200}
repo="$work/repo"

echo "generating the repository in $repo ($((modules * 100)) files)"
makeGitRepo "$repo" "$modules" $'line two\nline three\n'

export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share"
mkdir -p "$HOME"
# Not exec: the preamble's trap removes the repository afterwards.
if [ -n "${DISPLAY:-}" ]; then
  "$program" "$repo"
else
  xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "$repo"
fi
