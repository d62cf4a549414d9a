// fuzz/binary_load_fuzz.cpp - binary files of any content.
//
// The input's first byte chooses how the rest is used: as a whole file, or as a body after a valid header, which gets
// the fuzzer past the encoding. What loads must be saved and load again as the same tree.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ber/cipher/message.h"
#include "murv/murv.h"
#include "support/same_tree.h"

namespace
{

using namespace murv;

constexpr unsigned int s_cuiFlags = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_DUPLICATE;
constexpr const char* s_cpPassword = "pw";

std::string file4Body(bool littleEndian, bool isEnciphered, const std::string& body)
{
    std::string file("MURF\0\0\5\1\x0D\0\5\0\0", 13);
    if (!littleEndian)
    {
        file[8] = 0;
        file[9] = 13;
        file[10] = 4;
    }
    unsigned char* out = nullptr;
    if (isEnciphered)
    {
        file[11] = 1;
        file[12] = 4;
        const std::uint32_t size = CipherEncrypt(0, s_cpPassword, 2, nullptr, 0, false, &out);
        file.append(reinterpret_cast<const char*>(out), size);
        std::free(out);
    }
    const std::uint32_t size =
        CipherEncrypt(isEnciphered ? 1 : 0, body.data(), body.size(), s_cpPassword, 2, false, &out);
    file.append(reinterpret_cast<const char*>(out), size);
    std::free(out);
    return file;
}

/// \return false when the file was refused, which is as good as any other end
bool load(CFields& tree, const std::string& file, unsigned int flags)
{
    CLoader4BER loader(flags);
    try
    {
        const bool done = loader.loading(file, tree, s_cpPassword);
        if ((done != loader.getLastErrMsg().empty() || done != (loader.getLoadFault() == LF_none)) && !file.empty())
            std::abort();
        return done;
    }
    catch (const CLogicError&)
    {
        if (loader.getLoadFault() != LF_tooDeep)
            std::abort();
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    const bool isWhole = (data[0] & 1) != 0;
    const std::string file = isWhole ? rest : file4Body((data[0] & 2) == 0, (data[0] & 4) != 0, rest);
    CFields tree;
    CFields strict;
    load(strict, file, LCBC_COMMENT);
    if (!load(tree, file, s_cuiFlags))
        return 0;
    CFields again;
    if (!load(again, tree.toMURV(ER_BER), s_cuiFlags))
        std::abort();
    if (!tests::difference(tree, again, tests::SP_all & ~tests::SP_offsets).empty())
        std::abort();
    return 0;
}
