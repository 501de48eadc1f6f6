#!/usr/bin/env bash
# Handing a folder to the running Orwick: from the start of a second `orwick DIR` to DIR's first
# rows shown in the first one's window (target: 150 ms), against a cold `orwick DIR` start to its
# first rows, under Xvfb. Each DIR holds 2,000 files; times are wall clock from just before the
# command starts.
#   bench/open-request.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" open-request xvfb-run python3
orwick="$build/orwick"
[ -x "$orwick" ] || { echo "no $orwick; build first" >&2; exit 1; }
runs=${OPEN_REQUEST_RUNS:-10}
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" \
  XDG_CACHE_HOME="$work/home/.cache" ORWICK_TRACE_OPEN=1
mkdir -p "$HOME"
for i in $(seq 1 "$runs"); do
  mkdir -p "$work/dirs/d$i"
  ( cd "$work/dirs/d$i" && seq -f 'file%04g.txt' 1 2000 | xargs touch )
done

cat >"$work/inside.sh" <<'INSIDE'
set -euo pipefail
now() { echo $(( ${EPOCHREALTIME/./} / 1000 )); } # ms since the epoch
# Waits (at most 20 s) for LOG to say "rows of DIR shown at T" and prints T.
shown_at() {
  for _ in $(seq 1 2000); do
    t=$(sed -n "s|^open: rows of $2 shown at \([0-9]*\).*|\1|p" "$1" | head -n 1)
    [ -n "$t" ] && { echo "$t"; return; }
    sleep 0.01
  done
  echo "never shown: $2" >&2; exit 1
}
# Cold: each start in its own runtime folder, so none finds another to hand over to.
for i in $(seq 1 "$runs"); do
  run="$work/run-cold-$i"; mkdir -m 700 "$run"
  start=$(now)
  XDG_RUNTIME_DIR="$run" ORWICK_TRACE_STARTUP=quit "$orwick" "$work/dirs/d$i" 2>"$work/cold-$i.log"
  echo "cold $(( $(shown_at "$work/cold-$i.log" "$work/dirs/d$i") - start ))"
done
# Hand-over: one running Orwick; each `orwick DIR` gives it DIR.
export XDG_RUNTIME_DIR="$work/run-warm"; mkdir -m 700 "$XDG_RUNTIME_DIR"
"$orwick" "$HOME" 2>"$work/first.log" &
first=$!
shown_at "$work/first.log" "$HOME" >/dev/null
for i in $(seq 1 "$runs"); do
  start=$(now)
  "$orwick" "$work/dirs/d$i"
  ended=$(now)
  echo "handover $(( $(shown_at "$work/first.log" "$work/dirs/d$i") - start )) $(( ended - start ))"
done
kill "$first"
INSIDE

export orwick work runs
xvfb-run -a -s '-screen 0 1600x1000x24' bash "$work/inside.sh" >"$work/times.txt"
python3 - "$work/times.txt" <<'PY'
import statistics, sys
cold, shown, returned = [], [], []
for line in open(sys.argv[1]):
    kind, *values = line.split()
    if kind == "cold":
        cold.append(int(values[0]))
    elif kind == "handover":
        shown.append(int(values[0])); returned.append(int(values[1]))
med = statistics.median
print(f"cold `orwick DIR` to first rows:        median {med(cold):.0f} ms  (min {min(cold)}, max {max(cold)}, {len(cold)} runs)")
print(f"second `orwick DIR` to rows in first:   median {med(shown):.0f} ms  (min {min(shown)}, max {max(shown)})  target <= 150 ms")
print(f"second `orwick DIR` returns after:      median {med(returned):.0f} ms  (max {max(returned)})")
print(f"hand-over / cold start = {med(shown)/med(cold):.2f}")
PY
