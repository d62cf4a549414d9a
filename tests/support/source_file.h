// tests/support/source_file.h - whole files of the sources, such as pages whose claims are tested.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace murv::tests
{

/// The bytes of a file; the test fails when it cannot be opened.
/// \param file  from the folder of the sources on, or a whole path
inline std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream in(std::filesystem::path(MURV_SOURCE_DIR) / file, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << file;
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace murv::tests
