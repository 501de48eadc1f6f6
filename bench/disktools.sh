#!/usr/bin/env bash
# The disk tools against the command-line tools a user would otherwise run, in the same run, on
# one generated home-like tree of about 150,000 files (bench/disktools-tree.py: ~8 % copies,
# same-size decoys, build folders, hidden folders, hard and symbolic links), cache warm:
#   duplicates --min-size 1   vs jdupes -r, rmlint, fdupes -r, rdfind   (target: faster than each)
#   space                     vs du -s, gdu -n                          (target: at least as fast)
#   cleanup                                                             (target: under 1 s)
# It also checks that the duplicate groups are jdupes' groups and that the space total is
# du -s -B1's apart from hard links.
#   bench/disktools.sh BUILD_DIR      (ORWICK_BENCH_RUNS, ORWICK_BENCH_TREE to override)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" disktools hyperfine jdupes rmlint fdupes rdfind gdu du python3
runs=${ORWICK_BENCH_RUNS:-5}

source "$here/disktools-tree.bash"
cd "$work" # rmlint and rdfind leave files in the working folder otherwise

echo "tree: $(find "$tree" -type f | wc -l) files, $(du -sh "$tree" | cut -f1)"
# Warm the cache: every byte once.
find "$tree" -type f -print0 | xargs -0 cat > /dev/null

ratios() { python3 "$here/hyperfine-ratios.py" "$@"; } # csv, reference command name

echo "== duplicates"
"$cli" duplicates "$tree" --min-size 1 > "$work/orwick-dups.txt"
tail -n 1 "$work/orwick-dups.txt"
hyperfine --shell=none --warmup 1 --runs "$runs" --style basic --export-csv "$work/dups.csv" \
  --command-name orwick-cli "$cli duplicates $tree --min-size 1" \
  --command-name jdupes "jdupes -r -q $tree" \
  --command-name fdupes "fdupes -r -q $tree" \
  --command-name rdfind "rdfind -makeresultsfile false $tree" > "$work/dups.log" 2>&1 || { cat "$work/dups.log"; exit 1; }
# rmlint fsyncs and asks each file for its extents (FIEMAP) to sort by disk offset; on a virtual
# disk that alone takes minutes, so it gets one timed run of its own next to one of orwick-cli.
hyperfine --shell=none --runs "${ORWICK_BENCH_RMLINT_RUNS:-1}" --style basic --export-csv "$work/rmlint.csv" \
  --command-name orwick-cli "$cli duplicates $tree --min-size 1" \
  --command-name rmlint "rmlint -T df -o fdupes:$work/rmlint.out $tree" > "$work/rmlint.log" 2>&1 || { cat "$work/rmlint.log"; exit 1; }
ratios "$work/dups.csv" orwick-cli
ratios "$work/rmlint.csv" orwick-cli | grep rmlint

# The same groups as jdupes? jdupes also looks into hidden files and build folders, which the
# duplicate finder leaves out by design; members there are set aside before comparing.
jdupes -r -q "$tree" > "$work/jdupes.txt"
python3 - "$work/orwick-dups.txt" "$work/jdupes.txt" "$tree" <<'PY'
import sys
orwick_file, jdupes_file, tree = sys.argv[1:]
skipped = {"node_modules", ".git", "build", "DerivedData", "Pods", ".build", "target", "dist", ".next", "vendor", "__pycache__"}
def left_out(path):
    parts = path[len(tree) + 1:].split("/")
    return any(p.startswith(".") for p in parts) or any(p in skipped for p in parts[:-1])
ours = {frozenset(line.rstrip("\n").split("\t")[1:]) for line in open(orwick_file, encoding="utf-8", errors="surrogateescape").read().splitlines()[:-1]}
theirs, aside, group = set(), 0, []
for line in open(jdupes_file, encoding="utf-8", errors="surrogateescape").read().split("\n") + [""]:
    if line:
        group.append(line)
        continue
    if group:
        kept = [p for p in group if not left_out(p)]
        aside += len(group) - len(kept)
        if len(kept) >= 2:
            theirs.add(frozenset(kept))
    group = []
print(f"  groups: orwick-cli {len(ours)}, jdupes {len(theirs)} (jdupes members in hidden or build folders set aside: {aside})")
if ours == theirs:
    print("  duplicate sets: same as jdupes")
else:
    for g in sorted(ours - theirs, key=sorted)[:10]:
        print("  only orwick-cli:", sorted(g))
    for g in sorted(theirs - ours, key=sorted)[:10]:
        print("  only jdupes:", sorted(g))
    print(f"  duplicate sets differ: {len(ours - theirs)} only in orwick-cli, {len(theirs - ours)} only in jdupes")
PY

echo "== space"
"$cli" space "$tree" | tail -n 1
ours=$("$cli" space "$tree" | tail -n 1 | cut -d' ' -f1)
du_once=$(du -s -B1 "$tree" | cut -f1)
du_each=$(du -s -B1 -l "$tree" | cut -f1)
echo "  total: orwick-cli $ours, du -s -B1 $du_once, du -s -B1 -l (hard links counted each time) $du_each"
echo "  difference from du -s -B1: $((ours - du_once)) bytes; hard links account for $((du_each - du_once)) bytes; left after them: $((ours - du_each))"
hyperfine --shell=none --warmup 2 --runs $((runs * 2)) --style basic --export-csv "$work/space.csv" \
  --command-name orwick-cli "$cli space $tree" \
  --command-name du "du -s $tree" \
  --command-name gdu "gdu -n $tree" > "$work/space.log" 2>&1 || { cat "$work/space.log"; exit 1; }
ratios "$work/space.csv" orwick-cli

echo "== cleanup"
"$cli" cleanup "$tree" | tail -n 1
hyperfine --shell=none --warmup 2 --runs $((runs * 2)) --style basic --export-csv "$work/cleanup.csv" \
  --command-name orwick-cli "$cli cleanup $tree" > "$work/cleanup.log" 2>&1 || { cat "$work/cleanup.log"; exit 1; }
python3 - "$work/cleanup.csv" <<'PY'
import csv, sys
r = next(csv.DictReader(open(sys.argv[1])))
print(f"  orwick-cli cleanup mean {float(r['mean'])*1000:.1f} ms, max {float(r['max'])*1000:.1f} ms (target under 1000 ms)")
PY
