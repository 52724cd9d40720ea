#!/usr/bin/env bash
# Writes the two HTML reports of the bundled sample into build/ and the README's screenshots of
# them into docs/ (needs a build and Debian's chromium; run as root, like the tests).
set -euo pipefail
cd "$(dirname "$0")/.."
root=build/sample-device
build/bin/orlune-play --no-progress --device-root "$root" --properties "$root/sample.properties" \
    --set 51=3 --at 1:5=1 --at 1.5:35=1 --at 2:12=2 --report build/report-play.html \
    build/sample-input.wav build/sample-output.wav > /dev/null
build/bin/orlune-config --properties "$root/sample.properties" --report build/report-config.html \
    "$root" > /dev/null
profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
for report in play config; do
    chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run \
        --disable-background-networking --disable-component-update --disable-sync \
        --user-data-dir="$profile/$report" --window-size=1440,1700 \
        --force-device-scale-factor=0.6 --screenshot="docs/report-$report.png" \
        "file://$(pwd)/build/report-$report.html" 2> /dev/null
done
ls -l build/report-play.html build/report-config.html docs/report-play.png docs/report-config.png
