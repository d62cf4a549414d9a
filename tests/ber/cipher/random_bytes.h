// tests/ber/cipher/random_bytes.h - bytes to encipher.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace murv::tests
{

using tBytes = std::vector<unsigned char>;

/// The same bytes for the same seed.
inline tBytes randomBytes(std::size_t length, unsigned int seed)
{
    std::mt19937 random(seed);
    tBytes bytes(length);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

}  // namespace murv::tests
