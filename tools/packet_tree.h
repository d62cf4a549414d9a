// tools/packet_tree.h - trees from records, when damaged ones are left out.
//
// A record comes without what is around it: batches, lists. This puts it there again.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "murv/layout.h"

namespace murv::tool
{

/// Sees what is around records.
class IRecordSurroundings
{
public:
    virtual ~IRecordSurroundings() = default;
    virtual void onFields(unsigned int part) = 0;
    virtual void onFieldsEnd(unsigned int part) = 0;
    virtual void onArray(unsigned int part) = 0;
    virtual void onArrayEnd(unsigned int part) = 0;
};

/// Tells of the field sets and arrays around records.
class CSurroundings
{
public:
    CSurroundings(const CLayout& layout, IRecordSurroundings& frame) : m_tLayout(layout), m_tFrame(frame)
    {
    }

    /// A record comes: ends what it does not lie in, and begins what it does.
    /// \param path  of the record, with the numbers of the elements around it
    void enter(unsigned int record, std::string_view path);
    /// No further record comes. Without any, the root alone is there.
    void finish();

private:
    struct tOpen
    {
        unsigned int m_uiPart;
        std::uint64_t m_ullElement;  // of the element of an array; else 0
    };

    void open(const tOpen& part);
    void closeTo(std::size_t left);

    const CLayout& m_tLayout;
    IRecordSurroundings& m_tFrame;
    std::vector<tOpen> m_vOpen;
    bool m_bAny = false;
};

/// Makes a tree of what is around records, and puts the records in.
class CPacketTree : public IRecordSurroundings
{
public:
    CPacketTree(const CLayout& layout, CFields& root) : m_tLayout(layout), m_tRoot(root)
    {
    }

    void onFields(unsigned int part) override;
    void onFieldsEnd(unsigned int part) override;
    void onArray(unsigned int part) override;
    void onArrayEnd(unsigned int part) override;
    void putRecord(unsigned int part, CFields&& record);

private:
    CFields& add(unsigned int part);

    const CLayout& m_tLayout;
    CFields& m_tRoot;
    std::vector<CFields*> m_vOpen;  // members do not move while others are appended
};

}  // namespace murv::tool
