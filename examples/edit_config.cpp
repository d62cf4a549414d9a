// edit_config.cpp - loads a configuration, changes it, saves it, and loads what was saved.
//
// Comments and IDs are kept, and people can go on editing the text that is saved. A mistake in it is shown at its place
// and leaves the configuration that is in use alone. The document is service.murv in the current directory, or the
// argument.
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "murv/murv.h"

namespace
{
/// Says what is wrong with a document as compilers do.
void report(const std::string& name, const murv::CLoaders& loader)
{
    const std::vector<murv::tErrorPlace> places = loader.getErrorPlaces();
    for (const murv::tErrorPlace& place : places)
        std::cout << name << ":" << place.m_uiLine << ":" << place.m_uiColumn << ": " << place.m_strMessage << "\n";
    if (places.empty())  // the fault has no place: a password is missing, the data is too short
        std::cout << name << ": " << loader.getLastErrMsg() << "\n";
}

/// Loads a document. One that is malformed is reported, and leaves `config` as it is.
bool reload(const std::string& name, const std::string& document, murv::CFields& config)
{
    murv::CFields fresh;
    murv::CLoaders loader;
    if (!loader.loading(document, fresh))
    {
        report(name, loader);
        return false;
    }
    config = std::move(fresh);
    return true;
}

bool loadFile(const std::string& path, murv::CFields& config)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    if (!file || !(content << file.rdbuf()))
    {
        std::cout << path << " cannot be read\n";
        return false;
    }
    return reload(path, content.str(), config);
}

void change(murv::CFields& config)
{
    config["listen"]["port"] = 9443;
    config["limits"]["requestsPerSecond"] = config["limits"]["requestsPerSecond"].asSint32() * 2;

    // A node by its ID, at any depth; it gets a new member.
    murv::CFields& pool = (*config.findID(3))["pool"];
    pool.addChildRef("idleTimeout") = 60;
    pool["idleTimeout"].setComment("// closed when unused for so long", murv::CP_trailing);

    config["listen"]["protocols"].addArrayAt(murv::CFields("h3"));
    config["features"].removeChildAt("newPricing");
}
}  // namespace

int main(int argc, char** argv)
{
    murv::CFields config;
    if (!loadFile(argc > 1 ? argv[1] : "service.murv", config))
        return 1;
    std::cout << "port before: " << config["listen"]["port"].asString() << "\n";
    change(config);

    murv::CSavers saver(murv::SCBC_ONE_LINE_ARRAY | murv::SCBC_NULL_WORD | murv::SCBC_FINAL_NEWLINE);
    const std::string saved = saver.saving(config, murv::ER_SER_HFW);
    if (saver.isError())
    {
        std::cerr << saver.getLastErrMsg() << "\n";
        return 1;
    }

    murv::CFields again;
    if (!reload("what was saved", saved, again))
        return 1;
    std::cout << "port after:  " << again["listen"]["port"].asString() << "\n"
              << "loaded again: " << (again == config ? "equal" : "different") << "\n\n"
              << saved << "\n";

    std::string broken = saved;
    broken.replace(broken.find("9443"), 4, "94 43");
    if (reload("a slip of the pen", broken, again))
        return 1;
    std::cout << "port still:  " << again["listen"]["port"].asString() << "\n";
    return again == config ? 0 : 1;
}
