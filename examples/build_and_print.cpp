// build_and_print.cpp - builds a tree by hand, prints it both ways, walks it, and shows how errors are reported.
#include <iostream>
#include <string>

#include "murv/murv.h"

namespace
{
murv::CFields makeOrder()
{
    murv::CFields order;
    order.addChildRef("number", 1) = 4711;
    order.addChildRef("customer") = "M\xC3\xBCller & Co";  // any bytes; UTF-8 here
    order.addChildRef("express") = true;

    murv::CFields& lines = order.addChildRef("lines");
    for (int i = 1; i <= 2; ++i)
    {
        murv::CFields& line = lines.addArrayAt(murv::CFields());
        line.addChildRef("article") = "A-" + std::to_string(100 * i);
        line.addChildRef("pieces") = 5 * i;
        line.addChildRef("price") = 12.5 * i;
    }
    order["lines"].setComment("// in the order of picking", murv::CP_before);
    return order;
}

/// Prints names and types of a tree, indented by depth.
void printOutline(const murv::CFields& node, unsigned int depth)
{
    static const char* const names[] = {"null", "array", "fields", "bool", "sint", "uint", "double", "codelist"};
    for (const murv::CFields& member : node)
    {
        std::cout << std::string(2 * std::size_t{depth}, ' ') << (member.getNameLen() == 0 ? "-" : member.getName())
                  << ": " << names[member.getDT()] << "\n";
        printOutline(member, depth + 1);
    }
}

void showErrors(murv::CFields& order)
{
    // Trees throw on misuse.
    try
    {
        order["customer"].asSint32();
    }
    catch (const murv::CLogicError&)
    {
        std::cout << "the customer is not a number\n";
    }

    // Looking for what is not there never throws.
    std::cout << "discount is " << (order.isValidChild("discount") ? "there" : "not there") << "\n";

    // Loaders return false and keep the message, and the places.
    murv::CLoaders loader;
    murv::CFields target;
    const std::string text = "{ \"pieces\" = 5,\n  \"price\" : 12.5 }";
    if (!loader.loading(text, target))
    {
        std::cout << loader.getLastErrMsg();
        for (const murv::tErrorRange& range : loader.getErrorRanges())
            std::cout << "bytes " << range.m_uiStart << " to " << range.m_uiEnd << " are '"
                      << text.substr(range.m_uiStart, range.m_uiEnd - range.m_uiStart) << "'\n";
    }
}
}  // namespace

int main()
{
    murv::CFields order = makeOrder();
    std::cout << order << "\n\n";  // indented

    murv::CSavers saver;
    std::cout << saver.saving(order, murv::ER_SER_PKT) << "\n\n";  // on one line

    printOutline(order, 0);

    int pieces = 0;
    for (const murv::CFields& line : order["lines"])
        pieces += line["pieces"].asSint32();
    std::cout << pieces << " pieces\n\n";

    showErrors(order);
    return 0;
}
