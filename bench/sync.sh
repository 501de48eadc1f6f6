#!/usr/bin/env bash
# Folder sync against rsync, in the same run, on two trees of 30,000 files (bench/compare-trees.py
# with no changed files: 300 only on the left, 300 only on the right), cache warm:
#   orwick-cli compare L R --sync mirror   vs rsync -a --delete L/ R/     (target: within 1.3 ×)
# Both make the right tree the left one: copy the 300 missing files and take the 300 extra ones
# away — ours to the Trash (the temporary home's, $XDG_DATA_HOME/Trash) as one undoable job, and
# only after comparing every pair's contents; rsync deletes them and trusts sizes and times.
# Each run gets a fresh right tree and an empty Trash (hyperfine --prepare, not timed). The fresh
# tree is made of hard links to a kept one: neither tool writes into a file that is already
# there (both only add files and take files away), so the kept tree stays as it was, and no
# gigabyte of copying is still being written back while the next command is timed.
# Afterwards one more run of each is checked: the right tree equals the left, and ours left the
# 300 extra files in the Trash.
#   bench/sync.sh BUILD_DIR      (ORWICK_BENCH_RUNS; ORWICK_BENCH_FILES for a smaller tree)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" sync hyperfine diff rsync python3
runs=${ORWICK_BENCH_RUNS:-5}
files=${ORWICK_BENCH_FILES:-30000}

python3 "$here/compare-trees.py" "$work/left" "$work/kept-right" "$files" 0
echo "trees: $(find "$work/left" -type f | wc -l) and $(find "$work/kept-right" -type f | wc -l) files"
find "$work" -type f -print0 | xargs -0 cat > /dev/null # warm the cache

export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share" XDG_CONFIG_HOME="$work/home/.config" \
  XDG_CACHE_HOME="$work/home/.cache" XDG_STATE_HOME="$work/home/.local/state"
cat > "$work/fresh" <<EOF
#!/bin/sh
set -e
rm -rf "$work/right" "$work/home"
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
cp -al "$work/kept-right" "$work/right"
EOF
chmod +x "$work/fresh"

echo "== mirror sync"
hyperfine --shell=none --warmup 1 --runs "$runs" --style basic --export-csv "$work/sync.csv" --prepare "$work/fresh" \
  --command-name orwick-cli "$cli compare $work/left $work/right --sync mirror" \
  --command-name "rsync -a" "rsync -a --delete $work/left/ $work/right/" > "$work/sync.log" 2>&1 \
  || { cat "$work/sync.log"; exit 1; }
python3 "$here/hyperfine-ratios.py" "$work/sync.csv" orwick-cli --inverse

# Did both bring the right tree into line, and did ours keep what it took away?
"$work/fresh"
"$cli" compare "$work/left" "$work/right" --sync mirror
diff -rq "$work/left" "$work/right" > /dev/null || { echo "orwick-cli left differences"; exit 1; }
trashed=$(find "$XDG_DATA_HOME/Trash/files" -type f | wc -l)
echo "orwick-cli: the trees match; $trashed files in the Trash"
[ "$trashed" -eq "$(( files / 100 ))" ] || { echo "expected $(( files / 100 )) in the Trash"; exit 1; }
"$work/fresh"
rsync -a --delete "$work/left/" "$work/right/"
diff -rq "$work/left" "$work/right" > /dev/null || { echo "rsync left differences"; exit 1; }
echo "rsync -a: the trees match"
