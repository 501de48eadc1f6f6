#!/usr/bin/env bash
# Opening the review panel (Ctrl+Shift+U) on a generated repository of 20,000 tracked files with
# 2,000 of them changed, 500 untracked and 5,000 ignored: the list on screen against `git status`
# run as Orwick runs it, and the first diff after the list (bench_ui_git_review; under Xvfb when
# there is no display). Targets: the list within 1.2 × git status, the first diff within 50 ms.
# MODULES=20 makes a repository a tenth the size (a quick check of the script itself).
#   bench/git-review.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" git-review git
program="$build/bench/bench_ui_git_review"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
modules=${MODULES:-200}
repo="$work/repo"

export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null
export GIT_AUTHOR_NAME=Bench GIT_AUTHOR_EMAIL=bench@orwick.invalid
export GIT_COMMITTER_NAME=Bench GIT_COMMITTER_EMAIL=bench@orwick.invalid

echo "generating the repository in $repo ($((modules * 100)) files)"
mkdir -p "$repo"
git -C "$repo" init -q -b main
(
  cd "$repo"
  for d in $(seq 0 $((modules - 1))); do
    mkdir -p "src/module$d"
    for f in $(seq 0 99); do
      printf 'module %d file %d\nline two\nline three\n' "$d" "$f" > "src/module$d/file$f.txt"
    done
  done
  printf 'ignored/\n' > .gitignore
  git add -A
  git commit -q -m "tracked files"
  # A tenth changed (ten per module), untracked and ignored files as bench/git-status.sh has them.
  for d in $(seq 0 $((modules - 1))); do
    for f in $(seq 0 9); do
      printf 'changed\n' >> "src/module$d/file$f.txt"
    done
  done
  for u in $(seq 0 $((modules * 5 / 2 - 1))); do
    printf 'new %d\n' "$u" > "src/module$((u % modules))/new$u.txt"
  done
  for d in $(seq 0 $((modules / 4))); do
    mkdir -p "ignored/cache$d"
    for f in $(seq 0 99); do
      printf 'x' > "ignored/cache$d/blob$f.o"
    done
  done
)
sleep 1
git -C "$repo" status >/dev/null # settles the index once, as a developer's git would have

export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share"
mkdir -p "$HOME"
# Not exec: the preamble's trap removes the repository afterwards.
if [ -n "${DISPLAY:-}" ]; then
  "$program" "$repo"
else
  xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "$repo"
fi
