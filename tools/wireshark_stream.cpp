// tools/wireshark_stream.cpp - what in a layout needs other records, or the end of the input.
#include "tools/wireshark_stream.h"

#include <utility>
#include <vector>

#include "murv/layout.h"

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiNone = CLayout::s_cuiNoPart;

unsigned int number4(const CFields& node, const char* name, unsigned int usual = s_cuiNone)
{
    const CFields* const found =
        node.findChildAt(name, static_cast<unsigned int>(std::char_traits<char>::length(name)));
    return found == nullptr ? usual : static_cast<unsigned int>(found->asUint64());
}

std::string text4(const CFields& node, const char* name)
{
    const CFields* const found =
        node.findChildAt(name, static_cast<unsigned int>(std::char_traits<char>::length(name)));
    return found == nullptr ? std::string() : found->asString();
}

bool has(const CFields& node, const char* name)
{
    return node.isValidChild(name);
}

/// The literals at fixed places at the beginning of a record.
struct tBeginning
{
    unsigned int m_uiRecord = 0;
    std::vector<std::pair<unsigned int, std::string>> m_vBytes;
};

class CStreamCheck
{
public:
    explicit CStreamCheck(CFields& description)
        : m_tParts(description["parts"]), m_tSpans(description["spans"]), m_tLinks(description["links"])
    {
        const std::string frame = description["frame"]["kind"].asString();
        m_bFramed = frame != "none";
    }

    std::string run()
    {
        prepare();
        for (unsigned int part = 0; part < m_tParts.getChildCount(); ++part)
        {
            std::string why = whyNot(part);
            if (!why.empty())
                return why;
        }
        return compareBeginnings();
    }

private:
    const CFields& part4(unsigned int part) const
    {
        return m_tParts.getChildAt(part);
    }

    std::string name4(unsigned int part) const
    {
        const std::string path = text4(part4(part), "path");
        return path.empty() ? "the layout" : path;
    }

    /// The rules of a part, for a message.
    std::string rule4(unsigned int part) const
    {
        const std::string rules = text4(part4(part), "rules");
        return rules.empty() ? std::string() : " (\"" + rules + "\")";
    }

    void prepare()
    {
        const unsigned int count = m_tParts.getChildCount();
        m_vRecord.assign(count, s_cuiNone);
        m_vSized.assign(count, false);
        for (unsigned int span = 0; span < m_tSpans.getChildCount(); ++span)
        {
            const CFields& row = m_tSpans.getChildAt(span);
            const bool isSized = has(row, "size");
            for (unsigned int part = number4(row, "first"); isSized && part <= number4(row, "last"); ++part)
                m_vSized[part] = true;
        }
        for (unsigned int part = 0; part < count; ++part)
        {
            const unsigned int parent = number4(part4(part), "parent");
            if (has(part4(part), "record"))
                m_vRecord[part] = part;
            else if (parent != s_cuiNone)
                m_vRecord[part] = m_vRecord[parent];
            if (parent != s_cuiNone && m_vSized[parent])
                m_vSized[part] = true;
            if (m_vRecord[part] == part)
                m_vBeginning.push_back({part, {}});
        }
        for (tBeginning& beginning : m_vBeginning)
            collect(beginning);
    }

    /// Values that decide how a part is read, by the parts that hold them.
    std::vector<unsigned int> deciding(unsigned int part) const
    {
        const CFields& row = part4(part);
        std::vector<unsigned int> parts;
        for (const char* const name : {"by", "lastIf"})
        {
            if (has(row, name))
                parts.push_back(number4(row[name], "part"));
        }
        if (has(row, "tests"))
        {
            for (const CFields& test : row["tests"])
                parts.push_back(number4(test, "part"));
        }
        for (const char* const name : {"count", "bitmap", "size"})
        {
            if (has(row, name))
                parts.push_back(number4(m_tLinks.getChildAt(number4(row, name))["number"], "part"));
        }
        return parts;
    }

    std::string whyNot(unsigned int part) const
    {
        const CFields& row = part4(part);
        const unsigned int record = m_vRecord[part];
        // Around records, arrays end when the stream does.
        if (record == s_cuiNone && text4(row, "kind") == "array")
            return {};
        for (const unsigned int other : deciding(part))
        {
            if (record == s_cuiNone || m_vRecord[other] != record)
                return name4(part) + " depends on another record" + rule4(part) +
                       ", and in a stream each is read alone";
        }
        if (m_bFramed || record == s_cuiNone || m_vSized[part])
            return {};
        const std::string endsBy = text4(row, "endsBy");
        const bool isOpen = endsBy == "rest" || endsBy == "heads" || has(row, "between") || has(row, "optional");
        return isOpen && part != record
                   ? name4(part) + " may end with the input" + rule4(part) + ", and a stream has no end"
                   : std::string();
    }

    void collect(tBeginning& beginning) const
    {
        unsigned int offset = 0;
        for (unsigned int part = beginning.m_uiRecord; part < m_tParts.getChildCount(); ++part)
        {
            const CFields& row = part4(part);
            const bool mayLack = has(row, "optional") || has(row, "tests") || has(row, "bitmap");
            if (m_vRecord[part] != beginning.m_uiRecord || (mayLack && part != beginning.m_uiRecord) ||
                text4(row, "kind") == "array" || has(row, "oneOf") || has(row, "between"))
                return;
            if (text4(row, "kind") == "leaf")
            {
                const std::string literal = text4(row, "literal");
                if (has(row, "literal"))
                    beginning.m_vBytes.emplace_back(offset, literal);
                else if (has(row, "endsBy"))
                    return;
                offset +=
                    has(row, "literal") ? static_cast<unsigned int>(literal.size()) : number4(row["item"], "length", 0);
            }
            if (has(row, "align"))
                return;
        }
    }

    /// Whether bytes that belong to the second would be taken for the first.
    static bool covers(const tBeginning& first, const tBeginning& second)
    {
        auto other = second.m_vBytes.begin();
        for (const auto& [offset, text] : first.m_vBytes)
        {
            for (std::size_t i = 0; i < text.size(); ++i)
            {
                const std::size_t at = offset + i;
                while (other != second.m_vBytes.end() && other->first + other->second.size() <= at)
                    ++other;
                if (other == second.m_vBytes.end() || other->first > at || other->second[at - other->first] != text[i])
                    return false;
            }
        }
        return true;
    }

    std::string compareBeginnings()
    {
        for (std::size_t i = 0; i < m_vBeginning.size(); ++i)
        {
            for (std::size_t j = 0; j < i; ++j)
            {
                if (covers(m_vBeginning[j], m_vBeginning[i]))
                    return name4(m_vBeginning[i].m_uiRecord) + " begins like " + name4(m_vBeginning[j].m_uiRecord) +
                           ", and in a stream records are told apart by their literals alone";
            }
        }
        for (const tBeginning& beginning : m_vBeginning)
        {
            if (m_vBeginning.size() == 1)
                break;  // there is nothing to tell apart
            CFields& list = m_tParts[beginning.m_uiRecord].addChildRef("beginning");
            for (const auto& [offset, text] : beginning.m_vBytes)
            {
                CFields& row = list.addArrayAt(CFields());
                row.addChildRef("offset") = offset;
                row.addChildRef("bytes") = text;
            }
        }
        return {};
    }

    CFields& m_tParts;
    const CFields& m_tSpans;
    const CFields& m_tLinks;
    bool m_bFramed = false;
    std::vector<unsigned int> m_vRecord;  // by part: the record around it, or none
    std::vector<bool> m_vSized;           // by part: something around it says where it ends
    std::vector<tBeginning> m_vBeginning;
};
}  // namespace

std::string whyNoStream(CFields& description)
{
    return CStreamCheck(description).run();
}

}  // namespace murv::tool
