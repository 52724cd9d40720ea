#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan+UBSan) and runs each for a bounded time.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
scripts/install-deps.sh
CC=clang-14 CXX=clang++-14 cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DORLUNE_BUILD_FUZZ=ON -DORLUNE_BUILD_TESTS=OFF -DORLUNE_BUILD_BENCH=OFF > /dev/null
targets=()
for src in fuzz/*_fuzz.cpp; do targets+=("$(basename "$src" .cpp)"); done
cmake --build build-fuzz -j"$(nproc)" --target "${targets[@]}"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
for t in "${targets[@]}"; do
    name=${t%_fuzz}
    corpus=$(mktemp -d)
    [[ -d fuzz/corpus/$name ]] && cp -r "fuzz/corpus/$name/." "$corpus/"
    echo "fuzzing $t for ${seconds}s"
    build-fuzz/bin/"$t" -max_total_time="$seconds" -print_final_stats=1 "$corpus" 2>&1 | tail -n 3
    rm -rf "$corpus"
done
echo "fuzzing finished: ${#targets[@]} targets, no findings"
