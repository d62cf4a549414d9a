// io/read_stream.cpp - the rest of a stream as one string.
//
// Read block by block: what follows the end mark has to stay in the stream.
#include "io/read_stream.h"

#include <algorithm>
#include <istream>
#include <vector>

namespace murv::detail
{

bool readStream(std::istream& in, std::size_t most, std::string& data)
{
    using tTraits = std::istream::traits_type;
    constexpr std::size_t blockSize = std::size_t{64} * 1024;
    constexpr char end = '\xFF';
    data.clear();
    if (in.fail())
        return false;
    std::vector<char> block(std::min(blockSize, most) + 1);
    while (data.size() < most)
    {
        const tTraits::int_type next = in.peek();
        if (tTraits::eq_int_type(next, tTraits::eof()))
        {
            if (data.empty())
                in.setstate(std::ios_base::failbit);
            break;
        }
        if (tTraits::eq(tTraits::to_char_type(next), end))
        {
            in.ignore();
            break;
        }
        const std::size_t wanted = std::min(block.size() - 1, most - data.size());
        in.get(block.data(), static_cast<std::streamsize>(wanted + 1), end);
        data.append(block.data(), static_cast<std::size_t>(in.gcount()));
        if (!in.good())
            break;
    }
    return !in.bad();
}

}  // namespace murv::detail
