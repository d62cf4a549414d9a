// tools/explain_output.h - the forms in which murv explain shows its rows.
#pragma once

#include <memory>
#include <string>

#include "tools/explain_rows.h"

namespace murv::tool
{

/// Turns records into text; what it gives is written in the same order.
class IExplainOutput
{
public:
    virtual ~IExplainOutput() = default;
    virtual std::string begin() = 0;
    virtual std::string record(const tExplainRecord& record) = 0;
    /// \param findings  that no record has
    virtual std::string end(const std::vector<tPacketFault>& findings) = 0;
};

/// A dump for terminals.
std::unique_ptr<IExplainOutput> makeExplainText(bool colour);

/// One JSON object a record.
std::unique_ptr<IExplainOutput> makeExplainJson();

/// What a page says of the whole.
struct tExplainPage
{
    std::string m_strInput;   // as shown
    std::string m_strLayout;  // as shown
    std::string_view m_strvBytes;
    bool m_bSummary = true;  // all records are shown: how many there are, and which do not fit
};

/// One HTML page. Bytes and layout must live as long as it.
std::unique_ptr<IExplainOutput> makeExplainPage(const CLayout& layout, const tExplainPage& page);

}  // namespace murv::tool
