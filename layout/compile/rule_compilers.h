// layout/compile/rule_compilers.h - what compiles each rule: the last column of the table of rules.
#pragma once

#include "layout/compile/rule_table.h"

namespace murv::detail
{

// structure_rules.cpp
void compileNothing(tCompile& compile, unsigned int part, const tRule& rule);
void compileLines(tCompile& compile, unsigned int part, const tRule& rule);
void compileFixed(tCompile& compile, unsigned int part, const tRule& rule);
void compilePrefixed(tCompile& compile, unsigned int part, const tRule& rule);
void compileOneOf(tCompile& compile, unsigned int part, const tRule& rule);
void compileOptional(tCompile& compile, unsigned int part, const tRule& rule);
void compileEnds(tCompile& compile, unsigned int part, const tRule& rule);
void compileBefore(tCompile& compile, unsigned int part, const tRule& rule);
void compileBetween(tCompile& compile, unsigned int part, const tRule& rule);
void compileToEnd(tCompile& compile, unsigned int part, const tRule& rule);
void compileAlign(tCompile& compile, unsigned int part, const tRule& rule);
void compileRequired(tCompile& compile, unsigned int part, const tRule& rule);

// conditions.cpp
void compileOneOfBy(tCompile& compile, unsigned int part, const tRule& rule);
void compileIf(tCompile& compile, unsigned int part, const tRule& rule);
void compileUntil(tCompile& compile, unsigned int part, const tRule& rule);

// numbers.cpp
void compileSize(tCompile& compile, unsigned int part, const tRule& rule);
void compileCount(tCompile& compile, unsigned int part, const tRule& rule);
void compileBitmap(tCompile& compile, unsigned int part, const tRule& rule);
void compileSum(tCompile& compile, unsigned int part, const tRule& rule);
void compileRecords(tCompile& compile, unsigned int part, const tRule& rule);
void compileChecksum(tCompile& compile, unsigned int part, const tRule& rule);

// words.cpp
void compileLittle(tCompile& compile, unsigned int part, const tRule& rule);
void compileBig(tCompile& compile, unsigned int part, const tRule& rule);
void compilePage(tCompile& compile, unsigned int part, const tRule& rule);
void compileRaw(tCompile& compile, unsigned int part, const tRule& rule);
void compileSigned(tCompile& compile, unsigned int part, const tRule& rule);
void compileForm(tCompile& compile, unsigned int part, const tRule& rule);
void compileHex(tCompile& compile, unsigned int part, const tRule& rule);
void compileBitFields(tCompile& compile, unsigned int part, const tRule& rule);
void compileDecimals(tCompile& compile, unsigned int part, const tRule& rule);
void compileExact(tCompile& compile, unsigned int part, const tRule& rule);
void compileNull(tCompile& compile, unsigned int part, const tRule& rule);
void compilePadding(tCompile& compile, unsigned int part, const tRule& rule);
void compileKeep(tCompile& compile, unsigned int part, const tRule& rule);
void compileValid(tCompile& compile, unsigned int part, const tRule& rule);
void compileMask(tCompile& compile, unsigned int part, const tRule& rule);

}  // namespace murv::detail
