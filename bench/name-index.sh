#!/usr/bin/env bash
# The palette's name index on a generated home of 150,000 names (bench/name-index-tree.py):
# the walk into the index (target < 1 s), its memory (target < 30 MB), saving and loading the
# index file, and palette keystrokes over every name (target < 16 ms each); fd listing the same
# tree is timed beside the walk, for reference.
#   bench/name-index.sh BUILD_DIR      (ORWICK_BENCH_TREE to override where the tree is kept)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" name-index python3 hyperfine fdfind
program="$build/bench/bench_name_index"
[ -x "$program" ] || { echo "no $program; build the target bench_name_index first" >&2; exit 1; }

key=$(sha1sum "$here/name-index-tree.py" | cut -c1-12)
store=${ORWICK_BENCH_TREE:-${TMPDIR:-/var/tmp}/orwick-bench-name-index-$key}
tree="$store/home"
if [ ! -e "$store/.complete" ]; then
  rm -rf "$store"
  mkdir -p "$store"
  echo "generating the tree in $tree"
  python3 "$here/name-index-tree.py" "$tree"
  touch "$store/.complete"
fi
echo "tree: $(find "$tree" -not -path '*/.*' | wc -l) visible names, $(find "$tree" | wc -l) in all"
find "$tree" > /dev/null # warm

status=0
/usr/bin/time -v "$program" "$tree" 2> "$work/time.log" || status=1
grep -E "Maximum resident set size|Elapsed" "$work/time.log" | sed 's/^\s*/  whole program: /'

echo "== for reference: fd listing the same tree (leaving out hidden names as the index does)"
hyperfine --shell=none --warmup 1 --runs 5 --style basic "fdfind --no-ignore . $tree" 2>&1 | grep -E "Time|Range" || true
exit $status
