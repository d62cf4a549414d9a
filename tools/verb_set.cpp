// tools/verb_set.cpp - murv set: sets one value of a document, and keeps the rest as it is.
#include <CLI/CLI.hpp>

#include "tools/edit_verb.h"

namespace murv::tool
{

namespace
{
class CSetVerb : public CEditVerb
{
private:
    void declareOwn(CLI::App& verb) override
    {
        verb.add_option("VALUE", m_strValue,
                        "In the notation when it reads as one value (8080, 1.50, [1, 2], null), else a text")
            ->required();
        verb.add_flag("--text", m_bText, "VALUE is a text, whatever it looks like");
        verb.footer(
            "What is missing on the way to the value is made. Its name, ID, comments and packet expression\n"
            "stay; so does every other byte of the document.\n");
    }

    E_ExitCode change(const tInput&, CDocument& document, CDiagnostics&) const override
    {
        if (!m_bText && isNotation())
            document.setText(path(), m_strValue);
        else
            document.set(path(), m_strValue);
        return EC_done;
    }

    bool isNotation() const
    {
        CDocument probe;
        try
        {
            probe.setText(".", m_strValue);
        }
        catch (const CLogicError&)
        {
            return false;
        }
        return true;
    }

    std::string m_strValue;
    bool m_bText = false;
};
}  // namespace

std::unique_ptr<IVerb> makeSetVerb()
{
    return std::make_unique<CSetVerb>();
}

}  // namespace murv::tool
