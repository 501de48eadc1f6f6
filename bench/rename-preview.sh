#!/usr/bin/env bash
# The batch rename panel's preview over 10,000 files (Google Benchmark): one keystroke in the
# Find field (the rule and the rows on screen; target under 16 ms) and the whole preview the
# background works out after it. bench/rename-preview.sh BUILD_DIR
set -euo pipefail
exec "${1:?usage: bench/rename-preview.sh BUILD_DIR}/bench/bench_rename_preview" --benchmark_counters_tabular=true
