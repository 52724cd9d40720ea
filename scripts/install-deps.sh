#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests and the tools need (run as root).
set -euo pipefail
packages=(cmake g++ make pkg-config binutils libexpat1-dev android-liblog-dev android-libutils-dev
          libsafec-dev libsndfile1-dev libgtest-dev libgmock-dev libbenchmark-dev
          clang-14 libclang-rt-14-dev libpng-dev jq)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
    echo "installing: ${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The HTML reports' browser tests render the pages in Debian's headless Chromium. Where it
# cannot be installed those tests skip, so a failure here does not stop the build.
if ! dpkg-query -W -f='${Status}' chromium 2>/dev/null | grep -q "install ok installed"; then
    echo "installing: chromium"
    { apt-get update -qq &&
      DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends chromium; } ||
        echo "chromium could not be installed: the browser tests of the HTML reports will skip"
fi
