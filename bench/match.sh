#!/usr/bin/env bash
# Fuzzy matching a long list: `orwick-cli match` against `fzf --filter` and `fzy -e`, in the same
# run, on 500,000 generated path lines, with the same queries (one narrow, one broad, one long
# whose letters recur along each path, where the best alignment is far from the first).
# Targets: orwick-cli at least as fast as fzf, faster than fzy.
#   bench/match.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" match hyperfine fzf fzy
lines="$work/paths.txt"

# Paths like a large source tree: nested folders, words, numbers, extensions. Fixed seed.
awk 'BEGIN {
  srand(7);
  split("src lib include test docs build assets tools scripts vendor core ui app net", top, " ");
  split("parser render widget config network storage cache index fuzzy match sort file path view model state window pane", word, " ");
  split(".cpp .h .md .json .txt .py .png .rs .go .ts", ext, " ");
  for (i = 0; i < 500000; i++) {
    line = top[int(rand() * 15) + 1];
    depth = int(rand() * 4) + 1;
    for (d = 0; d < depth; d++)
      line = line "/" word[int(rand() * 18) + 1] (rand() < 0.3 ? int(rand() * 100) : "");
    line = line "/" word[int(rand() * 18) + 1] "_" word[int(rand() * 18) + 1] int(rand() * 1000) ext[int(rand() * 10) + 1];
    print line;
  }
}' > "$lines"
echo "$(wc -l < "$lines") lines, $(du -h "$lines" | cut -f1)"

status=0
for query in fuzmatchcpp conf srcviewmodelcpp; do
  "$cli" match "$query" < "$lines" > "$work/orwick.out" 2>/dev/null || true
  fzf --filter "$query" < "$lines" > "$work/fzf.out" || true
  fzy -e "$query" < "$lines" > "$work/fzy.out" || true
  echo "query \"$query\": matches orwick-cli $(wc -l < "$work/orwick.out"), fzf $(wc -l < "$work/fzf.out"), fzy $(wc -l < "$work/fzy.out")"
  hyperfine --warmup 1 --runs 7 --style basic --export-json "$work/times.json" \
    -n orwick-cli "$cli match $query < $lines > /dev/null 2>&1" \
    -n fzf "fzf --filter $query < $lines > /dev/null" \
    -n fzy "fzy -e $query < $lines > /dev/null" > "$work/hyperfine.log" || { cat "$work/hyperfine.log"; exit 1; }
  python3 - "$work/times.json" "$query" <<'PY' || status=1
import json, sys
results = {r["command"]: r["median"] for r in json.load(open(sys.argv[1]))["results"]}
o, f, z = results["orwick-cli"], results["fzf"], results["fzy"]
print(f"  median: orwick-cli {o*1000:.0f} ms, fzf {f*1000:.0f} ms, fzy {z*1000:.0f} ms")
print(f"  orwick-cli / fzf = {o/f:.2f} (target <= 1.00), orwick-cli / fzy = {o/z:.2f} (target < 1.00)")
sys.exit(0 if o <= f and o < z else 1)
PY
done
exit $status
