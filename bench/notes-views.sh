#!/usr/bin/env bash
# The database views over 10,000 notes (Google Benchmark): reading their properties, the board,
# a month of the calendar, the gallery's covers and a moved card. Targets: each view within 1 s
# from the files (readProperties plus its own line), within 200 ms once read; moveCard within 16 ms.
#   bench/notes-views.sh BUILD_DIR
set -euo pipefail
exec "${1:?usage: bench/notes-views.sh BUILD_DIR}/bench/bench_database_views" --benchmark_counters_tabular=true
