// tools/packet_json.h - what is read from packets, as JSON, without a tree.
//
// Integers are written in full, texts as strings, and what is no UTF-8 as {"hex":"00FF"}; masked values are stars.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "murv/layout.h"
#include "tools/packet_tree.h"

namespace murv::tool
{

/// What JSON needs to know of the parts of a layout, by their numbers.
class CPacketJsonParts
{
public:
    struct tPart
    {
        std::string m_strKey;  // with quotes and colon; empty for elements and the root
        bool m_bLeftOut = false;
        bool m_bMasked = false;
        unsigned int m_uiShown = 0;
        std::vector<tLayoutBits> m_vBits;
    };

    /// \param unmask  whether masked values are written as they are
    CPacketJsonParts(const CLayout& layout, bool unmask);
    const tPart& operator[](unsigned int part) const
    {
        return m_vPart[part];
    }

private:
    std::vector<tPart> m_vPart;
};

/// Appends the value of a leaf, masked as its part says.
void appendJsonLeaf(std::string& out, const CPacketJsonParts::tPart& part, const tPacketValue& value,
                    const tByteRange& place);

/// Appends JSON to a text, part by part.
class CPacketJson : public IPacketVisitor, public IRecordSurroundings
{
public:
    CPacketJson(const CPacketJsonParts& parts, std::string& out) : m_tParts(parts), m_strOut(out)
    {
    }

    /// The next part is a value of its own, not a member or an element.
    void begin()
    {
        m_uiDepth = 0;
    }
    /// A part that is JSON already.
    void putRecord(unsigned int part, std::string_view json);
    void onFields(unsigned int part) override;
    void onFieldsEnd(unsigned int part) override;
    void onArray(unsigned int part) override;
    void onElement(unsigned int part, std::uint64_t index) override;
    void onArrayEnd(unsigned int part) override;
    void onRecord(unsigned int part, std::uint64_t number, std::uint64_t offset) override;
    void onRecordEnd(unsigned int part) override;
    void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place) override;

private:
    void putKey(const CPacketJsonParts::tPart& part);

    const CPacketJsonParts& m_tParts;
    std::string& m_strOut;
    unsigned int m_uiDepth = 0;  // containers that are open
};

}  // namespace murv::tool
