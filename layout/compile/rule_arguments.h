// layout/compile/rule_arguments.h - what reads the arguments of rules, by their forms.
//
// Each returns false when the arguments are malformed; that nothing is left over is tested once, by the caller.
#pragma once

#include "layout/compile/rule_table.h"

namespace murv::detail
{

bool readNothing(CRuleText& text, tRule& rule);
bool readNumber(CRuleText& text, tRule& rule);
bool readMaybeNumber(CRuleText& text, tRule& rule);
bool readLines(CRuleText& text, tRule& rule);      // [N | "mark"]
bool readPrefixed(CRuleText& text, tRule& rule);   // EXPRESSION [+ N]
bool readChoice(CRuleText& text, tRule& rule);     // PATH [else NAME]
bool readTest(CRuleText& text, tRule& rule);       // PATH = V | V
bool readSize(CRuleText& text, tRule& rule);       // PART [/ N] [+ N]
bool readCount(CRuleText& text, tRule& rule);      // PATH [+ N]
bool readBitmap(CRuleText& text, tRule& rule);     // PART [from N]
bool readMark(CRuleText& text, tRule& rule);       // "mark"
bool readMarks(CRuleText& text, tRule& rule);      // "mark" | "mark"
bool readAlign(CRuleText& text, tRule& rule);      // N ["fill"]
bool readPathOnly(CRuleText& text, tRule& rule);   // PATH
bool readChecksum(CRuleText& text, tRule& rule);   // [VARIANT] of PART
bool readValid(CRuleText& text, tRule& rule);      // V..V | V, or date LETTERS
bool readBitFields(CRuleText& text, tRule& rule);  // N NAME, N NAME
bool readDecimals(CRuleText& text, tRule& rule);   // N, or "point"
bool readMaybeTail(CRuleText& text, tRule& rule);  // ["tail"]
bool readHex(CRuleText& text, tRule& rule);        // [lower] ["tail"]

}  // namespace murv::detail
