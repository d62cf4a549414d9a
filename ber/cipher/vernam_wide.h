// vernam_wide.h - the VERNAM kernels for processors with wide registers, chosen at run time.
//
// No compiler option is needed: each kernel names the instructions it uses, and is handed out only where the processor
// has them. Elsewhere there is none, and the portable kernel is used.

#pragma once

#include <cstddef>

namespace murv::detail
{

/// Codes whole groups (3 bytes, 4 symbols), reading and writing nothing outside them.
///
/// A decoder may write its output over its input. \return the groups done, fewer where a decoder meets a foreign byte
/// or where too few are left for a wide register.
using tVernamGroupsFP = std::size_t (*)(unsigned char* out, const unsigned char* in, std::size_t groups);

enum E_VernamWidth : unsigned int
{
    VW_256 = 0,  // AVX2
    VW_512 = 1   // AVX-512 with VBMI
};

/// The kernel of that width, or null when this processor or this build does not have it.
tVernamGroupsFP vernamEncoder4Width(E_VernamWidth width);
tVernamGroupsFP vernamDecoder4Width(E_VernamWidth width);

/// The widest kernel there is, or null.
inline tVernamGroupsFP vernamWideEncoder()
{
    const tVernamGroupsFP widest = vernamEncoder4Width(VW_512);
    return widest != nullptr ? widest : vernamEncoder4Width(VW_256);
}

inline tVernamGroupsFP vernamWideDecoder()
{
    const tVernamGroupsFP widest = vernamDecoder4Width(VW_512);
    return widest != nullptr ? widest : vernamDecoder4Width(VW_256);
}

}  // namespace murv::detail
