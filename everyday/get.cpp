// everyday/get.cpp - what is there where another value is wanted, in words.
#include "murv/get.h"

#include "core/field_access.h"
#include "murv/text.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{
constexpr const char* s_cpTypeNames[] = {"null",   "array", "field set", "bool", "integer", "unsigned integer",
                                         "double", "string"};

/// The type; of numbers also the value, which shows why it does not fit.
std::string found4Node(const CFields* node)
{
    if (node == nullptr)
        return "nothing";
    const std::string name = typeName(*node);
    const uMultiValue& value = tFieldAccess::value(*node);
    switch (tFieldAccess::type(*node))
    {
    case DT_sint: return name + " " + ToString(value.m_llValue);
    case DT_uint: return name + " " + ToString(value.m_ullValue);
    case DT_double: return name + " " + ToString(value.m_dValue);
    default: return name;
    }
}

std::optional<tDataPlace> place4Node(const CFields& node, std::string_view source)
{
    if (node.getOffsetEnd() <= 0 || node.getOffsetStart() < 0)
        return std::nullopt;
    const auto offset = static_cast<unsigned int>(node.getOffsetStart());
    return source.empty() ? tDataPlace{offset, 0, 0} : place4Offset(source, offset);
}

std::string words4Place(const std::optional<tDataPlace>& place, bool isThere)
{
    if (!place.has_value())
        return {};
    const std::string before = isThere ? " (" : " (below ";
    if (place->m_uiLine == 0)
        return before + "byte " + std::to_string(place->m_uiOffset) + ")";
    return before + "line " + std::to_string(place->m_uiLine) + ", column " + std::to_string(place->m_uiColumn) + ")";
}

std::string message(std::string_view path, const CFields* node, const CFields& around, std::string_view wanted,
                    std::string_view source)
{
    std::string text(path);
    text += ": " + found4Node(node) + " found";
    if (!wanted.empty())
        text.append(", ").append(wanted).append(" wanted");
    const CFields& shown = node == nullptr ? around : *node;
    return text + words4Place(place4Node(shown, source), node != nullptr);
}

/// The node at the path, and the last one on the way that there is.
std::pair<const CFields*, const CFields*> findAround(const CFields& root, std::string_view path)
{
    tNodePath steps = !path.empty() && path.front() == '/' ? parsePointer(path) : parsePath(path);
    std::size_t taken = 0;
    const CFields* const node = find(root, steps, &taken);
    if (node != nullptr)
        return {node, node};
    steps.m_vStep.resize(taken);
    return {nullptr, find(root, steps)};
}
}  // namespace

CValueError::CValueError(std::string_view path, const CFields* node, const CFields& around, std::string_view wanted,
                         std::string_view source)
    : CLogicError(message(path, node, around, wanted, source)),
      m_strPath(path),
      m_strFound(found4Node(node)),
      m_strWanted(wanted),
      m_tPlace(place4Node(node == nullptr ? around : *node, source))
{
}

CValueError::~CValueError() = default;

const std::string& CValueError::getPath() const noexcept
{
    return m_strPath;
}

const std::string& CValueError::getFound() const noexcept
{
    return m_strFound;
}

const std::string& CValueError::getWanted() const noexcept
{
    return m_strWanted;
}

const std::optional<tDataPlace>& CValueError::getPlace() const noexcept
{
    return m_tPlace;
}

const char* typeName(const CFields& node) noexcept
{
    return s_cpTypeNames[tFieldAccess::type(node)];
}

std::string_view textView(const CFields& node)
{
    const char* data = nullptr;
    const unsigned int length = node.getCodePoint(&data);
    return data == nullptr ? std::string_view() : std::string_view(data, length);
}

void detail::throwValueError(const CFields& node, std::string_view path, std::string_view wanted,
                             std::string_view source)
{
    const auto [found, around] = findAround(node, path);
    throw CValueError(path, found, *around, wanted, source);
}

const CFields& at(const CFields& node, std::string_view path, std::string_view source)
{
    const CFields* const found = find(node, path);
    if (found == nullptr)
        detail::throwValueError(node, path, {}, source);
    return *found;
}

CFields& at(CFields& node, std::string_view path, std::string_view source)
{
    return const_cast<CFields&>(at(static_cast<const CFields&>(node), path, source));
}

}  // namespace murv
