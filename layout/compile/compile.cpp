// layout/compile/compile.cpp - the steps from a document to the parts of a plan.
#include "layout/compile/compile.h"

#include "layout/compile/draft.h"

namespace murv::detail
{

bool compileParts(const CFields& document, tPlan& plan, std::vector<tLayoutMistake>& mistakes)
{
    plan = {};
    mistakes.clear();
    tCompile compile(document, plan, mistakes);
    buildParts(compile);
    if (compile.m_bTooBig)
        return false;
    attachRules(compile);
    makeItems(compile);
    checkRules(compile);
    compileRules(compile, PH_plain);
    finishItems(compile);
    compileRules(compile, PH_linked);
    chooseRulers(compile);
    findEnds(compile);
    measureParts(compile);
    checkWidths(compile);
    findHeads(compile);
    checkNumbers(compile);
    checkDefaults(compile);
    // What was not looked at may have been reported as missing.
    if (compile.m_ullBudget == 0)
        mistakes.assign(1, {0, "", "The layout has too many parts that depend on each other"});
    compile.m_tMistakes.sort();
    if (mistakes.empty())
        placeParts(compile);
    return mistakes.empty();
}

}  // namespace murv::detail
