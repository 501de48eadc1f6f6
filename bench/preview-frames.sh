#!/usr/bin/env bash
# GUI-thread frames and preview latency while the cursor moves down 1,000 mixed files with the
# preview open (under Xvfb when there is no display). Targets: no frame over 16 ms, every
# preview shown within 50 ms.
#   bench/preview-frames.sh BUILD_DIR [FILES]
# ORWICK_SLOW_EVENTS=1 prints, for the steps with the longest frames, the GUI thread's events over
# half a millisecond and the widgets each step painted.
#
# Release, Xvfb, two cores, 1,000 steps a run, 5 runs in a row (2026-11-24): longest frame 17.6,
# 9.6, 13.7, 44.8, 10.2 ms; frames over 16 ms 3, 0, 0, 2, 0; preview shown after a median of
# 3.7-4.1 ms, 95th percentile 19.7-20.4 ms, worst 22.5-46.7 ms (none over 50). The steps
# nearest the limit are the 2 MB log's (about 8 ms of the GUI thread: showing its first 512 kB,
# 6,900 lines, in the text view lays every line out afresh, then two paints); the frames over
# 16 ms were log steps preempted 222 times in one frame (7 ms of own CPU) and, once, a key press
# and paint that waited 35 ms off the CPU (10 ms of own CPU). Four earlier runs the same day:
# 11.3, 14.2, 14.6, 10.2 ms, none over 16 ms.
set -euo pipefail
program="${1:?usage: bench/preview-frames.sh BUILD_DIR [FILES]}/bench/bench_ui_preview_frames"
files="${2:-1000}"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
if [ -n "${DISPLAY:-}" ]; then
  exec "$program" "$files"
fi
exec xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "$files"
