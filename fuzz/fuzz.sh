#!/bin/sh
# Fuzzes the front-matter reader and writer with libFuzzer for a minute (FUZZ_SECONDS).
# Builds with clang in its own folder (default build-fuzz), apart from the GCC build.
# Usage: fuzz/fuzz-notes.sh [BUILD_DIR]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-fuzz}
mkdir -p "$build"
build=$(cd "$build" && pwd)
seconds=${FUZZ_SECONDS:-60}

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DORWICK_FUZZ=ON -DORWICK_TESTS=OFF >/dev/null
cmake --build "$build" --target fuzz_front_matter

corpus="$build/fuzz-corpus/front-matter"
mkdir -p "$corpus"
cp "$root"/fuzz/corpus/front-matter/* "$corpus"/
# Crash inputs land in the build folder, not the source tree.
cd "$build"
./fuzz/fuzz_front_matter -max_total_time="$seconds" -timeout=10 -print_final_stats=1 "$corpus"
echo "fuzz_front_matter: no crash in ${seconds} s"
