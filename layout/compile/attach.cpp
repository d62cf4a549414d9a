// layout/compile/attach.cpp - rules find their parts, and are checked against each other.
#include <algorithm>
#include <utility>

#include "layout/compile/document.h"
#include "layout/compile/draft.h"

namespace murv::detail
{

namespace
{

/// Reads the name of a rule member: "@", "@NAME", "@#7" or "@NAME.BITS".
bool readTarget(std::string_view name, std::vector<tRuleStep>& target)
{
    CRuleText text(name.substr(1));
    constexpr std::size_t most = 2;
    return name.size() == 1 || (text.takePath(target) && text.atEnd() && target.size() <= most);
}

/// Who reports what is wrong with rules that a copy repeats.
enum E_RuleSource
{
    RS_own,
    RS_copied,
};

class CAttacher
{
public:
    explicit CAttacher(tCompile& compile) : m_tCompile(compile)
    {
    }

    /// The rules that stand in the field set that a part shows, about it and its members.
    void attachIn(unsigned int index)
    {
        const tDraft& draft = m_tCompile.draft(index);
        const CFields& node = *draft.m_pNode;
        if (m_tCompile.part(index).m_eKind == PK_set)
        {
            for (const CFields& member : node)
            {
                if (isRuleMember(member))
                    attach(index, member, draft.m_pNode == draft.m_pOwn ? RS_own : RS_copied);
            }
        }
    }

    /// What a copy takes over from the parts that it copies, but for their members.
    void attachCopied(unsigned int index)
    {
        const tDraft& draft = m_tCompile.draft(index);
        if (draft.m_vCopied.empty())
            return;
        takeOwnRules(index, *draft.m_pOwn, RS_own);
        for (std::size_t i = 0; i < draft.m_vCopied.size(); ++i)
        {
            const tCopied copied = draft.m_vCopied[i];
            if (copied.m_pNode != draft.m_pNode)
                takeOwnRules(index, *copied.m_pNode, RS_copied);
            attachAbout(index, copied);
        }
    }

private:
    /// The rules beside a copied part that are about it or, of a leaf, about a part of its bits.
    void attachAbout(unsigned int index, const tCopied& copied)
    {
        const std::string_view name = dataName(*copied.m_pNode);
        const bool isPlain = !name.empty() && name.find_first_of(".;|\"#@") == name.npos;
        if (m_tCompile.part(index).m_eKind != PK_leaf && isPlain)
        {
            const std::string written = "@" + std::string(name);
            const CFields* const about =
                copied.m_pSet->findChildAt(written.data(), static_cast<unsigned int>(written.size()));
            if (about != nullptr)
                addRules(index, *about, "", RS_copied);
            return;
        }
        for (const CFields& member : *copied.m_pSet)
        {
            std::vector<tRuleStep> target;
            if (!m_tCompile.spend(1) || !isRuleMember(member) || !readTarget(writtenName(member), target) ||
                target.empty())
                continue;
            const tRuleStep& first = target.front();
            const bool isMeant = first.m_strName.empty() ? first.m_uiID == copied.m_pNode->getID() && name.empty()
                                                         : first.m_strName == name;
            if (isMeant)
                addRules(index, member, target.size() > 1 ? describeStep(target[1]) : "", RS_copied);
        }
    }

    void takeOwnRules(unsigned int index, const CFields& node, E_RuleSource source)
    {
        const CFields* const own = node.getDT() == DT_fields ? node.findChildAt("@", 1) : nullptr;
        if (own != nullptr)
            addRules(index, *own, "", source);
    }

    void attach(unsigned int set, const CFields& member, E_RuleSource source)
    {
        const auto place = static_cast<unsigned int>(member.getOffsetStart());
        std::vector<tRuleStep> target;
        if (!readTarget(writtenName(member), target))
        {
            m_tCompile.m_tMistakes.add(set, place, "The name of the rule is malformed: write @NAME or @NAME.BITS");
            return;
        }
        if (target.empty())
        {
            addRules(set, member, "", source);
            return;
        }
        const unsigned int index = m_tCompile.m_tPaths.member(set, target.front());
        if (index == s_cuiNone)
        {
            m_tCompile.m_bRuleLost = true;
            m_tCompile.m_tMistakes.add(set, place,
                                       "There is no part \"" + describeStep(target.front()) + "\" for this rule" +
                                           m_tCompile.m_tPaths.suggestMember(set, target.front().m_strName, false));
            return;
        }
        addRules(index, member, target.size() > 1 ? describeStep(target[1]) : "", RS_own);
    }

    void addRules(unsigned int index, const CFields& member, const std::string& bit, E_RuleSource source)
    {
        const auto place = static_cast<unsigned int>(member.getOffsetStart());
        const std::string_view text = ruleText(member);
        std::vector<std::string_view> rules;
        if (m_tCompile.m_tMistakes.isFull())
            return;
        if (member.getDT() != DT_codelist || !CFields::pkt_IsNullExp(member.pkt_GetExp()))
            m_tCompile.m_tMistakes.add(index, place, "A rule is a text without a packet expression");
        else if (!splitRules(text, rules))
            m_tCompile.m_tMistakes.add(index, place, "A rule is empty, or a quote in it is not closed");
        else if (source == RS_own && isRepeated(index, member))
            m_tCompile.m_tMistakes.add(index, place,
                                       "The rule \"" + std::string(writtenName(member)) + "\" stands twice");
        else
        {
            for (const std::string_view rule : rules)
                addRule(index, place, rule, bit, source);
        }
    }

    /// Whether the same set has an earlier rule of that name; it is what a look-up by name finds.
    bool isRepeated(unsigned int index, const CFields& member)
    {
        const std::string_view name = writtenName(member);
        const auto length = static_cast<unsigned int>(name.size());
        const unsigned int parent = m_tCompile.part(index).m_uiParent;
        const CFields* const set =
            name.size() == 1 || parent == s_cuiNone ? m_tCompile.draft(index).m_pOwn : m_tCompile.draft(parent).m_pNode;
        const CFields* const first = set->findChildAt(name.data(), length);
        return first != nullptr && first != &member;
    }

    void addRule(unsigned int index, unsigned int place, std::string_view text, const std::string& bit,
                 E_RuleSource source)
    {
        tRule rule;
        rule.m_uiPlace = place;
        rule.m_strBit = bit;
        const std::string mistake = readRule(text, rule);
        if (!mistake.empty())
        {
            m_tCompile.m_bRuleLost = true;
            m_tCompile.m_tMistakes.add(index, place, mistake);
            return;
        }
        const std::string_view name = rule.m_pRow->m_pName;
        if (source == RS_copied && (name == "if" || name == "optional"))
            return;
        tPart& part = m_tCompile.part(index);
        part.m_strRules += (part.m_strRules.empty() ? "" : "; ") + rule.m_strWritten;
        if (name == "like")
        {
            if (m_tCompile.draft(index).m_vCopied.empty() && !m_tCompile.m_tMistakes.isFaulty(index))
                m_tCompile.refuse(index, rule, "\"like\" stands in the \"@\" of the field set that is the copy");
            return;
        }
        m_tCompile.draft(aboutElement(index, rule)).m_vRules.push_back(std::move(rule));
    }

    /// Words about an array of leaves are about its elements.
    unsigned int aboutElement(unsigned int index, const tRule& rule)
    {
        if ((rule.m_pRow->m_ucTraits & RT_word) == 0)
            return index;
        unsigned int at = index;
        while (m_tCompile.part(at).m_eKind == PK_array && !m_tCompile.part(at).m_vMembers.empty())
            at = m_tCompile.part(at).m_vMembers.front();
        return m_tCompile.part(at).m_eKind == PK_leaf ? at : index;
    }

    tCompile& m_tCompile;
};

bool sayTheSame(const tRule& a, const tRule& b)
{
    return a.m_pRow == b.m_pRow && a.m_bNumber == b.m_bNumber && a.m_ullNumber == b.m_ullNumber &&
           a.m_vTexts == b.m_vTexts && a.m_strWord == b.m_strWord;
}

void checkPlace(tCompile& compile, unsigned int index, const tRule& rule)
{
    const std::string name = std::string("\"") + rule.m_pRow->m_pName + "\"";
    const unsigned int places =
        rule.m_strBit.empty() ? compile.draft(index).m_uiPlaces : static_cast<unsigned int>(RP_bit);
    if ((rule.m_pRow->m_uiPlaces & places) == 0)
        compile.refuse(index, rule, name + " is a rule for " + rule.m_pRow->m_pPlaces);
}

void checkPair(tCompile& compile, unsigned int index, const tRule& first, const tRule& second)
{
    const bool same = first.m_pRow == second.m_pRow;
    const bool repeats = (second.m_pRow->m_ucTraits & RT_repeats) != 0;
    const bool contradict = first.m_pRow->m_eGroup != RG_none && first.m_pRow->m_eGroup == second.m_pRow->m_eGroup;
    if (first.m_strBit != second.m_strBit || (!same && !contradict) || (same && repeats))
        return;
    if (same && !first.m_bKeyword)
        compile.refuse(index, second, std::string("\"") + second.m_pRow->m_pName + "\" stands twice");
    else if (!first.m_bKeyword || !sayTheSame(first, second))
        compile.refuse(index, second, "\"" + second.m_strWritten + "\" contradicts \"" + first.m_strWritten + "\"");
}

/// Which rules of a part were looked at last, by row and group, so that many rules are compared in one pass.
void checkPart(tCompile& compile, unsigned int index)
{
    const std::vector<tRule>& rules = compile.draft(index).m_vRules;
    constexpr std::size_t most = 200;
    if (rules.size() > most)
    {
        compile.refuse(index, rules[most], "A part has 200 rules at most");
        return;
    }
    for (std::size_t i = 0; i < rules.size(); ++i)
    {
        checkPlace(compile, index, rules[i]);
        for (std::size_t j = 0; j < i; ++j)
            checkPair(compile, index, rules[j], rules[i]);
    }
}

/// The root says the version first, and nobody else does.
void checkVersion(tCompile& compile)
{
    const std::vector<tRule>& rules = compile.draft(0).m_vRules;
    if (rules.empty() || std::string_view(rules.front().m_pRow->m_pName) != "layout")
    {
        if (!compile.m_tMistakes.isFaulty(0))
            compile.refusePart(0, "The first rule of a layout's root is \"layout 1\"");
    }
    else if (rules.front().m_ullNumber != 1)
        compile.refuse(0, rules.front(),
                       "There is no layout version " + std::to_string(rules.front().m_ullNumber) + ", only 1");
}

}  // namespace

void attachRules(tCompile& compile)
{
    CAttacher attacher(compile);
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        attacher.attachCopied(i);
        attacher.attachIn(i);
    }
}

void checkRules(tCompile& compile)
{
    checkVersion(compile);
    for (unsigned int i = 0; i < compile.count(); ++i)
        checkPart(compile, i);
}

}  // namespace murv::detail
