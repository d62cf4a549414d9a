// document/source_builder.h - cuts a text without mistakes into the bytes of its members.
#pragma once

#include <string_view>
#include <vector>

#include "document/source_tree.h"
#include "syntax/grammar_reader.h"

namespace murv::detail
{

class CSourceBuilder : public ISyntaxSink
{
public:
    /// \param text  lives as long as the tree
    CSourceBuilder(std::string_view text, CSourceTree& tree)
        : m_tTree(tree), m_pEnd(text.data() + text.size()), m_pDone(text.data())
    {
    }
    void begin() override;
    void token(E_SyntaxRole role, const tTokenInfo& token) override;
    void end() override;
    void mistake(const tMistake&) override
    {
        m_bMistake = true;
    }
    /// After the last token. \return the number of the root, or nothing for a text with mistakes
    std::uint32_t finish();
    bool hasMistake() const
    {
        return m_bMistake;
    }

private:
    struct tOpen
    {
        std::uint32_t m_uiNode;
        const char* m_pHead = nullptr;     // where the head begins, if there is one
        const char* m_pHeadEnd = nullptr;  // so far
    };

    void takeHead(const tTokenInfo& token);
    void takeValue(const tTokenInfo& token);
    void endMember(const tTokenInfo& comma);
    void closeContainer(const tTokenInfo& bracket);
    std::string_view upTo(const char* end);
    const char* skipTrailing(const char* place, bool isLast) const;

    CSourceTree& m_tTree;
    const char* const m_pEnd;
    const char* m_pDone;  // up to here all bytes belong to nodes
    std::vector<tOpen> m_vOpen;
    std::uint32_t m_uiRoot = 0;
    bool m_bMistake = false;
};

}  // namespace murv::detail
