// tools/environment.h - the variables that the tool reads; help and manual show the rows.
#pragma once

namespace murv::tool
{

struct tEnvironmentRow
{
    const char* m_pName;
    const char* m_pMeaning;
};

inline constexpr tEnvironmentRow s_ctEnvironment[] = {
    {"MURV_LAYOUTS", "directories of layouts, with : between; they are searched before those of the tool"},
    {"NO_COLOR", "no colour when this has a text, whatever it is"},
    {"TERM", "no colour when this is dumb"},
};

}  // namespace murv::tool
