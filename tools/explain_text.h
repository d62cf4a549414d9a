// tools/explain_text.h - the rows of murv explain as a dump for people.
#pragma once

#include <string>
#include <vector>

#include "tools/explain_output.h"

namespace murv::tool
{

/// Lays out records for a terminal.
class CExplainText : public IExplainOutput
{
public:
    explicit CExplainText(bool colour) : m_bColour(colour)
    {
    }

    std::string begin() override;
    /// The lines of a record. Comments of the layout are shown with the first value that they are about.
    std::string record(const tExplainRecord& record) override;
    std::string end(const std::vector<tPacketFault>& findings) override;

private:
    struct tWidths
    {
        std::size_t m_nOffset;
        std::size_t m_nPart;
        std::size_t m_nValue;
    };

    tWidths measure(const tExplainRecord& record) const;
    std::string head4Record(const tExplainRecord& record) const;
    std::string lines4Row(const tExplainRow& row, const tWidths& widths);
    std::string comment4Row(const tExplainRow& row, const tWidths& widths);
    std::string lines4Fault(const tExplainRow& row, const tWidths& widths) const;
    /// A finding that no record has.
    std::string text4Finding(const tPacketFault& finding) const;
    std::string coloured(const std::string& text, const char* colour) const;

    bool m_bColour;
    bool m_bAny = false;             // a record was shown
    std::vector<bool> m_vCommented;  // by part: its comment was shown
};

}  // namespace murv::tool
