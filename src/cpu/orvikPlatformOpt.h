// Internal hooks of the platform override library loader.
#ifndef ORVIK_PLATFORM_OPT_H
#define ORVIK_PLATFORM_OPT_H

// Replaces the file ovkPlatformOptLoad opens (default
// "/data/local/libovkopt.so"), so tests can load a library of their own.  The
// string must outlive every later load.  Not exported.
void ovkPlatformOptSetPath(const char* path);

#endif
