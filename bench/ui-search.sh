#!/usr/bin/env bash
# The first search results in the window, on the home-like tree of bench/search.sh (about
# 150,000 files, generated once and kept): from the search's start after the typing pause to the
# first rows painted. Target: within 100 ms.
#   bench/ui-search.sh BUILD_DIR   (ORWICK_BENCH_RUNS, ORWICK_BENCH_TREE to override)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" ui-search xvfb-run python3
program="$build/bench/bench_ui_search"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
key=$(sha1sum "$here/search-tree.py" | cut -c1-12)
store=${ORWICK_BENCH_TREE:-${TMPDIR:-/var/tmp}/orwick-bench-search-$key}
tree="$store/home"
if [ ! -e "$store/.complete" ]; then
  rm -rf "$store"
  mkdir -p "$store"
  echo "generating the tree in $tree"
  python3 "$here/search-tree.py" "$tree"
  touch "$store/.complete"
fi
find "$tree" -type f -print0 | xargs -0 cat > /dev/null # warm: every byte once
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" XDG_CACHE_HOME="$work/home/.cache"
mkdir -p "$HOME"
if [ -n "${DISPLAY:-}" ]; then
  "$program" "$tree" "${ORWICK_BENCH_RUNS:-10}"
else
  xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "$tree" "${ORWICK_BENCH_RUNS:-10}"
fi
