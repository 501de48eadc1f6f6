#!/usr/bin/env bash
# Reading a repository's git status: `orwick-cli status` against `git status` itself, in the same
# run, on a generated repository of 20,000 tracked files (2,000 modified), 500 untracked files and
# an ignored folder of 5,000 files. Target: orwick-cli ≤ 1.15 × git.
#   bench/git-status.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" git-status hyperfine
repo="$work/repo"

# A private identity and no user or system configuration.
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null
export GIT_AUTHOR_NAME=Bench GIT_AUTHOR_EMAIL=bench@orwick.invalid
export GIT_COMMITTER_NAME=Bench GIT_COMMITTER_EMAIL=bench@orwick.invalid

echo "generating the repository in $repo"
mkdir -p "$repo"
git -C "$repo" init -q -b main
(
  cd "$repo"
  for d in $(seq 0 199); do
    mkdir -p "src/module$d"
    for f in $(seq 0 99); do
      printf 'module %d file %d\n' "$d" "$f" > "src/module$d/file$f.txt"
    done
  done
  printf 'ignored/\n' > .gitignore
  git add -A
  git commit -q -m "20,000 files"
  # 2,000 modified (ten per module), 500 untracked, 5,000 ignored.
  for d in $(seq 0 199); do
    for f in $(seq 0 9); do
      printf 'changed\n' >> "src/module$d/file$f.txt"
    done
  done
  for u in $(seq 0 499); do
    printf 'new %d\n' "$u" > "src/module$((u % 200))/new$u.txt"
  done
  for d in $(seq 0 49); do
    mkdir -p "ignored/cache$d"
    for f in $(seq 0 99); do
      printf 'x' > "ignored/cache$d/blob$f.o"
    done
  done
)
# Let git settle its index once, as it would have on a developer's machine (a second later, so no
# entry is racily clean).
sleep 1
git -C "$repo" status >/dev/null

"$cli" status "$repo" | tail -n 1

csv="$work/times.csv"
hyperfine --shell=none --warmup 5 --runs 60 --export-csv "$csv" \
  --command-name git "git -C $repo status --porcelain=v1 -z -b --ignored" \
  --command-name orwick-cli "$cli status $repo"

# command,mean,stddev,median,user,system,min,max
awk -F, '
  $1 == "git" { gMean = $2; gMedian = $4; gMin = $7; gCpu = $5 + $6 }
  $1 == "orwick-cli" { oMean = $2; oMedian = $4; oMin = $7; oCpu = $5 + $6 }
  END {
    printf "git status %.1f ms, orwick-cli status %.1f ms (means)\n", gMean * 1000, oMean * 1000
    printf "ratio orwick-cli / git: %.3f (mean), %.3f (median), %.3f (fastest run), %.3f (CPU time); target <= 1.15\n",
           oMean / gMean, oMedian / gMedian, oMin / gMin, oCpu / gCpu
  }' "$csv"
