// tools/sample_tree.h - random data for a whole layout.
//
// Parts are made in the order of the packet, so that a condition finds the values that it looks at. What only making
// the packet shows (an element that looks like the next part, say) is for the caller to mend.
#pragma once

#include "tools/sample_values.h"

namespace murv::tool
{

class CSampleTree
{
public:
    CSampleTree(const CSamplePlan& plan, CSampleRandom& random) : m_tPlan(plan), m_tRandom(random)
    {
    }

    void build(const tSampleStyle& style, CFields& tree);
    /// Another value for a leaf.
    void renew(unsigned int part, const tSampleStyle& style, CFields& node);

private:
    /// What is known of a part's value in the present element.
    struct tSeen
    {
        bool m_bThere = false;
        const CFields* m_pValue = nullptr;  // null: making fills it in
    };
    /// A container that is being filled.
    struct tOpen
    {
        unsigned int m_uiPart;
        CFields* m_pData;
        std::size_t m_nNext = 0;          // member
        std::uint64_t m_ullElements = 0;  // of an array
        std::uint64_t m_ullElement = 0;
        E_SampleSize m_eSize = SZ_any;  // before it began
    };
    /// What an element has to say: it is the last, or it is not.
    struct tMust
    {
        const tSampleCondition* m_pCondition = nullptr;
        bool m_bHolds = false;
    };
    enum E_Answer
    {
        AN_no,
        AN_yes,
        AN_unknown,
    };

    void begin(unsigned int part, CFields& node);
    void fillSet(tOpen& open);
    void fillArray(tOpen& open);
    void close(const tOpen& open);
    void add(const tOpen& around, unsigned int member);
    void makeLeaf(unsigned int part, CFields& node);
    CFields value4Leaf(unsigned int part, const tSampleStyle& style);
    void grant(const tSamplePart& part, CFields& value);
    unsigned int alternative(unsigned int set);
    bool isWanted(unsigned int part);
    bool isThere(unsigned int part) const;
    E_Answer answer(const tSampleCondition& condition) const;
    const CFields* valueOf(const tSampleTarget& target) const;

    const CSamplePlan& m_tPlan;
    CSampleRandom& m_tRandom;
    tSampleStyle m_tStyle;
    std::vector<tSeen> m_vSeen;  // by part
    std::vector<tMust> m_vMust;  // by part
    std::vector<tOpen> m_vOpen;
};

}  // namespace murv::tool
