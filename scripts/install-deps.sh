#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests and the tools need (run as root).
set -euo pipefail
packages=(cmake g++ make pkg-config binutils libexpat1-dev android-liblog-dev android-libutils-dev
          libsafec-dev libsndfile1-dev libgtest-dev libgmock-dev libbenchmark-dev
          clang-14 libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
    echo "installing: ${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
