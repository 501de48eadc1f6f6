# Reading a repository's git status: `orwick-cli status` against `git status` itself, in the same
# run, on a generated repository of 20,000 tracked files (2,000 modified), 500 untracked files and
# an ignored folder of 5,000 files. Git runs with the arguments and the environment Orwick gives
# it (GIT_OPTIONAL_LOCKS=0 and the rest): plain git refreshes its index on a read, which makes the
# next read faster, so comparing with it would measure git's settings, not Orwick. Three rounds:
# the repository as made, with core.untrackedCache, and with core.fsmonitor (git's own daemon,
# where this git has one). Target: orwick-cli ≤ 1.05 × git in each.
#
# Fair to both sides: the environment is exported to hyperfine, so git starts directly (not
# through `env`, one more program start that would count against git), and both programs' output
# goes to a pipe hyperfine reads (Orwick's git writes into a pipe too; /dev/null would spare
# only git that). After the rounds, bench_git_status_read gives the in-process figure: the
# window's read (spawn and parse) against spawning git and reading its output, without either
# process's start.
#   bench/git-status.sh BUILD_DIR
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" git-status hyperfine
source "$here/git-repo.bash"
repo="$work/repo"

echo "generating the repository in $repo"
makeGitRepo "$repo" 200

"$cli" status "$repo" | tail -n 1

# The environment Orwick's runner gives git (src/core/git/GitRunner.cpp), and its arguments.
export GIT_OPTIONAL_LOCKS=0 GIT_TERMINAL_PROMPT=0 GIT_EDITOR=true GIT_ASKPASS= SSH_ASKPASS_REQUIRE=never \
       GCM_INTERACTIVE=never "GIT_SSH_COMMAND=ssh -o BatchMode=yes -o ConnectTimeout=20"
orwickGit=("$(command -v git)" -C "$repo" -c core.quotepath=off status --porcelain=v1 -z -b --ignored)
# Both must print the same: otherwise the two aren't doing the same work.
[ "$("${orwickGit[@]}" | tr '\0' '\n' | grep -c .)" -gt 2000 ] || { echo "git's status looks wrong" >&2; exit 1; }

printf -v gitCommand '%q ' "${orwickGit[@]}" # quoted, as hyperfine splits it like a shell

# round NAME: times both and prints the ratios.
round() {
  local csv="$work/times-$1.csv"
  hyperfine --shell=none --output=pipe --warmup 5 --runs 60 --export-csv "$csv" \
    --command-name git "$gitCommand" \
    --command-name orwick-cli "$cli status $repo" >/dev/null
  # command,mean,stddev,median,user,system,min,max
  awk -F, -v name="$1" '
    $1 == "git" { gMean = $2; gMedian = $4; gMin = $7; gCpu = $5 + $6 }
    $1 == "orwick-cli" { oMean = $2; oMedian = $4; oMin = $7; oCpu = $5 + $6 }
    END {
      printf "%s: git status %.1f ms, orwick-cli status %.1f ms (means)\n", name, gMean * 1000, oMean * 1000
      printf "%s: ratio orwick-cli / git: %.3f (mean), %.3f (median), %.3f (fastest run), %.3f (CPU time); target <= 1.05\n",
             name, oMean / gMean, oMedian / gMedian, oMin / gMin, oCpu / gCpu
    }' "$csv"
}

# orwick-cli's own start (loading Qt and the libraries the core links) is part of every run above.
hyperfine --shell=none --warmup 5 --runs 60 --export-csv "$work/start.csv" --command-name start "$cli --version" >/dev/null
awk -F, '$1 == "start" { printf "orwick-cli start-up alone (--version): %.1f ms (mean)\n", $2 * 1000 }' "$work/start.csv"

round "as made"

# Orwick asks for the ignored files in the same call (the window dims or hides them), and git
# doesn't use its untracked cache while it lists ignored files: this round shows that the setting
# costs neither side anything, not a gain for either.
git -C "$repo" config core.untrackedCache true
git -C "$repo" update-index --untracked-cache
git -C "$repo" status >/dev/null # fills the cache once, as a developer's git would have
round "core.untrackedCache"
git -C "$repo" config --unset core.untrackedCache
git -C "$repo" update-index --no-untracked-cache

"$build/bench/bench_git_status_read" "$repo" 60 || echo "(no in-process figure: build bench_git_status_read)"

if git -C "$repo" fsmonitor--daemon start >/dev/null 2>&1; then
  git -C "$repo" config core.fsmonitor true
  git -C "$repo" status >/dev/null
  round "core.fsmonitor"
  git -C "$repo" fsmonitor--daemon stop >/dev/null 2>&1 || true
else
  # git's own daemon (2.36 and later) is built for macOS and Windows only; on Linux core.fsmonitor
  # needs an outside hook such as Watchman's.
  echo "core.fsmonitor: skipped, this git ($(git --version)) has no file system monitor daemon here"
fi
