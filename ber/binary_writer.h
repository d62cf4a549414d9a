// ber/binary_writer.h - node records, depth first.
//
// Sizes are known before the first byte is written: a body that no file can hold is refused without taking memory, and
// the file is allocated once. Neither walk recurses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ber/body_sink.h"
#include "ber/layout.h"
#include "core/field_access.h"
#include "murv/saver.h"
#include "packet/pei_rules.h"

namespace murv::detail
{

/// Writes one tree with the style and configuration of a saver.
class CBinaryWriter
{
public:
    explicit CBinaryWriter(const ISaver& saver);

    /// Size of all records of the tree.
    std::uint64_t bodySize(const CFields& root) const;
    void write(CBodySink& sink, const CFields& root) const;

private:
    /// What a leaf's record says: one of its values, and its expression.
    struct tLeaf
    {
        tSlot m_tValue;
        tPacketExpInfo m_tPEI;
    };

    /// Whether there is a choice to make; most leaves are written as they are.
    bool isChosen(const CFields& leaf) const
    {
        return !m_bExpressions || isDualExpression(tFieldAccess::pei(leaf));
    }
    tLeaf chooseLeaf(const CFields& node) const;
    std::uint64_t namingSize(const CFields& node) const;
    std::uint64_t savedValueSize(const CFields& leaf) const;
    std::uint64_t commentSize(const CFields& node) const;

    void writeContainer(CBodySink& sink, const CFields& node) const;
    void writeChosenLeaf(CBodySink& sink, const CFields& node) const;
    void writeLeaf(CBodySink& sink, const CFields& node, const tSlot& value, const tPacketExpInfo& pei) const;
    char* writeHead(char* to, E_DataType type, const CFields& node) const;
    char* writeName(char* to, const CFields& node) const;
    char* writeComments(CBodySink& sink, char* to, const CFields& node) const;
    void writeValue(CBodySink& sink, char* to, const tSlot& value) const;
    void writeCodes(CBodySink& sink, char* to, std::string_view codes) const;

    const bool m_bIds;
    const bool m_bNames;
    const bool m_bExpressions;
    const bool m_bValues;
    const bool m_bComments;
    const bool m_bSecondValue;
};

}  // namespace murv::detail
