// tools/json_events.h - what all trees take from the parser of JSON in the same way.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "murv/fields.h"
#include "tools/json_fault.h"

namespace murv::tool
{

class CJsonEvents : public nlohmann::json_sax<nlohmann::json>
{
public:
    /// Has a text parsed, which is to be JSON as a whole. \return false after an error
    bool parse(std::string_view text);

    bool null() final
    {
        return add() != nullptr;
    }
    bool boolean(bool value) final
    {
        return set(value);
    }
    bool number_integer(number_integer_t value) final
    {
        return set(static_cast<long long>(value));
    }
    bool number_unsigned(number_unsigned_t value) final
    {
        return value <= static_cast<number_unsigned_t>(m_llMostSigned) ? set(static_cast<long long>(value))
                                                                       : set(static_cast<unsigned long long>(value));
    }
    bool binary(binary_t&) final
    {
        return false;  // JSON has none
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception& error) final
    {
        m_tFault = fault4Parser(position, error.what());
        return false;
    }

protected:
    /// \param mostSigned  larger integers are unsigned
    CJsonEvents(long long mostSigned, tJsonFault& fault) : m_tFault(fault), m_llMostSigned(mostSigned)
    {
    }

    /// The node of the next value; null after an error.
    virtual CFields* add() = 0;

    template <typename T>
    bool set(const T& value)
    {
        CFields* const node = add();
        return node != nullptr && node->setValue(value);
    }

    tJsonFault& m_tFault;

private:
    const long long m_llMostSigned;
};

}  // namespace murv::tool
