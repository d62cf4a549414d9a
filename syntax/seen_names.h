// syntax/seen_names.h - what was seen in the containers that are open.
//
// One hash table for all of them: containers end in the reverse order of their beginning, so what was entered last in a
// chain is what leaves first. So memory is that of the open containers, and no name is compared with those of others.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace murv::detail
{

class CSeenNames
{
public:
    static constexpr std::uint32_t s_cuiNone = 0xFFFFFFFF;

    void open();
    void close();
    /// Looks a name up in the innermost open container, and enters it when it is not there. Average time: that of one
    /// comparison, whatever the names are.
    /// \param place  is kept with the name when it is entered
    /// \return the place of the same name, or s_cuiNone when it is entered now
    std::uint32_t enter(std::string_view name, std::uint32_t place);

private:
    struct tEntry
    {
        std::uint32_t m_uiHash;
        std::uint32_t m_uiNext;  // in its chain, or s_cuiNone
        std::uint32_t m_uiPlace;
        std::uint32_t m_uiName;  // where it ends in m_strNames; it begins where the one before ends
        std::uint32_t m_uiLevel;
    };

    std::string_view name4Entry(std::uint32_t entry) const;
    std::uint32_t& head4Hash(std::uint32_t hash)
    {
        return m_vHead[hash & (m_vHead.size() - 1)];
    }
    void grow();

    std::vector<std::uint32_t> m_vHead = std::vector<std::uint32_t>(16, s_cuiNone);  // of chains; a power of two
    std::vector<tEntry> m_vEntry;
    std::string m_strNames;
    std::vector<std::uint32_t> m_vOpen;  // how many entries there were when it was opened
};

}  // namespace murv::detail
