// keep_comments.cpp - changes a few values of a document that a person wrote, and shows that the rest stays as it is.
//
// Each change rewrites one member. Compare edit_config.cpp, which saves the whole document anew.
#include <iostream>
#include <sstream>
#include <string>

#include "murv/document.h"
#include "murv/get.h"

namespace
{
constexpr const char* s_cpService = R"(// Who may ask for quotes.
{
  "port"  = 0443,      // as agreed with the warehouse
  "rates" = [1.50, 2], // per item, per parcel

  // Partners, oldest first.
  "partners" =
  [
    { "name" = "Müller & Söhne", "limit" = 1e6 }
  ]
}
)";

/// The lines of the second text that the first one lacks, as they are.
void showNewLines(const std::string& before, const std::string& after)
{
    std::istringstream lines(after);
    for (std::string line; std::getline(lines, line);)
    {
        if (before.find(line + "\n") == std::string::npos)
            std::cout << line << "\n";
    }
}
}  // namespace

int main()
{
    murv::CDocument document;
    if (!document.load(s_cpService))
    {
        for (const murv::tErrorPlace& place : document.errors())
            std::cout << place.m_uiLine << ":" << place.m_uiColumn << ": " << place.m_strMessage << "\n";
        return 1;
    }
    document.set("port", 8443);
    document.set("partners[0].limit", 2500000);
    document.insert("partners", 1, murv::fields({{"name", "Weber"}, {"limit", 1000}}));
    document.comment("partners[1]", "New in May.");
    document.rename("rates", "prices");
    document.set("timeouts.connect", 2.5);
    showNewLines(s_cpService, document.text());

    document.remove("timeouts");
    document.rename("prices", "rates");
    document.remove("partners[1]");
    std::cout << murv::at<int>(document.tree(), "port") << "\n";
    return 0;
}
