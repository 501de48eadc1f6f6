#!/usr/bin/env bash
# Arranging and re-filtering 100,000 items (Google Benchmark): bench/arrange.sh BUILD_DIR
set -euo pipefail
exec "${1:?usage: bench/arrange.sh BUILD_DIR}/bench/bench_arrange" --benchmark_counters_tabular=true
