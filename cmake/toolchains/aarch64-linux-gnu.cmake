# 64-bit ARM Linux with Debian's cross compiler (g++-aarch64-linux-gnu).
# Highway and GoogleTest come from the arm64 multiarch packages
# (libhwy-dev:arm64, libgtest-dev:arm64 under /usr/lib/aarch64-linux-gnu);
# scripts/deps.sh cross installs all of it.  Tests run under qemu-aarch64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(ORVIK_CROSS_TRIPLET aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${ORVIK_CROSS_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${ORVIK_CROSS_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${ORVIK_CROSS_TRIPLET})

include(${CMAKE_CURRENT_LIST_DIR}/multiarch-find.cmake)

# A Cortex-A72 as the kernel describes it; qemu emulates the same core so the
# hardware capabilities Highway reads agree with the text the probe reads.
set(ORVIK_QEMU qemu-aarch64)
set(ORVIK_QEMU_CPU cortex-a72)
set(ORVIK_QEMU_CPUINFO
"processor	: 0
BogoMIPS	: 108.00
Features	: fp asimd evtstrm aes pmull sha1 sha2 crc32 cpuid
CPU implementer	: 0x41
CPU architecture: 8
CPU variant	: 0x0
CPU part	: 0xd08
CPU revision	: 3

")
include(${CMAKE_CURRENT_LIST_DIR}/qemu-user.cmake)
