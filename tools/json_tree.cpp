// tools/json_tree.cpp - builds trees while JSON is read; no JSON tree in between.
#include "tools/json_tree.h"

#include <limits>

#include "tools/hex_text.h"
#include "tools/json_events.h"
#include "tools/packet_leaf.h"
#include "tools/record_kind.h"

namespace murv::tool
{

namespace
{
using tJson = nlohmann::json;

/// Whether a text in JSON stands for a double that JSON does not have.
bool double4Word(const std::string& word, double& value)
{
    if (word == "NaN")
        value = std::numeric_limits<double>::quiet_NaN();
    else if (word == "Infinity" || word == "-Infinity")
        value = word[0] == '-' ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
    else
        return false;
    return true;
}

/// Takes what the parser reads.
class CTreeMaker : public CJsonEvents
{
public:
    /// \param data  the part that the member "data" of the whole is; or none
    CTreeMaker(const CJsonKeys& keys, unsigned int part, unsigned int data, CFields& tree, tJsonFault& fault)
        : CJsonEvents(CFields::maxSint64, fault), m_tKeys(keys), m_uiRoot(part), m_uiData(data), m_tTree(tree)
    {
    }

    bool number_float(number_float_t value, const string_t& text) override
    {
        return text.find_first_of(".eE") == std::string::npos ? set(text) : set(value);
    }
    bool string(string_t& text) override
    {
        CFields& node = *add();
        double value = 0;
        const bool isBinary = isLeaf(m_uiAdded) && expression(m_uiAdded).compare(0, 2, "BN") == 0;
        return isBinary && double4Word(text, value) ? node.setValue(value) : node.setValue(text);
    }
    bool start_object(std::size_t) override
    {
        return open(DT_fields);
    }
    bool start_array(std::size_t) override
    {
        return open(DT_array);
    }
    bool key(string_t& name) override
    {
        m_strKey = name;
        return true;
    }
    bool end_object() override
    {
        const tOpen closed = m_vOpen.back();
        m_vOpen.pop_back();
        return !isLeaf(closed.m_uiPart) || !m_tKeys.layout().getBits(closed.m_uiPart).empty() ||
               toBytes(*closed.m_pNode);
    }
    bool end_array() override
    {
        m_vOpen.pop_back();
        return true;
    }

private:
    struct tOpen
    {
        CFields* m_pNode;  // members do not move while others are appended
        unsigned int m_uiPart;
    };

    bool isLeaf(unsigned int part) const
    {
        return part != CLayout::s_cuiNoPart && m_tKeys.layout().getPart(part).m_eKind == LP_leaf;
    }
    std::string_view expression(unsigned int part) const
    {
        return m_tKeys.layout().getPart(part).m_strvExpression;
    }

    CFields* add() override
    {
        m_uiAdded = m_uiRoot;
        if (m_vOpen.empty())
            return &m_tTree;
        const tOpen& around = m_vOpen.back();
        if (around.m_pNode->isArray())
        {
            // An array of whole messages stands for its messages.
            const bool isMany = m_vOpen.size() == 1 && m_tKeys.element(m_uiRoot) == CLayout::s_cuiNoPart;
            m_uiAdded = isMany ? m_uiRoot : m_tKeys.element(around.m_uiPart);
            return &around.m_pNode->addArrayAt(CFields());
        }
        const bool isData = m_vOpen.size() == 1 && m_uiData != CLayout::s_cuiNoPart && m_strKey == "data";
        m_uiAdded = isData ? m_uiData : m_tKeys.member(around.m_uiPart, m_strKey);
        if (isData)
            return &around.m_pNode->addChildRef(m_strKey, 0, true);
        const bool hasId = m_uiAdded != CLayout::s_cuiNoPart && m_tKeys.layout().getPart(m_uiAdded).m_strvName.empty();
        return hasId ? &around.m_pNode->addChildRef("", m_tKeys.layout().getPart(m_uiAdded).m_uiID, true)
                     : &around.m_pNode->addChildRef(m_strKey, 0, true);
    }

    bool open(E_DataType type)
    {
        CFields* const node = add();
        node->setValue(type);
        m_vOpen.push_back({node, m_uiAdded});
        return true;
    }

    /// {"hex":"00FF"} where a leaf stands; anything else stays for the maker to refuse.
    bool toBytes(CFields& node)
    {
        const CFields* const hex = node.getChildCount() == 1 ? node.findChildAt("hex", 3) : nullptr;
        if (hex == nullptr || !hex->isCodelist())
            return true;
        std::string bytes;
        std::size_t place = 0;
        if (!bytes4Hex(hex->asString(), bytes, place))
        {
            m_tFault.m_strMessage = "\"hex\" has other characters than pairs of hexadecimal digits";
            return false;
        }
        return node.setValue(bytes);
    }

    const CJsonKeys& m_tKeys;
    unsigned int m_uiRoot;
    unsigned int m_uiData;
    CFields& m_tTree;
    std::vector<tOpen> m_vOpen;
    std::string m_strKey;
    unsigned int m_uiAdded = CLayout::s_cuiNoPart;
};

/// Finds the member "kind" of an object, and reads no further.
class CKindFinder : public nlohmann::json_sax<tJson>
{
public:
    bool found() const
    {
        return m_bFound;
    }
    const std::string& kind() const
    {
        return m_strKind;
    }
    bool null() override
    {
        return true;
    }
    bool boolean(bool) override
    {
        return true;
    }
    bool number_integer(number_integer_t) override
    {
        return true;
    }
    bool number_unsigned(number_unsigned_t) override
    {
        return true;
    }
    bool number_float(number_float_t, const string_t&) override
    {
        return true;
    }
    bool string(string_t& text) override
    {
        m_bFound = m_bNext && m_uiDepth == 1;
        if (m_bFound)
            m_strKind = text;
        return !m_bFound;
    }
    bool binary(binary_t&) override
    {
        return false;
    }
    bool start_object(std::size_t) override
    {
        ++m_uiDepth;
        return true;
    }
    bool start_array(std::size_t) override
    {
        m_uiDepth += 2;  // what is in an array is no member of the whole
        return true;
    }
    bool key(string_t& name) override
    {
        m_bNext = name == "kind";
        return true;
    }
    bool end_object() override
    {
        --m_uiDepth;
        return true;
    }
    bool end_array() override
    {
        m_uiDepth -= 2;
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override
    {
        return false;
    }

private:
    std::string m_strKind;
    unsigned int m_uiDepth = 0;
    bool m_bNext = false;
    bool m_bFound = false;
};
}  // namespace

CJsonKeys::CJsonKeys(const CLayout& layout) : m_tLayout(layout), m_vMembers(layout.getPartCount())
{
    for (unsigned int part = 1; part < layout.getPartCount(); ++part)
        m_vMembers[layout.getPart(part).m_uiParent].emplace(label4Part(layout, part), part);
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
    {
        if (layout.getPart(part).m_bRecord)
            m_vRecords.emplace(recordKind(layout, part), part);
    }
}

std::string CJsonKeys::findRecord(const std::string& kind, unsigned int& record) const
{
    const auto found = m_vRecords.find(kind);
    if (found == m_vRecords.end())
        return findRecordKind(m_tLayout, kind, record);
    record = found->second;
    return {};
}

unsigned int CJsonKeys::member(unsigned int part, const std::string& key) const
{
    if (part == CLayout::s_cuiNoPart)
        return part;
    const auto found = m_vMembers[part].find(key);
    return found == m_vMembers[part].end() ? CLayout::s_cuiNoPart : found->second;
}

unsigned int CJsonKeys::element(unsigned int part) const
{
    const bool isArray = part != CLayout::s_cuiNoPart && m_tLayout.getPart(part).m_eKind == LP_array;
    return isArray ? part + 1 : CLayout::s_cuiNoPart;
}

bool loadJson(std::string_view text, const CJsonKeys& keys, unsigned int part, CFields& tree, tJsonFault& fault)
{
    CTreeMaker maker(keys, part, CLayout::s_cuiNoPart, tree, fault);
    return maker.parse(text);
}

bool loadJsonRecord(std::string_view text, const CJsonKeys& keys, unsigned int& record, CFields& data,
                    tJsonFault& fault)
{
    // The kind says how the data are to be read, and may come after them.
    CKindFinder kind;
    tJson::sax_parse(text, &kind, tJson::input_format_t::json, false);
    record = CLayout::s_cuiNoPart;
    if (kind.found())
        fault.m_strMessage = keys.findRecord(kind.kind(), record);
    CFields whole;
    CTreeMaker maker(keys, CLayout::s_cuiNoPart, record, whole, fault);
    if (!fault.m_strMessage.empty() || !maker.parse(text))
        return false;
    CFields* const member = whole.isField() ? whole.findChildAt("data", 4) : nullptr;
    if (!kind.found() || member == nullptr)
    {
        fault.m_strMessage = "a record needs the members \"kind\" and \"data\"";
        return false;
    }
    data = std::move(*member);
    return true;
}

bool looksLikeJson(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r\n{[");
    if (begin == std::string_view::npos || text[begin] != '"' ||
        text.substr(0, begin).find_first_of("{[") == std::string_view::npos)
        return false;
    std::size_t end = begin + 1;
    while (end < text.size() && text[end] != '"')
        end += text[end] == '\\' ? 2 : 1;
    const std::size_t next = end < text.size() ? text.find_first_not_of(" \t\r\n", end + 1) : std::string_view::npos;
    return next != std::string_view::npos && text[next] == ':';
}

}  // namespace murv::tool
