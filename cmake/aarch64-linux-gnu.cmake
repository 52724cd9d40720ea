# Cross build for 64-bit Arm Linux with Debian's cross compiler and the :arm64 multiarch
# packages (scripts/test-arm64.sh installs them):
#   cmake -S . -B build-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake
# Built programs run through qemu-aarch64; containers have no binfmt_misc, so every place that
# starts one (ctest, custom commands, tests that start a program) puts the emulator in front.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(ORLUNE_TARGET_TRIPLET aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${ORLUNE_TARGET_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${ORLUNE_TARGET_TRIPLET}-g++)
# Debian multiarch: the target's libraries live in /usr/lib/<triplet>, headers are shared.
set(CMAKE_LIBRARY_ARCHITECTURE ${ORLUNE_TARGET_TRIPLET})
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${ORLUNE_TARGET_TRIPLET}/pkgconfig:/usr/share/pkgconfig)
set(ENV{PKG_CONFIG_PATH} "")

# android-libbacktrace:arm64 (under libutils) needs the arm64 p7zip's 7z.so, which cannot be
# installed beside the amd64 one: the package is unpacked into this private root instead. The
# linker finds 7z.so there, and qemu looks every path up under it first.
set(ORLUNE_ARM64_ROOT "" CACHE PATH "Root holding the unpacked p7zip-full:arm64")
if(ORLUNE_ARM64_ROOT)
    set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${ORLUNE_ARM64_ROOT}/usr/lib/p7zip")
    set(CMAKE_SHARED_LINKER_FLAGS_INIT "-Wl,-rpath-link,${ORLUNE_ARM64_ROOT}/usr/lib/p7zip")
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${ORLUNE_ARM64_ROOT})
else()
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
endif()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
