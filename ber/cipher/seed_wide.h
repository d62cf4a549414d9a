// seed_wide.h - SEED on many blocks at a time, for processors with AVX-512 and GFNI, chosen at run time.
//
// Such a processor inverts in GF(2^8) and applies bit matrices on 64 bytes in one instruction, which replaces all
// table look-ups. No compiler option is needed; elsewhere there is no such version and the portable one is used.

#pragma once

#include <cstddef>
#include <cstdint>

namespace murv::detail
{

/// Encrypts or decrypts independent blocks of 16 bytes; `out` may be `in` itself.
using tSeedBlocksFP = void (*)(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                               std::size_t blocks);

/// The wide version, or null when this processor or this build does not have it.
tSeedBlocksFP seedWideEncryptor();
tSeedBlocksFP seedWideDecryptor();

}  // namespace murv::detail
