#!/usr/bin/env bash
# The main job: builds the library, the stand-ins, the sample device configuration and the
# harness, then plays the bundled sample through the effect.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j"$(nproc)"
build/bin/orlune-play --info --device-root build/sample-device \
    --properties build/sample-device/sample.properties
build/bin/orlune-play --device-root build/sample-device \
    --properties build/sample-device/sample.properties \
    build/sample-input.wav build/sample-output.wav
echo "processed audio: $(pwd)/build/sample-output.wav"
