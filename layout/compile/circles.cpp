// layout/compile/circles.cpp - numbers that measure parts which overlap, or that need each other.
#include <algorithm>
#include <utility>

#include "layout/compile/draft.h"

namespace murv::detail
{

namespace
{

void refuseLink(tCompile& compile, unsigned int link, std::string message)
{
    compile.m_tMistakes.addIfFirst(compile.m_tPlan.m_vLinks[link].m_tNumber.m_uiPart, compile.m_vPlaces[link],
                                   std::move(message));
}

/// Sizes lie side by side or inside each other.
void checkOverlaps(tCompile& compile)
{
    struct tSized
    {
        unsigned int m_uiBegin;
        unsigned int m_uiEnd;
        unsigned int m_uiLink;
    };
    std::vector<tSized> sizes;
    for (unsigned int i = 0; i < compile.m_tPlan.m_vLinks.size(); ++i)
    {
        const tLink& link = compile.m_tPlan.m_vLinks[i];
        if (link.m_eKind != LK_size)
            continue;
        const tSpan& span = compile.m_tPlan.m_vSpans[link.m_uiSpan];
        sizes.push_back({span.m_uiFirst, compile.part(span.m_uiLast).m_uiAfter, i});
    }
    std::stable_sort(sizes.begin(), sizes.end(), [](const tSized& a, const tSized& b) {
        return a.m_uiBegin != b.m_uiBegin ? a.m_uiBegin < b.m_uiBegin : a.m_uiEnd > b.m_uiEnd;
    });
    std::vector<const tSized*> open;
    for (const tSized& size : sizes)
    {
        while (!open.empty() && open.back()->m_uiEnd <= size.m_uiBegin)
            open.pop_back();
        if (!open.empty() && open.back()->m_uiEnd < size.m_uiEnd)
        {
            const unsigned int other = compile.m_tPlan.m_vLinks[open.back()->m_uiLink].m_tNumber.m_uiPart;
            refuseLink(compile, size.m_uiLink,
                       "The sizes overlap in part: that of " + nameOf(compile.part(other)) + " ends inside");
        }
        open.push_back(&size);
    }
}

/// What of a part depends on a computed number.
enum E_Dependence : unsigned char
{
    DE_value = 1,  // its bytes
    DE_width = 2,  // how many they are
    DE_there = 4,  // whether it is there
};

struct tDependent
{
    unsigned int m_uiPart;
    unsigned int m_uiLink;  // the number's
    unsigned char m_ucHow;
};

/// Looks for a number that needs itself, along what each number needs: the parts of a row, in their order.
class CCircles
{
public:
    explicit CCircles(tCompile& compile) : m_tCompile(compile)
    {
    }

    void check()
    {
        listDependents();
        m_vState.assign(m_tCompile.m_tPlan.m_vLinks.size(), ST_new);
        for (unsigned int i = 0; i < m_vState.size(); ++i)
        {
            if (m_vState[i] == ST_new)
                visit(i);
        }
    }

private:
    enum E_State : unsigned char
    {
        ST_new,
        ST_open,
        ST_known,
    };
    /// A number, and the part of its row that comes next.
    struct tVisit
    {
        unsigned int m_uiLink;
        std::size_t m_nNext;
        unsigned int m_uiEnd;
        unsigned char m_ucHow;
    };

    void listDependents()
    {
        const std::vector<tLink>& links = m_tCompile.m_tPlan.m_vLinks;
        for (unsigned int i = 0; i < links.size(); ++i)
        {
            const unsigned int number = links[i].m_tNumber.m_uiPart;
            const bool varies = m_tCompile.part(number).m_tItem.m_bVaries;
            m_vNumbers.push_back({number, i, 0});
            m_vDependents.push_back({number, i, static_cast<unsigned char>(DE_value | (varies ? DE_width : 0))});
        }
        const auto before = [](const tDependent& a, const tDependent& b) { return a.m_uiPart < b.m_uiPart; };
        std::stable_sort(m_vNumbers.begin(), m_vNumbers.end(), before);
        for (unsigned int i = 0; i < m_tCompile.count(); ++i)
        {
            for (const tTest& test : m_tCompile.part(i).m_vIf)
                addCondition(i, test.m_tValue.m_uiPart);
        }
        std::stable_sort(m_vDependents.begin(), m_vDependents.end(), before);
    }

    void addCondition(unsigned int index, unsigned int number)
    {
        auto at = std::partition_point(m_vNumbers.begin(), m_vNumbers.end(),
                                       [number](const tDependent& known) { return known.m_uiPart < number; });
        for (; at != m_vNumbers.end() && at->m_uiPart == number && m_tCompile.spend(1); ++at)
            m_vDependents.push_back({index, at->m_uiLink, DE_there});
    }

    tVisit open(unsigned int index)
    {
        const tLink& link = m_tCompile.m_tPlan.m_vLinks[index];
        m_vState[index] = ST_open;
        unsigned int begin = link.m_uiTarget;
        unsigned int end = begin + 1;
        unsigned char how = link.m_eKind == LK_sum ? DE_value | DE_there : DE_there;
        if (link.m_uiSpan != s_cuiNone)
        {
            const tSpan& span = m_tCompile.m_tPlan.m_vSpans[link.m_uiSpan];
            begin = span.m_uiFirst;
            end = m_tCompile.part(span.m_uiLast).m_uiAfter;
            how = link.m_eKind == LK_check ? DE_value | DE_width | DE_there : DE_width | DE_there;
        }
        const auto at = std::partition_point(m_vDependents.begin(), m_vDependents.end(),
                                             [begin](const tDependent& known) { return known.m_uiPart < begin; });
        return {index, static_cast<std::size_t>(at - m_vDependents.begin()), end, how};
    }

    /// The next number that is needed, or none.
    unsigned int next(tVisit& visit)
    {
        while (visit.m_nNext < m_vDependents.size() && m_vDependents[visit.m_nNext].m_uiPart < visit.m_uiEnd)
        {
            const tDependent& at = m_vDependents[visit.m_nNext++];
            // A check takes zeros for its own bytes.
            const bool own = at.m_uiLink == visit.m_uiLink && (at.m_ucHow & visit.m_ucHow) == DE_value;
            if (!m_tCompile.spend(1))
                return s_cuiNone;
            if ((at.m_ucHow & visit.m_ucHow) != 0 && !own)
                return at.m_uiLink;
        }
        return s_cuiNone;
    }

    void visit(unsigned int first)
    {
        std::vector<tVisit> path{open(first)};
        while (!path.empty())
        {
            const unsigned int needed = next(path.back());
            if (needed == s_cuiNone)
            {
                m_vState[path.back().m_uiLink] = ST_known;
                path.pop_back();
            }
            else if (m_vState[needed] == ST_new)
                path.push_back(open(needed));
            else if (m_vState[needed] == ST_open)
                refuseLink(m_tCompile, path.back().m_uiLink,
                           "The numbers are computed in a circle: this one needs " +
                               nameOf(m_tCompile.part(m_tCompile.m_tPlan.m_vLinks[needed].m_tNumber.m_uiPart)));
        }
    }

    tCompile& m_tCompile;
    std::vector<tDependent> m_vNumbers;     // by part: its links
    std::vector<tDependent> m_vDependents;  // by part
    std::vector<E_State> m_vState;          // by link
};

/// Bytes that are skipped depend on the place, and the place on the width of a number before it.
void checkAligned(tCompile& compile)
{
    std::vector<unsigned int> aligned;
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        if (compile.part(i).m_uiAlign != 0)
            aligned.push_back(i);
    }
    for (unsigned int i = 0; i < compile.m_tPlan.m_vLinks.size(); ++i)
    {
        const tLink& link = compile.m_tPlan.m_vLinks[i];
        if (link.m_eKind != LK_size || !compile.part(link.m_tNumber.m_uiPart).m_tItem.m_bVaries)
            continue;
        const tSpan& span = compile.m_tPlan.m_vSpans[link.m_uiSpan];
        const auto at = std::lower_bound(aligned.begin(), aligned.end(), span.m_uiFirst);
        if (at != aligned.end() && *at < compile.part(span.m_uiLast).m_uiAfter)
            refuseLink(compile, i, "\"align\" stands inside of what a number of varying width measures");
    }
}

}  // namespace

void checkNumbers(tCompile& compile)
{
    checkOverlaps(compile);
    CCircles(compile).check();
    checkAligned(compile);
}

}  // namespace murv::detail
