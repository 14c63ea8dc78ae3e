# 32-bit ARMv7 Linux, hard-float, with Debian's cross compiler
# (g++-arm-linux-gnueabihf).  Highway and GoogleTest come from the armhf
# multiarch packages (libhwy-dev:armhf, libgtest-dev:armhf); scripts/deps.sh
# cross installs all of it.  Tests run under qemu-arm.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(ORVIK_CROSS_TRIPLET arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${ORVIK_CROSS_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${ORVIK_CROSS_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${ORVIK_CROSS_TRIPLET})

# Highway 1.0.3 compiles its NEON target on 32-bit ARM only when NEON is the
# baseline, so NEON with VFPv4 (fused multiply-add) and IEEE half floats are
# part of every compile.
set(_orvik_arm_flags "-march=armv7-a -mfpu=neon-vfpv4 -mfloat-abi=hard -mfp16-format=ieee")
set(CMAKE_C_FLAGS_INIT "${_orvik_arm_flags}")
set(CMAKE_CXX_FLAGS_INIT "${_orvik_arm_flags}")
unset(_orvik_arm_flags)

include(${CMAKE_CURRENT_LIST_DIR}/multiarch-find.cmake)

# A Cortex-A15 (NEON, VFPv4, integer divide) as a 32-bit kernel describes it;
# qemu emulates the same core.
set(ORVIK_QEMU qemu-arm)
set(ORVIK_QEMU_CPU cortex-a15)
set(ORVIK_QEMU_CPUINFO
"processor	: 0
model name	: ARMv7 Processor rev 3 (v7l)
BogoMIPS	: 48.00
Features	: half thumb fastmult vfp edsp neon vfpv3 tls vfpv4 idiva idivt
CPU implementer	: 0x41
CPU architecture: 7
CPU variant	: 0x2
CPU part	: 0xc0f
CPU revision	: 3

Hardware	: Generic DT based system
Revision	: 0000
Serial		: 0000000000000000
")
include(${CMAKE_CURRENT_LIST_DIR}/qemu-user.cmake)
