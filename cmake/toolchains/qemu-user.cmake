# Shared by the ARM Linux toolchain files: run target binaries under qemu-user.
#
# Expects ORVIK_CROSS_TRIPLET, ORVIK_QEMU (qemu-aarch64 / qemu-arm),
# ORVIK_QEMU_CPU and ORVIK_QEMU_CPUINFO (the text ARM programs see as
# /proc/cpuinfo).
#
# qemu 7.2 passes the host's /proc/cpuinfo through, so the processor probe
# would read x86 text.  qemu's -L prefix is searched before the real file
# system for every absolute path a guest opens, so a prefix folder that holds
# only proc/cpuinfo replaces that one file and leaves everything else alone.
#
# Which runtime the guest loads: the multiarch one (libc6:<arch>, pulled in
# by libhwy1:<arch>) when it is installed, because that is where libhwy.so
# lives and the dynamic loader must come from the same glibc build as the
# libc it loads.  Only without it does the prefix link in the cross
# compiler's sysroot (/usr/<triplet>/lib), as a plain `-L /usr/<triplet>`
# would.

set(_orvik_sysroot "/usr/${ORVIK_CROSS_TRIPLET}")

if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
  set(_orvik_loader "ld-linux-aarch64.so.1")
else()
  set(_orvik_loader "ld-linux-armhf.so.3")
endif()

find_program(ORVIK_QEMU_EXECUTABLE NAMES ${ORVIK_QEMU})
if(NOT ORVIK_QEMU_EXECUTABLE)
  # Configuring still works (nothing runs until ctest); say what is missing.
  set(ORVIK_QEMU_EXECUTABLE ${ORVIK_QEMU})
  message(WARNING "${ORVIK_QEMU} not found: tests cannot run (install Debian's qemu-user)")
endif()

set(ORVIK_QEMU_ROOT "${CMAKE_BINARY_DIR}/qemu-root")
set(CMAKE_CROSSCOMPILING_EMULATOR
    "${ORVIK_QEMU_EXECUTABLE};-cpu;${ORVIK_QEMU_CPU};-L;${ORVIK_QEMU_ROOT}")

# try_compile projects read this file too; only the real build tree needs the
# folder.
get_property(_orvik_in_try_compile GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT _orvik_in_try_compile)
  # Never REMOVE_RECURSE here: lib may be a link into the cross sysroot.
  file(REMOVE "${ORVIK_QEMU_ROOT}/lib")
  file(MAKE_DIRECTORY "${ORVIK_QEMU_ROOT}/proc")
  file(WRITE "${ORVIK_QEMU_ROOT}/proc/cpuinfo" "${ORVIK_QEMU_CPUINFO}")
  if(NOT EXISTS "/lib/${_orvik_loader}")
    file(CREATE_LINK "${_orvik_sysroot}/lib" "${ORVIK_QEMU_ROOT}/lib" SYMBOLIC)
  endif()
  # The same command line for running one binary by hand outside ctest:
  # build/<preset>/qemu-run PROGRAM ARGS...
  file(WRITE "${CMAKE_BINARY_DIR}/qemu-run"
       "#!/bin/sh\n# Runs a program of this build the way ctest does.\n"
       "exec '${ORVIK_QEMU_EXECUTABLE}' -cpu '${ORVIK_QEMU_CPU}' -L '${ORVIK_QEMU_ROOT}' \"$@\"\n")
  file(CHMOD "${CMAKE_BINARY_DIR}/qemu-run"
       PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()

unset(_orvik_in_try_compile)
unset(_orvik_loader)
