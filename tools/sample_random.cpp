// tools/sample_random.cpp - spreads a seed over all bits.
#include "tools/sample_random.h"

namespace murv::tool
{

namespace
{
/// The finalizer of SplitMix64: each bit of the seed changes about half of the bits.
std::uint64_t mixed(std::uint64_t seed)
{
    seed += 0x9E3779B97F4A7C15;
    seed = (seed ^ seed >> 30U) * 0xBF58476D1CE4E5B9;
    seed = (seed ^ seed >> 27U) * 0x94D049BB133111EB;
    return seed ^ seed >> 31U;
}
}  // namespace

CSampleRandom::CSampleRandom(std::uint64_t seed) : m_tEngine(mixed(seed))
{
}

}  // namespace murv::tool
