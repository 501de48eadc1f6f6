# The home-like tree the disk-tool benchmarks run on; sourced after preamble.bash, never run on
# its own (so bench/run-all passes it by):
#   source "$here/disktools-tree.bash"
# Sets `tree` to bench/disktools-tree.py's tree (about 150,000 files). It is kept between runs in
# ORWICK_BENCH_TREE's folder, or under TMPDIR (/var/tmp) keyed by the generator's contents, and
# made first when missing or left half made.

key=$(sha1sum "$here/disktools-tree.py" | cut -c1-12)
store=${ORWICK_BENCH_TREE:-${TMPDIR:-/var/tmp}/orwick-bench-disktools-$key}
tree="$store/home"
if [ ! -e "$store/.complete" ]; then
  rm -rf "$store"
  mkdir -p "$store"
  echo "generating the tree in $tree"
  start=$(date +%s)
  python3 "$here/disktools-tree.py" "$tree"
  echo "generated in $(( $(date +%s) - start )) s"
  sync # written data must reach the disk first, or tools that ask for file extents wait on it
  touch "$store/.complete"
fi
