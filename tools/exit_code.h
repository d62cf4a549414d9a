// tools/exit_code.h - what the tool's exit status means.
//
// Scripts depend on these numbers: a published number keeps its meaning for ever. --help is made from the rows.
#pragma once

#include <algorithm>

namespace murv::tool
{

enum E_ExitCode : int
{
    EC_done = 0,
    EC_no = 1,
    EC_wrongCall = 2,
    EC_malformed = 3,
    EC_unfit = 4,
    EC_inputOutput = 5,
    EC_password = 6,
    EC_internal = 70,
};

struct tExitCodeRow
{
    E_ExitCode m_eCode;
    const char* m_pMeaning;
};

inline constexpr tExitCodeRow s_ctExitCodes[] = {
    {EC_done, "done, or the answer is yes"},
    {EC_no,
     "the answer is no: fmt --check or diff found a difference, get or del nothing, set cannot set, check has findings "
     "or warnings only"},
    {EC_wrongCall, "wrong call: unknown verb or option, malformed PATH"},
    {EC_malformed, "malformed document or layout"},
    {EC_unfit, "the packet or tree does not fit the layout"},
    {EC_inputOutput, "reading or writing failed"},
    {EC_password, "the password is missing or wrong"},
    {EC_internal, "internal error, or out of memory"},
};

inline constexpr const char* s_cpCodeOfSeveral = "A run over several files ends with the largest of their codes.";

/// The code of a run over several files: the graver one has the larger number.
inline E_ExitCode graver(E_ExitCode a, E_ExitCode b)
{
    return std::max(a, b);
}

}  // namespace murv::tool
