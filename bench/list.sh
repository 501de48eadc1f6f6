#!/usr/bin/env bash
# Listing a folder of 100,000 files: `orwick-cli list` against `find -printf '%s %T@ %p'` (which
# also reads every entry's size and date) and `ls -l`, warm cache, in the same run. Then how much
# of orwick-cli's time is start-up, and how much is the system calls; then the window: time to
# the first rows and the memory it holds with the folder open.
#   bench/list.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" list hyperfine python3
big="$work/big"
empty="$work/empty"
mkdir -p "$big" "$empty"
echo "making 100,000 files in $big"
( cd "$big" && seq -f 'file%06g.txt' 0 59999 | xargs touch && seq -f 'photo%05g.jpg' 0 19999 | xargs touch \
  && seq -f 'src%05g.rs' 0 19999 | xargs touch )

csv="$work/times.csv"
hyperfine --shell=none --warmup 3 --runs 15 --export-csv "$csv" \
  --command-name orwick "$cli list $big" \
  --command-name find "find $big -printf '%s %T@ %p\n'" \
  --command-name "ls -l" "ls -l $big" \
  --command-name "orwick start-up" "$cli list $empty" >/dev/null
python3 - "$csv" <<'PY'
import csv, sys
rows = {r["command"]: float(r["mean"]) for r in csv.DictReader(open(sys.argv[1]))}
o, f, l, s = rows["orwick"], rows["find"], rows["ls -l"], rows["orwick start-up"]
print(f"orwick-cli list: {o*1000:.1f} ms   find: {f*1000:.1f} ms   ls -l: {l*1000:.1f} ms")
print(f"orwick / find = {o/f:.2f}  (target <= 1.00)    find / ls -l = {f/l:.2f}")
print(f"start-up (empty folder): {s*1000:.1f} ms = {100*s/o:.0f}% of the listing run")
PY

if command -v strace >/dev/null; then
  strace -c -f -o "$work/strace.txt" "$cli" list "$big" >/dev/null 2>&1 || true
  echo "system calls (strace -c, top 6 by time):"
  sed -n '3,8p' "$work/strace.txt"
fi

if command -v xvfb-run >/dev/null; then
  export HOME="$work/home"; mkdir -p "$HOME"
  echo "window on the folder (Xvfb):"
  for run in 1 2 3; do
    ORWICK_TRACE_STARTUP=quit timeout 60 xvfb-run -a -s '-screen 0 1600x1000x24' "$build/orwick" "$big" 2>&1 \
      | grep 'first rows' || true
  done
fi
