// syntax/packet_suspicions.h - what packet expressions may be meant otherwise.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "murv/packet_expression.h"
#include "murv/syntax.h"

namespace murv::detail
{

/// From a place of a text up to another one.
struct tTextRange
{
    std::uint32_t m_uiBegin;
    std::uint32_t m_uiEnd;
};

/// Takes the packet expressions of the leaves of a document in their order.
class CPacketSuspicions
{
public:
    /// \param detail  follows the message of the kind
    using tReport = std::function<void(E_Suspicion kind, tTextRange range, const std::string& detail)>;

    explicit CPacketSuspicions(tReport report) : m_tReport(std::move(report))
    {
    }
    /// \param text  of an expression that loaders take, without brackets and remark
    void leaf(std::string_view text, unsigned int config, tTextRange range);
    /// After the last leaf: size items may wait for their partners.
    void finish();

private:
    /// An item that announces a size.
    struct tAnnounced
    {
        tTextRange m_tRange;
        bool m_bSeen = false;
        bool m_bUsed = false;
    };
    static constexpr std::size_t s_cnOptions = 16;

    void checkTime(const tPacketExpInfo& expression, tTextRange range);
    void checkSize(const tPacketExpInfo& expression, tTextRange range);
    void checkOption(const tPacketExpInfo& expression, std::string_view text, tTextRange range);
    void reportUnused(std::size_t option);

    tReport m_tReport;
    tAnnounced m_tAnnounced[s_cnOptions];
};

}  // namespace murv::detail
