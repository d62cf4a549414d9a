// everyday/path.cpp - reads paths step by step, follows them into a tree, and finds the path of a node.
#include "murv/path.h"

#include <algorithm>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/path_text.h"
#include "murv/text.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{
constexpr unsigned int s_cuiNoIndex = CFields::maxUint32;  // more members than any container holds

class CPathReader
{
public:
    CPathReader(std::string_view text, unsigned int options) : m_svText(text), m_uiOptions(options)
    {
    }

    tNodePath read()
    {
        if (m_svText == ".")
            return m_tPath;
        if (m_svText.empty())
            fail("a path is needed; . is the root");
        while (m_tPath.m_pError == nullptr && m_nAt < m_svText.size())
            readStep();
        return std::move(m_tPath);
    }

private:
    bool isAt(char byte) const
    {
        return m_nAt < m_svText.size() && m_svText[m_nAt] == byte;
    }

    void readStep()
    {
        if (isAt('['))
            return readIndex();
        if (!m_tPath.m_vStep.empty())
        {
            if (!isAt('.'))
                return fail("\".\" or \"[\" expected");
            ++m_nAt;
        }
        if (isAt('#'))
            readId();
        else if (isAt('"'))
            readQuotedName();
        else
            readName();
    }

    void readIndex()
    {
        const std::size_t digits = ++m_nAt;
        const bool isFromEnd = (m_uiOptions & PO_fromEnd) != 0 && isAt('-');
        m_nAt += isFromEnd ? 1 : 0;
        unsigned int index = 0;
        if (!readNumber(index) || (isFromEnd && index == 0))
        {
            m_nAt = digits;
            return fail("an index is needed");
        }
        if (!isAt(']'))
            return fail("\"]\" expected");
        ++m_nAt;
        add(isFromEnd ? PS_fromEnd : PS_index, {}, index);
    }

    void readId()
    {
        ++m_nAt;
        unsigned int id = 0;
        if (!readNumber(id) || id == 0 || id > static_cast<unsigned int>(CFields::maxSint32))
            return fail("an ID from 1 to 2147483647 is needed");
        add(PS_id, {}, id);
    }

    void readName()
    {
        const std::size_t end = std::min(m_svText.find_first_of(".[]#\"", m_nAt), m_svText.size());
        if (end == m_nAt)
            return fail("a name is needed");
        std::string name(m_svText.substr(m_nAt, end - m_nAt));
        m_nAt = end;
        add(PS_name, std::move(name), 0);
    }

    void readQuotedName()
    {
        const std::size_t begin = m_nAt + 1;
        std::size_t end = begin;
        while (end < m_svText.size() && m_svText[end] != '"')
            end += m_svText[end] == '\\' ? 2 : 1;
        if (end >= m_svText.size())
            return fail("the quote is not closed");
        m_nAt = end + 1;
        add(PS_name, ToUnescapeString(m_svText.substr(begin, end - begin), false), 0);
    }

    bool readNumber(unsigned int& number)
    {
        const std::size_t end = std::min(m_svText.find_first_not_of("0123456789", m_nAt), m_svText.size());
        if (end == m_nAt)
            return false;
        // What no container can hold is no member, and no error.
        unsigned long long value = 0;
        for (; m_nAt != end; ++m_nAt)
        {
            const auto digit = static_cast<unsigned int>(m_svText[m_nAt] - '0');
            value = std::min<unsigned long long>(value * 10 + digit, s_cuiNoIndex);
        }
        number = static_cast<unsigned int>(value);
        return true;
    }

    void add(E_PathStep step, std::string name, unsigned int number)
    {
        m_tPath.m_vStep.push_back({step, std::move(name), number, m_nAt});
    }

    void fail(const char* message)
    {
        m_tPath.m_pError = message;
        m_tPath.m_nErrorAt = m_nAt;
    }

    std::string_view m_svText;
    unsigned int m_uiOptions;
    std::size_t m_nAt = 0;
    tNodePath m_tPath;
};

/// The index that a step of a pointer is in an array.
unsigned int index4Token(std::string_view token)
{
    const bool isIndex = !token.empty() && token.size() <= 10 &&
                         token.find_first_not_of("0123456789") == std::string_view::npos &&
                         (token.front() != '0' || token.size() == 1);
    if (!isIndex)
        return s_cuiNoIndex;
    unsigned long long value = 0;
    for (const char digit : token)
        value = value * 10 + static_cast<unsigned int>(digit - '0');
    return static_cast<unsigned int>(std::min<unsigned long long>(value, s_cuiNoIndex));
}

/// \return false, with `wrong` at the place of the mistake, for a "~" that neither "0" nor "1" follows
bool unescapeToken(std::string_view token, std::string& name, std::size_t& wrong)
{
    name.reserve(token.size());
    for (std::size_t i = 0; i < token.size(); ++i)
    {
        if (token[i] != '~')
        {
            name += token[i];
            continue;
        }
        wrong = i++;
        if (i == token.size() || (token[i] != '0' && token[i] != '1'))
            return false;
        name += token[i] == '0' ? '~' : '/';
    }
    return true;
}

const CFields* memberAt(const CFields& node, unsigned int index)
{
    return node.isValidChild(index) ? &node[index] : nullptr;
}

const CFields* memberNamed(const CFields& node, std::string_view name)
{
    if (name.size() > detail::s_cuiLongestName)
        return nullptr;
    return node.findChildAt(name.data(), static_cast<unsigned int>(name.size()));
}

const CFields* follow(const CFields& node, const tPathPart& step)
{
    switch (step.m_eStep)
    {
    case PS_name: return memberNamed(node, step.m_strName);
    case PS_id: return node.findID(step.m_uiNumber);
    case PS_fromEnd:
        return step.m_uiNumber > node.getChildCount() ? nullptr
                                                      : memberAt(node, node.getChildCount() - step.m_uiNumber);
    case PS_token: return node.isArray() ? memberAt(node, step.m_uiNumber) : memberNamed(node, step.m_strName);
    case PS_index: break;
    }
    return memberAt(node, step.m_uiNumber);
}

std::string quoted4Message(std::string_view path)
{
    return path.data() == nullptr ? "" : " " + ToQuotedEscapeString(path.substr(0, 200));
}

struct tLevel
{
    const CFields* m_pContainer;
    std::uint32_t m_uiIndex;
};

/// The members that lead from the root to a node. \return false when the node is not in the tree
bool findSteps(const CFields& root, const CFields& node, std::vector<tLevel>& levels)
{
    if (&root == &node)
        return true;
    if (!tFieldAccess::isMember(node))
        return false;
    const auto enter = [&levels](const CFields& container) {
        if (detail::memberCount(container) != 0)
            levels.push_back({&container, 0});
    };
    enter(root);
    while (!levels.empty())
    {
        const CFieldVector& members = *tFieldAccess::members(*levels.back().m_pContainer);
        const std::size_t depth = levels.size();
        const CFields& member = members.at(levels.back().m_uiIndex);
        if (&member == &node)
            return true;
        enter(member);
        if (levels.size() != depth)
            continue;
        while (!levels.empty() && ++levels.back().m_uiIndex == detail::memberCount(*levels.back().m_pContainer))
            levels.pop_back();
    }
    return false;
}
}  // namespace

CPathError::CPathError(std::string_view text, const char* error, std::size_t at)
    : CLogicError("Malformed path" + quoted4Message(text) + ", byte " + std::to_string(at) + ": " + error),
      m_nOffset(at)
{
}

CPathError::~CPathError() = default;

std::size_t CPathError::getOffset() const noexcept
{
    return m_nOffset;
}

tNodePath parsePath(std::string_view text, unsigned int options)
{
    return CPathReader(text, options).read();
}

tNodePath parsePointer(std::string_view text)
{
    tNodePath path;
    if (!text.empty() && text.front() != '/')
        path.m_pError = "a pointer begins with \"/\"";
    for (std::size_t at = 0; path.m_pError == nullptr && at < text.size();)
    {
        const std::size_t begin = at + 1;
        const std::size_t end = std::min(text.find('/', begin), text.size());
        std::string name;
        std::size_t wrong = 0;
        if (!unescapeToken(text.substr(begin, end - begin), name, wrong))
        {
            path.m_pError = "\"0\" or \"1\" expected after \"~\"";
            path.m_nErrorAt = begin + wrong + 1;
            break;
        }
        const unsigned int index = index4Token(name);
        path.m_vStep.push_back({PS_token, std::move(name), index, end});
        at = end;
    }
    return path;
}

const CFields* find(const CFields& root, const tNodePath& path, std::size_t* taken)
{
    if (path.m_pError != nullptr)
        throw CPathError({}, path.m_pError, path.m_nErrorAt);
    const CFields* node = &root;
    std::size_t steps = 0;
    for (; steps < path.m_vStep.size(); ++steps)
    {
        const CFields* const next = follow(*node, path.m_vStep[steps]);
        if (next == nullptr)
            break;
        node = next;
    }
    if (taken != nullptr)
        *taken = steps;
    return steps == path.m_vStep.size() ? node : nullptr;
}

CFields* find(CFields& root, const tNodePath& path, std::size_t* taken)
{
    return const_cast<CFields*>(find(static_cast<const CFields&>(root), path, taken));
}

const CFields* find(const CFields& root, std::string_view path)
{
    if (!path.empty() && path.find_first_of(".[]#\"/") == std::string_view::npos)
        return memberNamed(root, path);  // most are plain names
    const tNodePath steps = !path.empty() && path.front() == '/' ? parsePointer(path) : parsePath(path);
    if (steps.m_pError != nullptr)
        throw CPathError(path, steps.m_pError, steps.m_nErrorAt);
    return find(root, steps);
}

CFields* find(CFields& root, std::string_view path)
{
    return const_cast<CFields*>(find(static_cast<const CFields&>(root), path));
}

std::optional<std::string> pathOf(const CFields& root, const CFields& node)
{
    std::vector<tLevel> levels;
    if (!findSteps(root, node, levels))
        return std::nullopt;
    std::string path;
    for (const tLevel& level : levels)
        detail::appendPathStep(path, *level.m_pContainer, level.m_uiIndex);
    return levels.empty() ? "." : path;
}

std::optional<std::string> pointerOf(const CFields& root, const CFields& node)
{
    std::vector<tLevel> levels;
    if (!findSteps(root, node, levels))
        return std::nullopt;
    std::string pointer;
    for (const tLevel& level : levels)
    {
        const CFields& member = tFieldAccess::members(*level.m_pContainer)->at(level.m_uiIndex);
        if (level.m_pContainer->isArray())
            pointer.append("/").append(std::to_string(level.m_uiIndex));
        else if (detail::isFoundByName(*level.m_pContainer, member))
            pointer += pointerToken(tFieldAccess::name(member));
        else
            return std::nullopt;
    }
    return pointer;
}

std::string pathName(std::string_view name)
{
    std::string step;
    detail::appendPathName(step, name);
    return step;
}

std::string pointerToken(std::string_view name)
{
    std::string token = "/";
    token.reserve(name.size() + 1);
    for (const char byte : name)
    {
        if (byte == '~')
            token += "~0";
        else if (byte == '/')
            token += "~1";
        else
            token += byte;
    }
    return token;
}

}  // namespace murv
