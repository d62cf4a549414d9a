// tests/tools/sample_lines.h - what murv gen samples --lines writes, taken apart.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tools/tool.h"

namespace murv::tests
{

inline std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

/// The bytes of the packet in a line.
inline std::string bytesOf(const std::string& line)
{
    const std::string key = "\"bytes\":\"";
    const std::size_t begin = line.find(key) + key.size();
    const std::size_t end = line.find('"', begin);
    std::string bytes;
    for (std::size_t at = begin; at + 1 < end; at += 2)
        bytes += static_cast<char>(std::stoi(line.substr(at, 2), nullptr, 16));
    return bytes;
}

/// The lines of some samples; the layout is a file, or the name of an installed one.
inline std::vector<std::string> samples(const std::string& layout, std::vector<std::string> options)
{
    const CTemporaryDirectory files;
    const bool isText = layout.find('{') != std::string::npos;
    files.write("l.murv", layout);
    options.insert(options.begin(), {"gen", "samples", "-l", isText ? "l.murv" : layout, "--lines"});
    const tRun run = murv(files, options);
    EXPECT_EQ(run.m_strError, "") << layout;
    EXPECT_EQ(run.m_iExit, 0) << layout;
    return linesOf(run.m_strOutput);
}

}  // namespace murv::tests
