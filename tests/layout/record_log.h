// tests/layout/record_log.h - what a visitor sees of records, written down, so that two ways of reading can be
// compared.
#pragma once

#include <string>

#include "murv/layout.h"

namespace murv::tests
{

/// Writes down what a visitor sees of records.
class CRecordLog : public IPacketVisitor
{
public:
    void onFields(unsigned int part) override
    {
        note("{" + std::to_string(part));
    }
    void onFieldsEnd(unsigned int) override
    {
        note("}");
    }
    void onArray(unsigned int part) override
    {
        note("[" + std::to_string(part));
    }
    void onElement(unsigned int, std::uint64_t index) override
    {
        note("," + std::to_string(index));
    }
    void onArrayEnd(unsigned int) override
    {
        note("]");
    }
    void onRecord(unsigned int, std::uint64_t number, std::uint64_t offset) override
    {
        m_bInRecord = true;
        note("<" + std::to_string(number) + "@" + std::to_string(offset));
    }
    void onRecordEnd(unsigned int) override
    {
        note(">");
        m_bInRecord = false;
    }
    void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place) override
    {
        note("(" + std::to_string(part) + "@" + std::to_string(place.m_ullOffset) + ":" +
             std::to_string(place.m_ullLength) + ":" + std::to_string(value.m_eType) + ":" +
             std::to_string(value.m_ullBits) + ":");
        note(std::string(value.m_strvText) + ")");
    }
    std::string m_strLog;

private:
    void note(const std::string& text)
    {
        m_strLog += m_bInRecord ? text : "";
    }
    bool m_bInRecord = false;
};

}  // namespace murv::tests
