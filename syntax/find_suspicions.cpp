// syntax/find_suspicions.cpp - finds what loads, but may be meant otherwise.
#include <algorithm>

#include "core/text/unescape.h"
#include "io/error_records.h"
#include "murv/flags.h"
#include "murv/loader.h"
#include "murv/text.h"
#include "syntax/grammar_reader.h"
#include "syntax/packet_suspicions.h"
#include "syntax/seen_names.h"
#include "syntax/suspicion_table.h"

namespace murv
{

namespace
{

using namespace detail;

constexpr std::size_t s_cnLongestName = 255;  // loaders leave longer ones out
constexpr std::uint32_t s_cuiNone = CSeenNames::s_cuiNone;

class CSuspicionSink : public ISyntaxSink
{
public:
    CSuspicionSink(std::string_view text, unsigned int config, unsigned int kinds)
        : m_strvText(text),
          m_uiConfig(config),
          m_uiKinds(kinds),
          m_tPackets([this](E_Suspicion kind, tTextRange range, const std::string& detail) {
              add(kind, range, s_cuiNone, detail);
          })
    {
        m_tIds.open();
    }
    void begin() override
    {
        m_vIsContainer.push_back(false);
    }
    void token(E_SyntaxRole role, const tTokenInfo& token) override;
    void end() override;
    void mistake(const tMistake&) override
    {
    }
    std::vector<tSuspicion> takeResult();

private:
    struct tFound
    {
        E_Suspicion m_eKind;
        tTextRange m_tRange;
        std::uint32_t m_uiSecond;  // or s_cuiNone
        std::string m_strDetail;
    };

    std::uint32_t offset(const char* place) const
    {
        return static_cast<std::uint32_t>(place - m_strvText.data());
    }
    tTextRange range(const tTokenInfo& token) const
    {
        return {offset(token.m_pBegin), offset(token.m_pEnd)};
    }
    bool wants(unsigned int kinds) const
    {
        return (m_uiKinds & kinds) != 0;
    }
    void add(E_Suspicion kind, tTextRange range, std::uint32_t second = s_cuiNone, const std::string& detail = {});
    void name(const tTokenInfo& token);
    void id(const tTokenInfo& token);
    void openContainer();
    void closeContainer(const tTokenInfo& token);
    void checkExpression();
    std::string_view unescaped(const tTokenInfo& token);

    const std::string_view m_strvText;
    const unsigned int m_uiConfig;
    const unsigned int m_uiKinds;
    std::vector<tFound> m_vFound;
    CPacketSuspicions m_tPackets;
    CSeenNames m_tNames;
    CSeenNames m_tFolded;               // names in small letters
    CSeenNames m_tIds;                  // digits without leading zeros
    std::vector<bool> m_vIsContainer;   // of the present member and those around it
    E_SyntaxRole m_eLast = SR_skipped;  // but for comments
    tTokenInfo m_tLast{};
    tTokenInfo m_tExpression{};  // of the present member, until its value is seen
    bool m_bExpressed = false;
    std::vector<char> m_vScratch;
    std::string m_strFolded;
};

void CSuspicionSink::add(E_Suspicion kind, tTextRange range, std::uint32_t second, const std::string& detail)
{
    if (wants(kind))
        m_vFound.push_back({kind, range, second, detail});
}

void CSuspicionSink::token(E_SyntaxRole role, const tTokenInfo& token)
{
    switch (role)
    {
    case SR_comment: return;
    case SR_id: id(token); break;
    case SR_name: name(token); break;
    case SR_expression:
        m_tExpression = token;
        m_bExpressed = true;
        break;
    case SR_open: openContainer(); break;
    case SR_close: closeContainer(token); break;
    case SR_skipped: m_bExpressed = false; break;
    case SR_rest: add(SU_textAfter, {offset(token.m_pBegin), offset(token.m_pBegin) + 1}); break;
    default: break;
    }
    m_eLast = role;
    m_tLast = token;
}

void CSuspicionSink::end()
{
    if (m_bExpressed)
        checkExpression();
    if (m_vIsContainer.back())
    {
        m_tNames.close();
        m_tFolded.close();
    }
    m_vIsContainer.pop_back();
}

/// The expression of a container has no meaning.
void CSuspicionSink::openContainer()
{
    m_bExpressed = false;
    m_vIsContainer.back() = true;
    m_tNames.open();
    m_tFolded.open();
}

void CSuspicionSink::closeContainer(const tTokenInfo& token)
{
    if (m_eLast == SR_comma)
        add(SU_trailingComma, range(m_tLast));
    if (m_eLast == SR_open)
        add(SU_emptyContainer, {offset(m_tLast.m_pBegin), offset(token.m_pEnd)});
}

void CSuspicionSink::id(const tTokenInfo& token)
{
    if (!wants(SU_duplicateId))
        return;
    const char* digits = token.m_pBegin + 1;
    while (*digits == '0')
        ++digits;
    const std::string_view number(digits, static_cast<std::size_t>(token.m_pEnd - digits));
    const std::uint32_t before = m_tIds.enter(number, offset(token.m_pBegin));
    if (before != s_cuiNone)
        add(SU_duplicateId, range(token), before);
}

void CSuspicionSink::name(const tTokenInfo& token)
{
    const bool isRoot = m_vIsContainer.size() == 1;
    if (isRoot || !wants(SU_duplicateName | SU_similarName))
        return;
    const std::string_view name = unescaped(token);
    if (name.empty() || name.size() > s_cnLongestName)
        return;
    const std::uint32_t place = offset(token.m_pBegin);
    std::uint32_t before = m_tNames.enter(name, place);
    if (before != s_cuiNone)
        return add(SU_duplicateName, range(token), before);
    if (!wants(SU_similarName))
        return;
    m_strFolded = name;
    for (char& letter : m_strFolded)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    before = m_tFolded.enter(m_strFolded, place);
    if (before != s_cuiNone)
        add(SU_similarName, range(token), before);
}

/// The bytes of a name; they may be gone with the next one.
std::string_view CSuspicionSink::unescaped(const tTokenInfo& token)
{
    if (token.m_eType != TT_string)
        return {token.m_pBegin, static_cast<std::size_t>(token.m_pEnd - token.m_pBegin)};
    const char* const begin = token.m_pBegin + 1;
    const char* const end = token.m_pEnd - 1;
    if (findStringStop(begin, end) == end)
        return {begin, static_cast<std::size_t>(end - begin)};
    m_vScratch.resize(std::max(m_vScratch.size(), static_cast<std::size_t>(end - begin)));
    const E_UnicodeMode mode = (m_uiConfig & LCBC_UNICODE_UTF8) != 0 ? UM_codePoint : UM_bytes;
    const tUnescaped result = unescape(begin, end, mode, m_vScratch.data());
    return {m_vScratch.data(), static_cast<std::size_t>(result.m_pEnd - m_vScratch.data())};
}

void CSuspicionSink::checkExpression()
{
    m_bExpressed = false;
    if (!wants(SU_timeLength | SU_sizePartner | SU_zeroLength | SU_keywordOption))
        return;
    const char* begin = m_tExpression.m_pBegin + 1;
    std::string_view text;
    takePeiText(begin, m_tExpression.m_pEnd, text);
    m_tPackets.leaf(text, m_uiConfig, range(m_tExpression));
}

std::vector<tSuspicion> CSuspicionSink::takeResult()
{
    m_tPackets.finish();
    std::stable_sort(m_vFound.begin(), m_vFound.end(),
                     [](const tFound& a, const tFound& b) { return a.m_tRange.m_uiBegin < b.m_tRange.m_uiBegin; });
    CErrorRecords records;
    for (const tFound& found : m_vFound)
    {
        const auto begin = static_cast<std::ptrdiff_t>(found.m_tRange.m_uiBegin);
        const auto end = static_cast<std::ptrdiff_t>(found.m_tRange.m_uiEnd);
        std::optional<std::ptrdiff_t> second;
        if (found.m_uiSecond != s_cuiNone)
            second = static_cast<std::ptrdiff_t>(found.m_uiSecond);
        const std::string detail = found.m_strDetail.empty() ? std::string() : ": " + found.m_strDetail;
        records.add(row4Suspicion(found.m_eKind).m_pMessage + detail, begin, end, second);
    }
    records.countLines(m_strvText.data());
    std::vector<tErrorPlace> places = records.places();
    std::vector<tSuspicion> result;
    result.reserve(places.size());
    for (std::size_t i = 0; i != places.size(); ++i)
        result.push_back({m_vFound[i].m_eKind, std::move(places[i])});
    return result;
}

}  // namespace

std::vector<tSuspicionKind> getSuspicionKinds()
{
    std::vector<tSuspicionKind> kinds;
    for (const tSuspicionRow& row : s_ctSuspicions)
        kinds.push_back({row.m_eKind, row.m_pName, row.m_pDescription});
    return kinds;
}

std::vector<tSuspicion> findSuspicions(std::string_view text, unsigned int config, unsigned int kinds)
{
    CSuspicionSink sink(text, config, kinds);
    CGrammarReader(text, config, sink).read();
    return sink.takeResult();
}

}  // namespace murv
