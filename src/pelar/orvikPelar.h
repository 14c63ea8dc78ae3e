// Shared by the vector kernel files.
#ifndef ORVIK_PELAR_H
#define ORVIK_PELAR_H

#include <hwy/highway.h>

#include "cpu/orvikInternal.h"

namespace ovk {

// Vector starts covering [0, count) for count >= lanes; the last vector is
// moved back to end at count, so nothing beyond it is read or written.  For
// kernels whose outputs each depend on their inputs alone, the overlap
// rewrites the same values.
template <class At>
inline void ForEachVector(size_t count, size_t lanes, At at) {
  size_t i = 0;
  for (; i + lanes <= count; i += lanes) at(i);
  if (i < count) at(count - lanes);
}

}  // namespace ovk

// Inside HWY_ONCE, at file scope: exports Kernel's per-target versions and
// defines Getter(), which returns the version of the target Highway has
// chosen.  The dispatch names stay unqualified because a single-target build
// expands them to <target namespace>::Kernel.
#define OVK_VECTOR_DISPATCH(Fn, Getter, Kernel) \
  namespace ovk {                               \
  HWY_EXPORT(Kernel);                           \
  }                                             \
  Fn Getter() {                                 \
    using namespace ovk;                        \
    return &HWY_DYNAMIC_DISPATCH(Kernel);       \
  }

// ovkVector<Group>() for a group's vector kernel ovk::<target>::Group.
#define OVK_VECTOR_KERNEL(Group) OVK_VECTOR_DISPATCH(ovk##Group##Fn, ovkVector##Group, Group)

#endif
