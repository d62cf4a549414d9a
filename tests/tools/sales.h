// tests/tools/sales.h - a small layout and a file that fits it, for the tests of the verbs that work by layouts.
#pragma once

namespace murv::tests
{

inline constexpr const char* s_cpSalesLayout =
    "// The sales of a day. Lines of text.\n"
    "{\n"
    "  \"@\" = \"layout 1; lines\",\n"
    "  \"day\" = { \"type\" = (ACF1fix) \"D\", \"date\" = (ANF8) 0 },\n"
    "  \"sales\" = [ {\n"
    "    \"type\" = (ACF1fix) \"S\",\n"
    "    // in the currency of the shop\n"
    "    \"amount\" = (ANF6) 0, \"@amount\" = \"decimals 2\",\n"
    "    \"card\" = (ACF8) \"\", \"@card\" = \"mask 4\",\n"
    "    \"note\" = (ACF4) \"\"\n"
    "  } ],\n"
    "  \"end\" = { \"type\" = (ACF1fix) \"E\", \"count\" = (ANF3) 0, \"@count\" = \"count of sales\" }\n"
    "}\n";

inline constexpr const char* s_cpSales =
    "D20240131\n"
    "S00125012345678tea \n"
    "S00009987654321a,\"b\n"
    "E002\n";

/// One message: a number, a text after its length, two numbers in a byte, bytes.
inline constexpr const char* s_cpMessageLayout =
    "{ \"@\" = \"layout 1\", \"kind\" = (BNF1) 0, \"name\" = (BCV1+1) \"\","
    " \"flags\" = (BNF1) 0, \"@flags\" = \"bits 4 high, 4 low\", \"raw\" = (BCF2) \"\" }";

}  // namespace murv::tests
