// tools/wireshark_runtime.h - the engine of dissectors, as Lua.
//
// It is written in the files of tools/wireshark/, which the build makes texts of the program.
#pragma once

#include <string>

namespace murv::tool
{

/// The engine; it needs a local variable `layout` before it.
std::string wiresharkRuntime();

}  // namespace murv::tool
