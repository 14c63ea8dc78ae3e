// Shared by the vector kernel files.
#ifndef ORVIK_PELAR_H
#define ORVIK_PELAR_H

#include <hwy/highway.h>

#include "cpu/orvikInternal.h"

// Inside HWY_ONCE, after HWY_EXPORT(Group) in namespace ovk: defines
// ovkVector<Group>(), the kernel of the target Highway has chosen.  The
// dispatch names stay unqualified because a single-target build expands
// them to <target namespace>::Group.
#define OVK_VECTOR_KERNEL(Group)                  \
  ovk##Group##Fn ovkVector##Group() {             \
    using namespace ovk;                          \
    return &HWY_DYNAMIC_DISPATCH(Group);          \
  }

#endif
