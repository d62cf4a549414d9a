// tools/wireshark_names.h - names of protocols and fields for Wireshark's filters.
//
// Filters know small letters, digits, "_" and points between names. Names of layouts may be anything, so they are made
// to fit, and where two become equal, the later one gets a number.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace murv::tool
{

/// One name of a path: `Hello time` becomes `hello_time`. Never empty.
std::string filterName(std::string_view name);

/// Whether a text may be the name of a protocol: small letters, digits and "_", the first no digit.
bool isProtocolName(std::string_view text);

/// Gives each field a name that no other has.
class CFieldNames
{
public:
    /// \param path  of names that fit
    std::string take(const std::string& path);

private:
    std::set<std::string> m_vTaken = {"fault", "finding"};  // these are what expert information is called
};

}  // namespace murv::tool
