// tools/explain_json.cpp - the rows of murv explain as JSON, one object a record.
#include "tools/explain_cells.h"
#include "tools/explain_output.h"
#include "tools/json_text.h"
#include "tools/packet_report.h"

namespace murv::tool
{

namespace
{
std::string json4Row(const tExplainRow& row)
{
    std::string out = "{\"offset\":" + std::to_string(row.m_ullOffset) +
                      ",\"length\":" + std::to_string(row.m_ullLength) + ",\"bytes\":\"";
    for (std::size_t at = 0; at < row.m_strBytes.size(); ++at)
        out += hex4Bytes(row, at, 1);
    out += '"';
    const auto add = [&out](const char* key, const std::string& text) {
        if (!text.empty())
            out += ",\"" + std::string(key) + "\":" + json4Text(text);
    };
    const bool isPart = row.m_eKind != ER_between && row.m_eKind != ER_unread;
    add(isPart ? "path" : "is", isPart ? row.m_strPath : row.m_strName);
    add("expression", row.m_strExpression);
    add("rules", row.m_strRules);
    if (!row.m_strValue.empty())
        out += ",\"value\":" + row.m_strValue;
    add("comment", row.m_strComment);
    if (row.m_tFault)
        out += std::string(",\"") + (isFinding(row.m_tFault->m_eCode) ? "finding" : "error") +
               "\":" + json4Text(message4Fault(*row.m_tFault)) +
               ",\"code\":" + json4Text(getFaultName(row.m_tFault->m_eCode));
    return out + "}";
}

std::string json4Record(const tExplainRecord& record)
{
    std::string out = "{\"record\":" + std::to_string(record.m_ullNumber) + ",\"kind\":" + json4Text(record.m_strKind) +
                      ",\"path\":" + json4Text(record.m_strPath) + ",\"offset\":" + std::to_string(record.m_ullOffset) +
                      ",\"length\":" + std::to_string(record.m_ullLength) +
                      ",\"fits\":" + (record.m_bDamaged ? "false" : "true") + ",\"items\":[";
    bool isFirst = true;
    for (const tExplainRow& row : record.m_vRow)
    {
        if (row.m_eKind <= ER_element)
            continue;
        out += isFirst ? "" : ",";
        out += json4Row(row);
        isFirst = false;
    }
    return out + "]}\n";
}

class CExplainJson : public IExplainOutput
{
public:
    std::string begin() override
    {
        return {};
    }
    std::string record(const tExplainRecord& record) override
    {
        return json4Record(record);
    }
    std::string end(const std::vector<tPacketFault>&) override
    {
        return {};
    }
};
}  // namespace

std::unique_ptr<IExplainOutput> makeExplainJson()
{
    return std::make_unique<CExplainJson>();
}

}  // namespace murv::tool
