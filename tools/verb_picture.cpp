// tools/verb_picture.cpp - murv picture: the records of a layout as pictures.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "tools/figure_svg.h"
#include "tools/figure_text.h"
#include "tools/layout_input.h"
#include "tools/record_kind.h"

namespace murv::tool
{

namespace
{
class CPictureVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        declareLayoutArgument(verb, m_strLayout)->required();
        verb.add_flag("--text", m_bText, "Rows of box-drawing characters instead of SVG");
        verb.add_option("--record", m_strRecord, "Only the records of this kind")->type_name("KIND");
        verb.footer(
            "A row is four bytes. Parts of any length have torn edges, and what follows them begins a row; arrays and\n"
            "alternatives are boxes with pictures of their own. KIND is the path of a record, or its last name.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        tLoadedLayout loaded;
        if (const E_ExitCode code = readLayout(m_strLayout, session.m_tDiagnostics, loaded))
            return code;
        const CLayout& layout = loaded.m_tLayout;
        std::vector<unsigned int> records = recordsOf(layout);
        if (!m_strRecord.empty())
        {
            records.resize(1);
            const std::string fault = findRecordKind(layout, m_strRecord, records.front());
            if (!fault.empty())
                return session.m_tDiagnostics.fail("", fault, EC_wrongCall);
        }
        const std::string name = std::filesystem::path(loaded.m_tInput.m_strName).stem().string();
        const CLayoutPaths paths(layout);
        std::vector<tFigure> figures;
        for (const unsigned int record : records)
        {
            for (tFigure& figure : figures4Record(layout, paths, record, name))
                figures.push_back(std::move(figure));
        }
        if (!m_bText)
            session.m_tOutput.put(svg4Figures(figures, name));
        for (std::size_t i = 0; m_bText && i < figures.size(); ++i)
            session.m_tOutput.put((i == 0 ? "" : "\n\n") + text4Figure(figures[i]));
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    std::string m_strLayout;
    std::string m_strRecord;
    bool m_bText = false;
};
}  // namespace

std::unique_ptr<IVerb> makePictureVerb()
{
    return std::make_unique<CPictureVerb>();
}

}  // namespace murv::tool
