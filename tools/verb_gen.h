// tools/verb_gen.h - the verbs of murv gen.
//
// gen is a verb of verbs: what it makes from a layout is chosen by a second word. A new one is one source file and one
// row of the table, as for main().
#pragma once

#include "tools/verb.h"

namespace murv::tool
{

std::unique_ptr<IVerb> makeGenSamplesVerb();
std::unique_ptr<IVerb> makeGenWiresharkVerb();

inline constexpr tVerbRow s_ctGenVerbs[] = {
    {"samples", "Make random packets for tests, good ones and damaged ones", &makeGenSamplesVerb},
    {"wireshark", "Write a Lua dissector for Wireshark and tshark", &makeGenWiresharkVerb},
};

}  // namespace murv::tool
