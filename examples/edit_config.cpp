// edit_config.cpp - loads a configuration, changes it, saves it, and loads what was saved.
//
// Comments and IDs come through; the result is written as text that people can go on editing. An argument names
// another document than service.murv in the current directory.
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "murv/murv.h"

namespace
{
/// Loads a file, or says what is wrong with it.
bool loadFile(const std::string& path, murv::CFields& tree)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    if (!file || !(content << file.rdbuf()))
    {
        std::cerr << path << " cannot be read\n";
        return false;
    }
    murv::CLoaders loader;
    if (loader.loading(content.str(), tree))
        return true;
    std::cerr << path << ":\n" << loader.getLastErrMsg();
    return false;
}

void change(murv::CFields& config)
{
    config["listen"]["port"] = 9443;
    config["limits"]["requestsPerSecond"] = config["limits"]["requestsPerSecond"].asSint32() * 2;

    // By ID, wherever it is; and a member that was not there before.
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
    murv::CLoaders loader;
    if (!loader.loading(saved, again))
    {
        std::cerr << loader.getLastErrMsg();
        return 1;
    }
    std::cout << "port after:  " << again["listen"]["port"].asString() << "\n"
              << "loaded again: " << (again == config ? "equal" : "different") << "\n\n"
              << saved;
    return again == config ? 0 : 1;
}
