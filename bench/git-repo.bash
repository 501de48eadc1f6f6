# The generated repository the git benchmarks share; sourced, never run on its own (so
# bench/run-all passes it by):
#   source "$here/git-repo.bash"; makeGitRepo REPO MODULES [MORE_LINES]
# Sets a private identity and no user or system git configuration for the rest of the script.
# makeGitRepo makes REPO with MODULES × 100 tracked files (each "module D file F", then
# MORE_LINES when given) and commits them; then changes a tenth of them (ten per module), adds
# MODULES × 2.5 untracked files and MODULES × 25 ignored ones (under ignored/), and lets git
# settle its index once, a second later so no entry is racily clean, as it would have on a
# developer's machine. 200 modules: 20,000 tracked, 2,000 changed, 500 untracked, 5,000 ignored.

export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null
export GIT_AUTHOR_NAME=Bench GIT_AUTHOR_EMAIL=bench@orwick.invalid
export GIT_COMMITTER_NAME=Bench GIT_COMMITTER_EMAIL=bench@orwick.invalid

makeGitRepo() { # repo, modules, more lines of each tracked file
  local repo=$1 modules=$2 more=${3:-}
  mkdir -p "$repo"
  git -C "$repo" init -q -b main
  (
    cd "$repo"
    for d in $(seq 0 $((modules - 1))); do
      mkdir -p "src/module$d"
      for f in $(seq 0 99); do
        printf 'module %d file %d\n%s' "$d" "$f" "$more" > "src/module$d/file$f.txt"
      done
    done
    printf 'ignored/\n' > .gitignore
    git add -A
    git commit -q -m "$((modules * 100)) files"
    for d in $(seq 0 $((modules - 1))); do
      for f in $(seq 0 9); do
        printf 'changed\n' >> "src/module$d/file$f.txt"
      done
    done
    for u in $(seq 0 $((modules * 5 / 2 - 1))); do
      printf 'new %d\n' "$u" > "src/module$((u % modules))/new$u.txt"
    done
    for d in $(seq 0 $((modules / 4 - 1))); do
      mkdir -p "ignored/cache$d"
      for f in $(seq 0 99); do
        printf 'x' > "ignored/cache$d/blob$f.o"
      done
    done
  )
  sleep 1
  git -C "$repo" status >/dev/null
}
