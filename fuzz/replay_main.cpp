// fuzz/replay_main.cpp - feeds stored inputs to a fuzz harness, without a fuzzer.
//
// What fuzzing once found runs with the ordinary tests and with every compiler. Each input stands in a block of exactly
// its size, so that a read past the end is one that the sanitizers see.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

namespace fs = std::filesystem;

void collectInputs(const fs::path& place, std::vector<fs::path>& inputs)
{
    if (!fs::is_directory(place))
    {
        inputs.push_back(place);
        return;
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(place))
        if (entry.is_regular_file())
            inputs.push_back(entry.path());
}

bool replay(const fs::path& input)
{
    std::ifstream file(input, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file)
    {
        std::fprintf(stderr, "%s: cannot be read\n", input.c_str());
        return false;
    }
    std::printf("%s (%zu bytes)\n", input.c_str(), bytes.size());
    std::fflush(stdout);  // the last line names the input that ended the program
    const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    LLVMFuzzerTestOneInput(exact.get(), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        std::vector<fs::path> inputs;
        for (int i = 1; i < argc; ++i)
            collectInputs(argv[i], inputs);
        std::sort(inputs.begin(), inputs.end());
        if (inputs.empty())
        {
            std::fprintf(stderr, "usage: %s FILE|DIRECTORY... (with at least one input)\n", argv[0]);
            return 2;
        }
        const auto failures = std::count_if(inputs.begin(), inputs.end(), [](const fs::path& p) { return !replay(p); });
        std::printf("%zu inputs replayed\n", inputs.size());
        return failures == 0 ? 0 : 1;
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
