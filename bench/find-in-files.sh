#!/usr/bin/env bash
# The first matches of Find in Files (Ctrl+Alt+F) on screen, on the home-like tree of the disk
# tools (bench/disktools-tree.py, about 150,000 files; the one bench/grep.sh searches, cache
# warm): from rg's first output reaching the window to the first file's rows painted in the
# panel (bench_ui_find_in_files; under Xvfb when there is no display). Target: within 100 ms.
#   bench/find-in-files.sh BUILD_DIR   (ORWICK_BENCH_RUNS, ORWICK_BENCH_TREE, ORWICK_BENCH_QUERY)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" find-in-files xvfb-run rg python3
program="$build/bench/bench_ui_find_in_files"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
source "$here/disktools-tree.bash"
find "$tree" -type f -print0 | xargs -0 cat > /dev/null # warm: every byte once
# The program puts HOME and the XDG folders under its own temporary folder; this one is the fallback.
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" XDG_CACHE_HOME="$work/home/.cache"
mkdir -p "$HOME"
arguments=("$tree" "${ORWICK_BENCH_QUERY:-plugins}" "${ORWICK_BENCH_RUNS:-10}")
if [ -n "${DISPLAY:-}" ]; then
  "$program" "${arguments[@]}"
else
  xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "${arguments[@]}"
fi
