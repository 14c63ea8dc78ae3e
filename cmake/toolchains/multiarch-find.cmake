# Shared by the ARM Linux toolchain files: where find_package/find_library
# look.  Target libraries live in two places on Debian: the cross compiler's
# own sysroot (/usr/<triplet>: libc, libstdc++) and the multiarch directories
# of <pkg>:<arch> packages (/usr/lib/<triplet>, headers in /usr/include).
# Both are searched; CMAKE_LIBRARY_ARCHITECTURE makes the config-file and
# library searches pick /usr/lib/<triplet>, never the host's x86_64 one.
# Programs (code generators, pkg-config) are always the host's.
set(CMAKE_FIND_ROOT_PATH "/usr/${ORVIK_CROSS_TRIPLET}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# pkg-config must not hand out the host's .pc files.
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/${ORVIK_CROSS_TRIPLET}/pkgconfig:/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")
