#!/usr/bin/env bash
# GUI-thread frames and preview latency while the cursor moves down 1,000 mixed files with the
# preview open (under Xvfb when there is no display). Targets: no frame over 16 ms, every
# preview shown within 50 ms.
#   bench/preview-frames.sh BUILD_DIR [FILES]
set -euo pipefail
program="${1:?usage: bench/preview-frames.sh BUILD_DIR [FILES]}/bench/bench_ui_preview_frames"
files="${2:-1000}"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
if [ -n "${DISPLAY:-}" ]; then
  exec "$program" "$files"
fi
exec xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "$files"
