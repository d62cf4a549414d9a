// tests/layout/stock/stock_helpers.h - installed layouts, samples, and the way there and back.
//
// A sample is read whole, without findings, and made again byte for byte; then values are compared with what other
// programs say about the same bytes. tests/data/layouts/FORMAT/README.md says where they come from.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "murv/layout.h"
#include "tests/support/source_file.h"

namespace murv::tests
{

inline std::string layoutText(const std::string& name)
{
    return contentOf("share/murv/layouts/" + name + ".murv");
}

inline std::string sample(const std::string& path)
{
    return contentOf(MURV_TEST_DATA_DIR "/layouts/" + path);
}

inline std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

inline CLayout compiled(const std::string& text)
{
    CLayout layout;
    layout.compile(text);
    for (const tLayoutMistake& mistake : layout.getMistakes())
        ADD_FAILURE() << mistake.m_uiOffset << ": " << mistake.m_strPath << ": " << mistake.m_strMessage;
    return layout;
}

inline CLayout installed(const std::string& name)
{
    return compiled(layoutText(name));
}

/// Where and why: `digits at 17 (path), record 2+3`.
inline std::string place(const tPacketFault& fault)
{
    return std::string(getFaultName(fault.m_eCode)) + " at " + std::to_string(fault.m_ullOffset) + " (" +
           fault.m_strPath + ")";
}

inline std::vector<std::string> places(const std::vector<tPacketFault>& faults)
{
    std::vector<std::string> texts;
    texts.reserve(faults.size());
    for (const tPacketFault& fault : faults)
        texts.push_back(place(fault));
    return texts;
}

/// The node at a path such as `batches.0.header.company`; null when there is none.
inline const CFields* nodeAt(const CFields& tree, std::string_view path)
{
    const CFields* node = &tree;
    while (node != nullptr && !path.empty())
    {
        const std::string_view step = path.substr(0, path.find('.'));
        path.remove_prefix(std::min(path.size(), step.size() + 1));
        if (!node->isArray())
            node = node->findChildAt(step.data(), static_cast<unsigned int>(step.size()));
        else
        {
            const auto index = static_cast<unsigned int>(std::stoul(std::string(step)));
            node = index < node->getChildCount() ? &node->getChildAt(index) : nullptr;
        }
    }
    return node;
}

/// The value at a path as text; what is not there is "(none)", null is "(null)".
inline std::string at(const CFields& tree, std::string_view path)
{
    const CFields* node = nodeAt(tree, path);
    if (node == nullptr)
        return "(none)";
    return node->isNull() ? "(null)" : node->asString();
}

inline unsigned int countAt(const CFields& tree, std::string_view path)
{
    const CFields* node = nodeAt(tree, path);
    return node != nullptr ? node->getChildCount() : 0;
}

/// What reading gives: a tree, the fault, the findings.
struct tReading
{
    CFields m_tTree;
    bool m_bRead = false;
    tMakeOptions m_tOptions;  // line ends as they were
    tPacketFault m_tFault;
    std::vector<tPacketFault> m_vFindings;
};

inline tReading reading(const CLayout& layout, std::string_view bytes)
{
    tReading result;
    CPacketReader reader(layout);
    result.m_bRead = reader.read(bytes, result.m_tTree);
    result.m_tOptions = reader.getMakeOptions();
    result.m_tFault = reader.getFault();
    result.m_vFindings = reader.getFindings();
    return result;
}

inline std::string making(const CLayout& layout, const CFields& tree, const tMakeOptions& options = {})
{
    CPacketMaker maker(layout, options);
    std::string packet;
    EXPECT_TRUE(maker.make(tree, packet)) << place(maker.getFault()) << ": " << maker.getFault().m_strMessage;
    return packet;
}

/// Reads all bytes without findings, and expects that making gives the same bytes.
inline CFields thereAndBack(const CLayout& layout, std::string_view bytes)
{
    tReading result = reading(layout, bytes);
    EXPECT_TRUE(result.m_bRead) << place(result.m_tFault) << ": " << result.m_tFault.m_strMessage << " \""
                                << result.m_tFault.m_strBytes << "\"";
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>());
    if (result.m_bRead)
    {
        EXPECT_EQ(making(layout, result.m_tTree, result.m_tOptions), bytes);
    }
    return std::move(result.m_tTree);
}

/// Expects the values at paths; other values do not matter.
inline void expectValues(const CFields& tree, const std::map<std::string, std::string>& values)
{
    for (const auto& [path, value] : values)
        EXPECT_EQ(at(tree, path), value) << path;
}

/// Bytes from hexadecimal digits; blanks between them do not matter.
inline std::string bytesOf(std::string_view hex)
{
    std::string digits(hex);
    digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<char>(std::strtoul(digits.substr(i, 2).c_str(), nullptr, 16)));
    return bytes;
}

/// The members of an object in indented JSON that has one member a line, as the foreign answers are written: name and
/// value, without quotes.
inline std::vector<std::map<std::string, std::string>> flatJSON(const std::string& text)
{
    std::vector<std::map<std::string, std::string>> objects;
    for (const std::string& line : linesOf(text))
    {
        if (line.find('{') != std::string::npos)
        {
            objects.emplace_back();
            continue;
        }
        const std::size_t colon = line.find("\": ");
        if (colon == std::string::npos || objects.empty())
            continue;
        const std::size_t quote = line.find('"');
        std::string value = line.substr(colon + 3);
        if (!value.empty() && value.back() == ',')
            value.pop_back();
        if (value.size() >= 2 && value.front() == '"')
            value = value.substr(1, value.size() - 2);
        objects.back()[line.substr(quote + 1, colon - quote - 1)] = value;
    }
    return objects;
}

}  // namespace murv::tests
