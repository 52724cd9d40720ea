#!/usr/bin/env bash
# Installs what the arm64 cross build and its emulated test run need (run as root), on top of
# scripts/install-deps.sh: the cross compiler, qemu, and the :arm64 versions of the -dev
# packages the build links. Usage: scripts/install-deps-arm64.sh ROOT
#
# android-libbacktrace:arm64 needs the arm64 p7zip's 7z.so, and p7zip-full:arm64 cannot be
# installed beside the amd64 one: it is unpacked into ROOT, a private root that the linker
# (-rpath-link) and qemu-aarch64 (-L) look into.
set -euo pipefail
root=${1:?usage: $0 ROOT}
apt_get() {
    DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 "$@"
}
packages=(g++-aarch64-linux-gnu binutils-aarch64-linux-gnu qemu-user file
          libexpat1-dev:arm64 android-liblog-dev:arm64 android-libutils-dev:arm64
          libsafec-dev:arm64 libsndfile1-dev:arm64 libgtest-dev:arm64 libgmock-dev:arm64)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
    echo "installing: ${missing[*]}"
    if ! dpkg --print-foreign-architectures | grep -qx arm64; then
        dpkg --add-architecture arm64
    fi
    apt_get update -qq
    # Installing an :arm64 -dev package may upgrade its amd64 twin, whose version must match.
    apt_get install -y -qq --no-install-recommends "${missing[@]}"
fi
if [[ ! -e "$root/usr/lib/p7zip/7z.so" ]]; then
    download=$(mktemp -d)
    chmod 755 "$download"  # apt fetches as its own user
    (cd "$download" && apt_get download -qq p7zip-full:arm64)
    mkdir -p "$root"
    dpkg-deb -x "$download"/p7zip-full_*_arm64.deb "$root"
    rm -rf "$download"
fi
