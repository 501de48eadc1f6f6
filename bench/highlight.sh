#!/usr/bin/env bash
# Syntax highlighting a large source file: `orwick-cli highlight` (HTML spans) against
# `batcat --color=always --paging=never` (terminal colours), whole processes, in the same run, on
# generated 10 MB C++ and Python files (bench/highlight-source.py, fixed seed).
# Target: orwick-cli at least 5 times as fast as bat on each file.
#   bench/highlight.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" highlight hyperfine batcat python3
here=$(dirname "$(realpath "$0")")

status=0
for language in cpp py; do
  file="$work/large.$language"
  python3 "$here/highlight-source.py" "$language" 10000000 "$file"
  # Both must really colour the file: count what each produced.
  spans=$("$cli" highlight "$file" | grep -o '<span class="tok-' | wc -l)
  escapes=$(batcat --color=always --paging=never "$file" | grep -o $'\e\\[' | wc -l)
  echo "$language: $(du -h "$file" | cut -f1), orwick-cli $spans spans, bat $escapes colour escapes"
  [ "$spans" -gt 100000 ] || { echo "orwick-cli coloured almost nothing" >&2; exit 1; }
  hyperfine --warmup 1 --runs 3 --style basic --export-json "$work/times.json" \
    -n orwick-cli "$cli highlight $file > /dev/null" \
    -n bat "batcat --color=always --paging=never $file > /dev/null" > "$work/hyperfine.log" \
    || { cat "$work/hyperfine.log"; exit 1; }
  python3 - "$work/times.json" <<'PY' || status=1
import json, sys
results = {r["command"]: r["median"] for r in json.load(open(sys.argv[1]))["results"]}
o, b = results["orwick-cli"], results["bat"]
print(f"  median: orwick-cli {o*1000:.0f} ms, bat {b*1000:.0f} ms")
print(f"  bat / orwick-cli = {b/o:.1f} (target >= 5.0)")
sys.exit(0 if b >= 5 * o else 1)
PY
done
exit $status
