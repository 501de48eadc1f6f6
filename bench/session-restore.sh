#!/usr/bin/env bash
# Reopening the last session: a start of `orwick` that restores 10 tabs of 2 panes each, from the
# start to the selected tab's first rows, against a start of `orwick DIR` on the same folder with
# no session to restore (target: no slower). Every folder holds 2,000 files; the two kinds of
# start take turns, under Xvfb, and each is timed the same way: ORWICK_TRACE_STARTUP's clock from
# main() to the painted rows of the front window's active pane (the selected tab's left pane
# here, DIR there), the trace's quit closing the window through its close event in both.
# A start varies by a few milliseconds either way, which is as much as the two kinds differ by:
# 20 rounds by default, and the means as well as the medians. One untimed start of each kind goes
# first: the first start on a fresh X server is slower (by about 3 ms on average here), and the rounds
# begin with a restore, so without it that cost fell on the restore alone.
#   bench/session-restore.sh BUILD_DIR     (SESSION_RESTORE_RUNS=N for another number of rounds)
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" session-restore xvfb-run python3
orwick="$build/orwick"
[ -x "$orwick" ] || { echo "no $orwick; build first" >&2; exit 1; }
runs=${SESSION_RESTORE_RUNS:-20}
for i in $(seq 1 20); do
  mkdir -p "$work/dirs/d$i"
  ( cd "$work/dirs/d$i" && seq -f 'file%04g.txt' 1 2000 | xargs touch )
done
# Two homes with a settings file: the restoring one holds the session, the single one the same
# file without it (a start with DIR reopens a stored session too, and shows DIR in it), so both
# starts read a settings file like any user's.
for home in restoring single; do
  mkdir -p "$work/$home/.config/Orwick" "$work/$home/.local/share"
done
python3 - "$work" >"$work/restoring/.config/Orwick/Orwick.conf" <<'PY'
import json, sys
work = sys.argv[1]
tabs = [{"left": f"{work}/dirs/d{2*t+1}", "right": f"{work}/dirs/d{2*t+2}", "rightIsActive": False} for t in range(10)]
value = json.dumps({"selected": 0, "showPreview": False, "tabs": tabs}, separators=(",", ":"))
print("[General]")
print('session="@ByteArray(' + value.replace("\\", "\\\\").replace('"', '\\"') + ')"')
PY
cp "$work/restoring/.config/Orwick/Orwick.conf" "$work/session.conf"
grep -v '^session=' "$work/session.conf" >"$work/plain.conf"

cat >"$work/inside.sh" <<'INSIDE'
set -euo pipefail
# Runs one start with HOME=$1 and the rest of the arguments, printing the traced milliseconds.
start() {
  local home=$1; shift
  local run; run=$(mktemp -d "$work/run-XXXXXX"); chmod 700 "$run"
  HOME="$home" XDG_CONFIG_HOME="$home/.config" XDG_DATA_HOME="$home/.local/share" XDG_CACHE_HOME="$home/.cache" \
    XDG_RUNTIME_DIR="$run" ORWICK_TRACE_STARTUP=quit "$orwick" "$@" 2>&1 |
    sed -n 's/^first rows shown after \([0-9]*\) ms, \([0-9]*\) items.*/\1 \2/p'
}
# One start of KIND (restore or single), printing "KIND MILLISECONDS ITEMS".
one() {
  if [ "$1" = restore ]; then
    cp "$work/session.conf" "$work/restoring/.config/Orwick/Orwick.conf" # the last run saved over it
    echo "restore $(start "$work/restoring")"
  else
    cp "$work/plain.conf" "$work/single/.config/Orwick/Orwick.conf" # no session: the last run saved one
    echo "single $(start "$work/single" "$work/dirs/d1")"
  fi
}
one restore >/dev/null; one single >/dev/null # untimed (see the top)
for i in $(seq 1 "$runs"); do
  for kind in $( (( i % 2 )) && echo "restore single" || echo "single restore" ); do
    one "$kind"
  done
done
INSIDE

export orwick work runs
xvfb-run -a -s '-screen 0 1600x1000x24' bash "$work/inside.sh" >"$work/times.txt"
python3 - "$work/times.txt" <<'PY'
import statistics, sys
times = {"restore": [], "single": []}
for line in open(sys.argv[1]):
    kind, *values = line.split()
    if len(values) != 2 or values[1] != "2000":
        sys.exit(f"a {kind} start showed no rows of its 2,000-file folder: {line.strip()}")
    times[kind].append(int(values[0]))
mean, med = statistics.mean, statistics.median
for kind, label in (("restore", "restore 10 tabs × 2 panes"), ("single", "`orwick DIR`, no session")):
    t = times[kind]
    print(f"{label:28} to first rows: mean {mean(t):.1f} ms, median {med(t):.1f} ms  (min {min(t)}, max {max(t)}, {len(t)} runs)")
r, s = times["restore"], times["single"]
print(f"restore / single folder = {mean(r)/mean(s):.3f} (means), {med(r)/med(s):.3f} (medians)  (target <= 1.0)")
PY
