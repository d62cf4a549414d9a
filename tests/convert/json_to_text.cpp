// tests/convert/json_to_text.cpp - writes a JSON document from the standard input in the text notation.
//
// For trying things out and for measuring with documents of one's own.
#include <iostream>
#include <iterator>

#include "tests/support/json_to_text.h"

int main()
{
    const std::string json{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    std::cout << murv::tests::text4Json(json);
    return std::cout.flush() ? 0 : 1;
}
