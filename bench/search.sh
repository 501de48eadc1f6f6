#!/usr/bin/env bash
# Search against the tools a user would otherwise run, in the same run, on one generated
# home-like tree of about 150,000 files (bench/search-tree.py), cache warm:
#   by name:    orwick-cli search TEXT DIR --hidden            vs fdfind -HI TEXT DIR   (target: <= 0.8 x fd)
#   by content: orwick-cli search TEXT DIR --hidden --content  vs rg -l -i --hidden TEXT DIR (target: <= 1.2 x rg)
# Both lists are compared: every path only one side finds must be explained. orwick-cli leaves
# out build folders (node_modules beside package.json, target beside Cargo.toml, __pycache__)
# and .git, which fd -HI and rg enter; and it lists a name match with --content too. The peers
# are timed a second time told to leave those folders out too (for reference; the targets are
# against the plain commands).
#   bench/search.sh BUILD_DIR      (ORWICK_BENCH_RUNS, ORWICK_BENCH_TREE to override)
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" search hyperfine fdfind rg python3
runs=${ORWICK_BENCH_RUNS:-10}

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
echo "tree: $(find "$tree" -type f | wc -l) files, $(find "$tree" -type d | wc -l) folders, $(du -sh "$tree" | cut -f1)"
find "$tree" -type f -print0 | xargs -0 cat > /dev/null # warm: every byte once

# Paths only one side lists, sorted into what explains them; anything unexplained fails.
compare() { # orwick-list, peer-list, peer name
  python3 - "$1" "$2" "$3" <<'PY'
import re, sys
ours = set(open(sys.argv[1], "rb").read().splitlines())
theirs = set(open(sys.argv[2], "rb").read().splitlines())
name = sys.argv[3]
skipped = re.compile(rb"/(node_modules|target|__pycache__|\.git)(/|$)")
only_theirs = theirs - ours
only_ours = ours - theirs
build = [p for p in only_theirs if skipped.search(p)]
other = [p for p in only_theirs if not skipped.search(p)]
print(f"  both {len(ours & theirs)}; only {name}: {len(only_theirs)} ({len(build)} inside build folders or .git, which orwick leaves out); only orwick-cli: {len(only_ours)}")
for p in sorted(other)[:5]:
    print(f"    unexplained, only {name}: {p.decode(errors='replace')}")
for p in sorted(only_ours)[:5]:
    print(f"    only orwick-cli: {p.decode(errors='replace')}")
sys.exit(1 if other else 0)
PY
}

ratio() { # csv, target
  python3 - "$1" "$2" <<'PY'
import csv, sys
rows = list(csv.DictReader(open(sys.argv[1])))
o, p = float(rows[0]["mean"]), float(rows[1]["mean"])
for r in rows:
    print(f"  {r['command']:12} mean {float(r['mean'])*1000:8.1f} ms  (user {float(r['user'])*1000:7.1f} ms, system {float(r['system'])*1000:7.1f} ms)")
target = float(sys.argv[2])
print(f"  orwick-cli / {rows[1]['command']} = {o/p:.2f} (target <= {target})")
for r in rows[2:]: # the peer told to leave out the folders orwick-cli leaves out: for reference
    print(f"  orwick-cli / {r['command']} = {o/float(r['mean']):.2f}")
sys.exit(0 if o / p <= target else 1)
PY
}

status=0
echo "== by name: budget"
"$cli" search budget "$tree" --hidden | sort > "$work/orwick-name.txt" || true
fdfind -HI budget "$tree" | sed 's|/$||' | sort > "$work/fd-name.txt" || true
compare "$work/orwick-name.txt" "$work/fd-name.txt" fd || status=1
# Accents and case folded: "resume" finds "Résumé"; fd's pattern is a regular expression.
echo "  \"resume\": orwick-cli $("$cli" search resume "$tree" --hidden | wc -l), fd $(fdfind -HI resume "$tree" | wc -l) (fd does not fold accents)"
hyperfine --shell=none --warmup 2 --runs "$runs" --style basic --export-csv "$work/name.csv" \
  --command-name orwick-cli "$cli search budget $tree --hidden" \
  --command-name fd "fdfind -HI budget $tree" \
  --command-name fd-same-folders "fdfind -HI -E node_modules -E target -E __pycache__ -E .git budget $tree" > "$work/name.log" 2>&1 || { cat "$work/name.log"; exit 1; }
ratio "$work/name.csv" 0.8 || status=1

echo "== by content: quokka"
"$cli" search quokka "$tree" --hidden --content | sort > "$work/orwick-content.txt" || true
rg -l -i --hidden quokka "$tree" | sort > "$work/rg-content.txt" || true
compare "$work/orwick-content.txt" "$work/rg-content.txt" rg || status=1
hyperfine --shell=none --warmup 2 --runs "$runs" --style basic --export-csv "$work/content.csv" \
  --command-name orwick-cli "$cli search quokka $tree --hidden --content" \
  --command-name rg "rg -l -i --hidden quokka $tree" \
  --command-name rg-same-folders "rg -l -i --hidden -g !node_modules -g !target -g !__pycache__ -g !.git quokka $tree" > "$work/content.log" 2>&1 || { cat "$work/content.log"; exit 1; }
ratio "$work/content.csv" 1.2 || status=1
exit $status
