// tests/tools/tool.h - runs the tool that was built with these tests.
#pragma once

#include <string>
#include <vector>

#include "tests/support/subprocess.h"

namespace murv::tests
{

/// Runs murv in the directory.
inline tRun murv(const CTemporaryDirectory& directory, std::vector<std::string> arguments, tSurroundings around = {})
{
    around.m_strDirectory = directory.path();
    arguments.insert(arguments.begin(), MURV_TOOL_PATH);
    return runProgram(arguments, around);
}

/// Runs murv on a document given as its standard input.
inline tRun murvOn(const std::string& document, std::vector<std::string> arguments)
{
    tSurroundings around;
    around.m_strInput = document;
    arguments.insert(arguments.begin(), MURV_TOOL_PATH);
    return runProgram(arguments, around);
}

}  // namespace murv::tests
