// tests/packet/packet_model.h - packet items by the shortest road: what making is compared with.
//
// Written from the rules alone, one kind after the other, with the standard library's own conversions.
#pragma once

#include "murv/fields.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace murv::tests
{

inline std::string modelText(const CFields& value)
{
    char room[40];
    switch (value.getDT())
    {
    case DT_bool: return value.asBool() ? "1" : "0";
    case DT_sint: return std::to_string(value.asSint64());
    case DT_uint: return std::to_string(value.asUint64());
    case DT_double:
        if (std::isnan(value.asDouble()))
            return "null";
        if (std::isinf(value.asDouble()))
            return value.asDouble() < 0 ? "-1e+9999" : "1e+9999";
        std::snprintf(room, sizeof room, "%.17g", value.asDouble());
        return room;
    case DT_codelist: return value.asString();
    default: return "";
    }
}

inline std::string modelBigEndian(std::uint64_t word)
{
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes += static_cast<char>((word >> shift) & 0xFF);
    return bytes;
}

inline std::string modelBytes(const CFields& value)
{
    std::uint64_t word = 0;
    double number = 0;
    switch (value.getDT())
    {
    case DT_bool: return std::string(1, value.asBool() ? '\1' : '\0');
    case DT_sint: return modelBigEndian(static_cast<std::uint64_t>(value.asSint64()));
    case DT_uint: return modelBigEndian(value.asUint64());
    case DT_double:
        number = value.asDouble();
        std::memcpy(&word, &number, sizeof word);
        return modelBigEndian(word);
    case DT_codelist: return value.asString();
    default: return "";
    }
}

/// Eight bytes in `length` bytes; exactly eight give nothing.
inline std::string modelWord(const std::string& word, std::size_t length, bool marked)
{
    if (length == 8)
        return "";
    if (length < 8)
        return word.substr(8 - length);
    return std::string(length - 8, marked ? '\xAD' : '\0') + word;
}

inline std::string modelAsciiFixed(const CFields& value, std::size_t length)
{
    std::string text = modelText(value);
    switch (value.getDT())
    {
    case DT_null: return std::string(length, ' ');
    case DT_codelist: text.resize(length, ' '); return text;
    default: break;
    }
    if (text.size() > length)
        return text.substr(0, length);
    if (text.size() < length && text[0] == '-')
    {
        text[0] = '0';
        while (text.size() + 1 < length)
            text.insert(0, "0");
        return "-" + text;
    }
    while (text.size() < length)
        text.insert(0, "0");
    return text;
}

inline std::string modelAsciiVariable(const CFields& value, int width, int calibration)
{
    const std::string text = modelText(value);
    std::string prefix = std::to_string(width - calibration + static_cast<long long>(text.size()));
    if (prefix.size() > static_cast<std::size_t>(width))
        prefix = prefix.substr(0, static_cast<std::size_t>(width));
    while (prefix.size() < static_cast<std::size_t>(width))
        prefix.insert(0, "0");
    return prefix + text;
}

inline std::string modelBinaryFixed(const CFields& value, std::size_t length)
{
    std::string bytes = modelBytes(value);
    if (length == 0)
        return "";
    switch (value.getDT())
    {
    case DT_null: return std::string(length, '\0');
    case DT_bool: return std::string(length - 1, '\0') + bytes;
    case DT_codelist: bytes.resize(length, '\0'); return bytes;
    case DT_sint: return modelWord(bytes, length, value.asSint64() < 0);
    case DT_double: return modelWord(bytes, length, value.asDouble() < 0);
    default: return modelWord(bytes, length, false);
    }
}

inline std::string modelBinaryVariable(const CFields& value, int width, int calibration)
{
    const std::string bytes = modelBytes(value);
    const long long number = width - calibration + static_cast<long long>(bytes.size());
    const bool marked = number < 0 && (value.getDT() == DT_null || value.getDT() == DT_bool);
    return modelWord(modelBigEndian(static_cast<std::uint64_t>(number)), static_cast<std::size_t>(width), marked) +
           bytes;
}

/// The item of a value; `size` is the length, or of a variable item the prefix width.
inline std::string modelItem(const CFields& value, bool ascii, bool variable, unsigned int size, int calibration)
{
    if (size == 0)
        return "";
    if (variable)
        return ascii ? modelAsciiVariable(value, static_cast<int>(size), calibration)
                     : modelBinaryVariable(value, static_cast<int>(size), calibration);
    return ascii ? modelAsciiFixed(value, size) : modelBinaryFixed(value, size);
}

}  // namespace murv::tests
