#!/bin/sh
# Builds every libFuzzer target with clang in its own folder (default build-fuzz, apart from the
# GCC build) and runs each for FUZZ_SECONDS (default 60) from its seed corpus in fuzz/corpus/.
# FUZZ_TARGETS="fuzz_git_status …" runs only those. Inputs that crash are kept in
# BUILD_DIR/crashes/ and named in the output; the script fails when any target found one.
# Usage: fuzz/fuzz.sh [BUILD_DIR]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-fuzz}
mkdir -p "$build"
build=$(cd "$build" && pwd)
seconds=${FUZZ_SECONDS:-60}

compiler=${FUZZ_CXX:-}
if [ -z "$compiler" ]; then
    for candidate in clang++-16 clang++; do
        command -v "$candidate" >/dev/null && { compiler=$candidate; break; }
    done
fi
[ -n "$compiler" ] || { echo "fuzz: clang++-16 is missing (scripts/install-deps --with-checks installs it)" >&2; exit 1; }

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DORWICK_FUZZ=ON -DORWICK_TESTS=OFF >/dev/null
targets=${FUZZ_TARGETS:-$(sed -n 's/^orwick_fuzz_target(\([a-z_]*\) .*/\1/p' "$root/fuzz/CMakeLists.txt")}
# shellcheck disable=SC2086
cmake --build "$build" -j "$(nproc)" --target $targets

# Stack traces with names and lines.
for symbolizer in llvm-symbolizer-16 llvm-symbolizer; do
    command -v "$symbolizer" >/dev/null && { ASAN_SYMBOLIZER_PATH=$(command -v "$symbolizer"); export ASAN_SYMBOLIZER_PATH; break; }
done

mkdir -p "$build/crashes"
failed=""
for target in $targets; do
    name=$(echo "${target#fuzz_}" | tr _ -)
    corpus="$build/fuzz-corpus/$name"
    mkdir -p "$corpus"
    # New inputs land in the build folder, not the source tree.
    cp "$root/fuzz/corpus/$name"/* "$corpus"/
    echo "== $target: ${seconds} s"
    if (cd "$build" && "./fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
            -artifact_prefix="$build/crashes/$target-" -print_final_stats=1 "$corpus" >"$build/$target.log" 2>&1); then
        grep -E '^stat::number_of_executed_units|^Done' "$build/$target.log" || true
        echo "$target: no crash in ${seconds} s"
    else
        tail -n 40 "$build/$target.log"
        echo "$target: FOUND A CRASH; the input is in $build/crashes/ (log: $build/$target.log)"
        failed="$failed $target"
    fi
done
[ -z "$failed" ] || { echo "fuzz: crashes in:$failed" >&2; exit 1; }
echo "fuzz: every target ran ${seconds} s without a crash"
