// tests/support/processor.h - what this processor has, asked apart from the code that chooses by it.
//
// A test of a wide kernel may be skipped because the processor lacks it, but not because the choice is broken.
#pragma once

namespace murv::tests
{

#if defined(__x86_64__) && defined(__GNUC__)
inline bool hasAvx2()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
}
inline bool hasAvx512()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512bw") != 0;
}
inline bool hasAvx512Vbmi()
{
    return hasAvx512() && __builtin_cpu_supports("avx512vbmi") != 0;
}
inline bool hasAvx512Gfni()
{
    return hasAvx512() && __builtin_cpu_supports("gfni") != 0;
}
#else
inline bool hasAvx2()
{
    return false;
}
inline bool hasAvx512Vbmi()
{
    return false;
}
inline bool hasAvx512Gfni()
{
    return false;
}
#endif

}  // namespace murv::tests
