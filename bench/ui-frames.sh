#!/usr/bin/env bash
# GUI-thread frames while switching views and sorts on a 100,000-item folder (under Xvfb when
# there is no display). Target: no frame longer than 100 ms.
#   bench/ui-frames.sh BUILD_DIR
set -euo pipefail
program="${1:?usage: bench/ui-frames.sh BUILD_DIR}/bench/bench_ui_frames"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
if [ -n "${DISPLAY:-}" ]; then
  exec "$program" 100000
fi
exec xvfb-run -a -s '-screen 0 1600x1000x24' "$program" 100000
