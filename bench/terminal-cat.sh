#!/usr/bin/env bash
# `cat` of a large text file in Orwick's terminal panel against the same `cat` in xterm, under
# one Xvfb in the same run, the two taking turns. Each cat is timed by the shell running it,
# from its start until the terminal has taken the last bytes (a pseudo-terminal holds only a
# few kilobytes, so cat ends when the terminal has read nearly all). xterm gets the panel's
# size in cells and a monospace font of the same size. Target: Orwick within 1.5 × xterm.
#   bench/terminal-cat.sh BUILD_DIR [MEGABYTES]     (50 by default; a few for a quick look)
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" terminal-cat xterm xdotool xvfb-run
orwick="$build/orwick"
[ -x "$orwick" ] || { echo "no $orwick; build first" >&2; exit 1; }
megabytes=${2:-50}
rounds=${TERMINAL_CAT_ROUNDS:-3}
export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share" XDG_CONFIG_HOME="$work/home/.config"
export XDG_CACHE_HOME="$work/home/.cache" SHELL=/bin/sh
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"

text="$work/text.txt"
{ seq -f 'line %09g: the quick brown fox jumps over the lazy dog 0123456789 abcdefghijklmnop' 1 10000000 || true; } \
  | head -c "$((megabytes * 1024 * 1024))" > "$text"
# The timer the shell in each terminal runs: writes the milliseconds of the cat to $1.
cat > "$work/timed.sh" <<'TIMER'
t0=$(date +%s%N); cat "$2"; t1=$(date +%s%N)
echo $(( (t1 - t0) / 1000000 )) > "$1.part" && mv "$1.part" "$1"
TIMER

cat > "$work/inside.sh" <<INSIDE
set -euo pipefail
waitFor() { for _ in \$(seq 1 \$((10 * $megabytes + 600))); do [ -s "\$1" ] && return 0; sleep 0.1; done; echo "no result in \$1" >&2; exit 1; }
"$orwick" "$work" >/dev/null 2>&1 &
orwickPid=\$!
trap 'kill \$orwickPid 2>/dev/null || true' EXIT
window=\$(xdotool search --sync --name 'Orwick' | head -1)
xdotool windowactivate --sync "\$window" >/dev/null 2>&1 || true
sleep 1
xdotool key F4
sleep 1.5
for round in \$(seq 1 $rounds); do
  xterm -geometry 140x15 -fa Monospace -fs 10 -e sh "$work/timed.sh" "$work/xterm.\$round" "$text"
  waitFor "$work/xterm.\$round"
  xdotool windowactivate --sync "\$window" >/dev/null 2>&1 || true
  xdotool type --delay 5 "clear; sh $work/timed.sh $work/orwick.\$round $text"
  xdotool key Return
  waitFor "$work/orwick.\$round"
  sleep 0.5
done
INSIDE

echo "cat of $megabytes MB in Orwick's terminal panel and in xterm: $rounds rounds each, taking turns"
xvfb-run -a -s '-screen 0 1600x1000x24' bash "$work/inside.sh"
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
o=$(cat "$work"/orwick.* | median)
x=$(cat "$work"/xterm.* | median)
echo "orwick panel: $o ms (rounds: $(cat "$work"/orwick.* | tr '\n' ' '))"
echo "xterm:        $x ms (rounds: $(cat "$work"/xterm.* | tr '\n' ' '))"
awk -v o="$o" -v x="$x" 'BEGIN { r = (x > 0 ? o / x : 0); printf "ratio orwick/xterm: %.2f (target at most 1.5)\n", r }'
