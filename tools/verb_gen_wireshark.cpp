// tools/verb_gen_wireshark.cpp - murv gen wireshark: a dissector for the packets of a layout.
#include <CLI/CLI.hpp>
#include <filesystem>

#include "tools/file_option.h"
#include "tools/layout_input.h"
#include "tools/replace_file.h"
#include "tools/verb_gen.h"
#include "tools/wireshark_names.h"
#include "tools/wireshark_script.h"

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiMostPort = 65535;

class CGenWiresharkVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        declareEitherLayout(verb, m_strLayout);
        verb.add_option("--port", m_uiPort, "Dissect the packets of this port; without, \"Decode As\" chooses them")
            ->type_name("N")
            ->check(CLI::Range(1U, s_cuiMostPort));
        CLI::Option* const udp = verb.add_flag("--udp", m_bUdp, "For UDP alone, where a datagram is a packet");
        verb.add_flag("--tcp", m_bTcp, "For TCP alone, where records are put together from segments")->excludes(udp);
        verb.add_option("--name", m_strName, "Name of the protocol in filters, instead of the layout's")
            ->type_name("NAME");
        takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        verb.footer(
            "Without --udp and --tcp the dissector is for both, or for UDP when a stream would not do; its first\n"
            "lines say so. Fields are called NAME.PATH in filters, such as hsrp.body.state.priority.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        if (m_strLayout.empty())
            return diagnostics.fail("", "a layout is required", EC_wrongCall);
        if (!m_strName.empty() && !isProtocolName(m_strName))
            return diagnostics.fail("", "--name takes small letters, digits and \"_\", and no digit first",
                                    EC_wrongCall);
        tLoadedLayout loaded;
        if (const E_ExitCode code = readLayout(m_strLayout, diagnostics, loaded))
            return code;
        std::string script;
        const std::string fault = makeWiresharkScript(loaded.m_tLayout, options4(loaded.m_tInput.m_strName), script);
        if (!fault.empty())
            return diagnostics.fail(loaded.m_tInput.m_strName, fault, EC_unfit);
        CResultFile result(m_strOutput, session.m_tOutput);
        if (const E_ExitCode code = result.open(diagnostics))
            return code;
        result.put(script);
        return result.finish(diagnostics);
    }

private:
    tWiresharkOptions options4(const std::string& path) const
    {
        tWiresharkOptions options;
        options.m_strLayout = path == "<stdin>" ? "stdin" : std::filesystem::path(path).stem().string();
        options.m_strProtocol = m_strName.empty() ? filterName(options.m_strLayout) : m_strName;
        if (!isProtocolName(options.m_strProtocol))
            options.m_strProtocol = "murv_" + options.m_strProtocol;
        options.m_uiPort = m_uiPort;
        options.m_bUdp = !m_bTcp;
        options.m_bTcp = !m_bUdp;
        options.m_bTcpAsked = m_bTcp;
        return options;
    }

    std::string m_strLayout;
    std::string m_strName;
    std::string m_strOutput;
    unsigned int m_uiPort = 0;
    bool m_bUdp = false;
    bool m_bTcp = false;
};
}  // namespace

std::unique_ptr<IVerb> makeGenWiresharkVerb()
{
    return std::make_unique<CGenWiresharkVerb>();
}

}  // namespace murv::tool
