// Uniform vector constants built once ahead of a loop.  GCC rebuilds such a
// constant from an immediate wherever it is used, inside the loop: a move
// and a broadcast on the shuffle port, every iteration.  An empty asm that
// hides the vector's value makes it an ordinary loop invariant, which GCC
// hoists.  Other compilers hoist constants themselves.
// Included once per target, after hwy/highway.h.
#if defined(ORVIK_PELAR_LOOP_CONSTANT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVIK_PELAR_LOOP_CONSTANT_INL_H_
#undef ORVIK_PELAR_LOOP_CONSTANT_INL_H_
#else
#define ORVIK_PELAR_LOOP_CONSTANT_INL_H_
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// hn::Set(d, value), kept in a register.
template <class D, typename T>
HWY_INLINE hn::Vec<D> LoopConstant(D d, T value) {
  hn::Vec<D> v = hn::Set(d, static_cast<hn::TFromD<D>>(value));
#if HWY_COMPILER_GCC_ACTUAL && HWY_ARCH_X86 && HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  asm("" : "+v"(v.raw));
#endif
  return v;
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#endif  // ORVIK_PELAR_LOOP_CONSTANT_INL_H_
