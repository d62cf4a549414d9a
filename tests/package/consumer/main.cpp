// tests/package/consumer/main.cpp - a program that uses the installed library as its users do.
//
// It crosses the library's border in each way that can go wrong in packaging: calls, inline code, virtual calls, an
// exception thrown inside and caught by type outside.
#include <iostream>
#include <string>

#include "murv/murv.h"

int main()
{
    murv::CFields tree;
    tree.addChildRef("name") = "murv";
    tree.addChildRef("count") = 3;
    const std::string text = tree.toMURV(murv::ER_SER_PKT);
    std::cout << text << "\n";

    murv::CFields again;
    murv::CLoaders loader;
    const bool loaded = loader.loading(text, again);
    std::cout << (loaded && again == tree ? "equal" : "different") << "\n";

    murv::CFields broken;
    std::cout << (loader.loading(std::string("{ \"a\" = "), broken) ? "loaded" : "refused") << "\n";

    try
    {
        again["count"].addChildRef("x");
        std::cout << "no exception\n";
    }
    catch (const murv::CLogicError&)
    {
        std::cout << "caught\n";
    }
    return 0;
}
