# The opening every benchmark script shares; sourced, never run on its own (so bench/run-all,
# which runs bench/*.sh, passes it by):
#   source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" NAME [TOOL...]
# Sets `build` (the build folder given to the script), `cli` (its orwick-cli) and `work` (a
# temporary folder under TMPDIR, or NAME_TMPDIR's folder, removed on exit), and stops with a
# message when orwick-cli or one of the peer TOOLs is missing.
set -euo pipefail
build=$(realpath "${1:?usage: bench/$2.sh BUILD_DIR}")
cli="$build/orwick-cli"
[ -x "$cli" ] || { echo "no $cli; build first" >&2; exit 1; }
for tool in "${@:3}"; do
  command -v "$tool" >/dev/null || { echo "$tool is needed (make bench installs it)" >&2; exit 1; }
done
work=$(mktemp -d "${BENCH_TMPDIR:-${TMPDIR:-/tmp}}/orwick-bench-$2-XXXXXX")
trap 'rm -rf "$work"' EXIT
