// layout/compile/mistakes.h - collects what is wrong with a layout.
#pragma once

#include <string>
#include <vector>

#include "layout/plan/plan.h"
#include "murv/layout.h"

namespace murv::detail
{

/// The path of a part, as messages write it: names with points between them.
std::string path4(const tPlan& plan, unsigned int part);

/// Keeps the first hundred mistakes. Of a part that has one already, mistakes that may only follow from it are left
/// out.
class CMistakes
{
public:
    CMistakes(const tPlan& plan, std::vector<tLayoutMistake>& mistakes);

    /// A mistake of its own.
    void add(unsigned int part, unsigned int place, std::string message);
    /// One that another mistake of the part, or of one around it, may have caused.
    void addIfFirst(unsigned int part, unsigned int place, std::string message);
    bool isFaulty(unsigned int part) const;
    /// No more are kept, so there is no use in looking for them.
    bool isFull() const;
    /// Brings the mistakes into the order of the document.
    void sort();

private:
    const tPlan& m_tPlan;
    std::vector<tLayoutMistake>& m_vMistakes;
    std::vector<bool> m_vFaulty;  // by part
};

}  // namespace murv::detail
