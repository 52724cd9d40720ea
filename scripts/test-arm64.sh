#!/usr/bin/env bash
# The arm64 build and its whole test suite under qemu-aarch64 (`scripts/test.sh --arm64`):
# installs the cross toolchain and the :arm64 packages, cross-builds in build-arm64 with the
# tests and without benchmarks and fuzzers, shows what the shipped library was built for, and
# runs ctest, which starts every test program through the emulator.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build-arm64
root=$PWD/$build/arm64-root
scripts/install-deps.sh
scripts/install-deps-arm64.sh "$root"
cmake -S . -B "$build" -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake \
    -DORLUNE_ARM64_ROOT="$root" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DORLUNE_BUILD_TESTS=ON -DORLUNE_BUILD_BENCH=OFF -DORLUNE_BUILD_FUZZ=OFF > /dev/null
cmake --build "$build" -j"$(nproc)"
lib=$build/lib/liborlunemutilmobile7_1.so
file -L "$lib"
readelf -h "$lib" | grep -E 'Class|Machine'
cd "$build"
ctest --output-on-failure -j"$(nproc)" --timeout 300
