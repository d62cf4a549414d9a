// tools/wireshark_runtime.h - the engine of dissectors, as Lua. The build makes it a text of the program.
#pragma once

#include <string_view>

namespace murv::tool
{

extern const std::string_view s_cstrvWiresharkRuntime;

}  // namespace murv::tool
