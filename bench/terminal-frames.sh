#!/usr/bin/env bash
# The terminal panel's frames in the real window with a real shell (bash unless TERMINAL_SHELL
# names another): the GUI thread's longest gap and the view's paint times while `cat` of a
# large text file floods the panel (target: no frame over 50 ms), and a key's echo at the
# prompt until it is painted (target: within one frame, 16.7 ms). Under Xvfb with the xcb
# platform, as a user's X display (the offscreen platform paints into memory and flushes
# nothing); the machine's load is printed first, since a busy machine stretches every frame.
#   bench/terminal-frames.sh BUILD_DIR [MEGABYTES] [KEYS]     (50 and 200 by default)
set -euo pipefail
program="${1:?usage: bench/terminal-frames.sh BUILD_DIR [MEGABYTES] [KEYS]}/bench/bench_ui_terminal_frames"
megabytes="${2:-50}"
keys="${3:-200}"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
export SHELL="${TERMINAL_SHELL:-$(command -v bash || echo /bin/sh)}"
echo "load: $(uptime | sed 's/.*load average/load average/')"
if [ -n "${DISPLAY:-}" ]; then
  exec env QT_QPA_PLATFORM=xcb "$program" "$megabytes" "$keys"
fi
exec xvfb-run -a -s '-screen 0 1600x1000x24' env QT_QPA_PLATFORM=xcb "$program" "$megabytes" "$keys"
