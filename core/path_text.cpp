// core/path_text.cpp - how paths of nodes are written.
#include "core/path_text.h"

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/text/quote.h"

namespace murv::detail
{

namespace
{
/// A name that means the same without quotes, in a path and in a message.
bool isPlainName(std::string_view name)
{
    return !name.empty() &&
           name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-") ==
               std::string_view::npos;
}
}  // namespace

void appendPathName(std::string& path, std::string_view name)
{
    if (isPlainName(name))
    {
        path += name;
        return;
    }
    const std::size_t before = path.size();
    path.resize(before + quotedRoom(name.size()));
    char* const end = writeQuotedCharacters(path.data() + before, name.data(), name.size());
    path.resize(static_cast<std::size_t>(end - path.data()));
}

bool isFoundByName(const CFields& container, const CFields& member)
{
    const std::string_view name = tFieldAccess::name(member);
    return tFieldAccess::type(container) == DT_fields && !name.empty() &&
           container.findChildAt(name.data(), static_cast<unsigned int>(name.size())) == &member;
}

void appendPathStep(std::string& path, const CFields& container, std::uint32_t index)
{
    const CFields& member = tFieldAccess::members(container)->at(index);
    if (!isFoundByName(container, member))
    {
        path.append("[").append(std::to_string(index)).append("]");
        return;
    }
    if (!path.empty())
        path += '.';
    appendPathName(path, tFieldAccess::name(member));
}

}  // namespace murv::detail
