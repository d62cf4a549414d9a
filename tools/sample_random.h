// tools/sample_random.h - random numbers that are the same on every machine.
//
// The standard fixes what the engine gives, but not what its distributions make of it; so the arithmetic is here.
#pragma once

#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

namespace murv::tool
{

class CSampleRandom
{
public:
    /// Neighbouring seeds give unrelated numbers.
    explicit CSampleRandom(std::uint64_t seed);

    /// All 64 bits.
    std::uint64_t next()
    {
        return m_tEngine();
    }
    /// A number below `bound`; 0 for 0. The lowest numbers are favoured by less than bound / 2^64.
    std::uint64_t below(std::uint64_t bound)
    {
        return bound == 0 ? 0 : m_tEngine() % bound;
    }
    /// A number from the least to the most.
    std::uint64_t between(std::uint64_t least, std::uint64_t most)
    {
        return most - least == ~std::uint64_t{0} ? next() : least + below(most - least + 1);
    }
    /// True in that percentage of cases.
    bool chance(unsigned int percent)
    {
        return below(100) < percent;
    }
    template <typename tValue>
    const tValue& pick(const std::vector<tValue>& values)
    {
        return values[static_cast<std::size_t>(below(values.size()))];
    }
    char pick(std::string_view characters)
    {
        return characters[static_cast<std::size_t>(below(characters.size()))];
    }

private:
    std::mt19937_64 m_tEngine;
};

}  // namespace murv::tool
