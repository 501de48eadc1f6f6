#!/usr/bin/env bash
# Opening a folder of 100,000 files from inside the window (under Xvfb when there is no display):
# first rows usable and the full arrangement, against `orwick-cli list` on the same folder.
# Targets: first rows within 300 ms, full arrangement within 1.2 × the CLI listing.
#   bench/ui-open.sh BUILD_DIR [ROUNDS]
set -euo pipefail
build="${1:?usage: bench/ui-open.sh BUILD_DIR}"
program="$build/bench/bench_ui_open_folder"
[ -x "$program" ] || { echo "no $program; build the benchmarks first" >&2; exit 1; }
[ -x "$build/orwick-cli" ] || { echo "no $build/orwick-cli; build it first" >&2; exit 1; }
if [ -n "${DISPLAY:-}" ]; then
  exec "$program" "$build/orwick-cli" 100000 "${2:-5}"
fi
exec xvfb-run -a -s '-screen 0 1600x1000x24' "$program" "$build/orwick-cli" 100000 "${2:-5}"
