#!/usr/bin/env bash
# Find in Files on the command line against ripgrep itself, in the same run, on the home-like
# tree of the disk tools (bench/disktools-tree.py, about 150,000 files), cache warm:
#   orwick-cli grep QUERY DIR   vs rg with the same arguments ContentSearch gives it
#                               (target: at most 1.1 × rg: it runs rg, so the rest is ours)
# and checks that both print the same matches.
#   bench/grep.sh BUILD_DIR      (ORWICK_BENCH_RUNS, ORWICK_BENCH_TREE, ORWICK_BENCH_QUERY)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" grep hyperfine rg python3
runs=${ORWICK_BENCH_RUNS:-5}
query=${ORWICK_BENCH_QUERY:-plugins}

source "$here/disktools-tree.bash"
echo "tree: $(find "$tree" -type f | wc -l) files"
find "$tree" -type f -print0 | xargs -0 cat > /dev/null # warm the cache

rg_args="--line-number --no-heading --null --color never --max-columns 400 --fixed-strings --ignore-case -e $query ."
cd "$tree"
# --output=pipe: with its output on /dev/null (hyperfine's default) rg may stop at the first match,
# as grep does; through a pipe both search the whole tree, as the panel's rg does.
hyperfine --shell=none --output=pipe --warmup 1 --runs "$runs" --style basic -i --export-csv "$work/grep.csv" \
  --command-name orwick-cli "$cli grep $query $tree" \
  --command-name rg "rg $rg_args" > "$work/grep.log" 2>&1 || { cat "$work/grep.log"; exit 1; }
python3 "$here/hyperfine-ratios.py" "$work/grep.csv" orwick-cli --inverse

# The same matches? rg prints "./path\0line:text"; orwick-cli "path:line:text".
"$cli" grep "$query" "$tree" | sort > "$work/orwick.txt" || true
rg $rg_args | python3 -c 'import sys
for rec in sys.stdin.buffer.read().split(b"\n"):
    if rec:
        path, rest = rec.split(b"\0", 1)
        sys.stdout.buffer.write(path.removeprefix(b"./") + b":" + rest + b"\n")' | sort > "$work/rg.txt" || true
if cmp -s "$work/orwick.txt" "$work/rg.txt"; then
  echo "matches: the same $(wc -l < "$work/rg.txt") lines"
else
  echo "matches differ:"; diff "$work/orwick.txt" "$work/rg.txt" | head; exit 1
fi
