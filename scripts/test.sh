#!/usr/bin/env bash
# Builds everything and runs the tests. `--sanitize` does the same in build-asan with
# AddressSanitizer and UndefinedBehaviorSanitizer, `--tsan` in build-tsan with ThreadSanitizer
# (any report fails the test that caused it); `--arm64` cross-builds for arm64 in build-arm64
# and runs the tests under qemu-aarch64 (scripts/test-arm64.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
if [[ "${1:-}" == "--arm64" ]]; then
    exec scripts/test-arm64.sh
fi
scripts/install-deps.sh

build=build
flags=()
if [[ "${1:-}" == "--sanitize" ]]; then
    build=build-asan
    flags=(-DORLUNE_SANITIZE=ON -DORLUNE_BUILD_BENCH=OFF)
    export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
    export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
    # GCC's sanitizer runtime intercepts dlopen, which then no longer searches the calling
    # library's RUNPATH: name the Android libraries' directory explicitly.
    export LD_LIBRARY_PATH=/usr/lib/$(gcc -print-multiarch)/android${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
elif [[ "${1:-}" == "--tsan" ]]; then
    build=build-tsan
    flags=(-DORLUNE_TSAN=ON -DORLUNE_BUILD_BENCH=OFF)
    export TSAN_OPTIONS="halt_on_error=1 exitcode=66 second_deadlock_stack=1"
    export LD_LIBRARY_PATH=/usr/lib/$(gcc -print-multiarch)/android${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
fi
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo "${flags[@]}" > /dev/null
cmake --build "$build" -j"$(nproc)"
cd "$build"
ctest --output-on-failure -j"$(nproc)" --timeout 300
