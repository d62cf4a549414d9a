// tools/json_input.cpp - turns faults of JSON into diagnostics.
#include "tools/json_input.h"

#include <algorithm>

namespace murv::tool
{

bool isJsonName(std::string_view path)
{
    constexpr std::string_view ending = ".json";
    return path.size() > ending.size() && path.substr(path.size() - ending.size()) == ending;
}

E_ExitCode loadJsonInput(const tInput& input, const tJsonReading& how, CDiagnostics& diagnostics, CFields& tree)
{
    if (input.m_bTooBig)
        return reportTooBig(input, diagnostics);
    tJsonFault fault;
    if (readJson(input.text(), how, tree, fault))
        return EC_done;
    const std::size_t place = std::min(fault.m_nOffset, input.text().size());
    return diagnostics.failAt(input.m_strName, input.text(), {place, place + fault.m_nLength}, fault.m_strMessage,
                              EC_malformed);
}

}  // namespace murv::tool
