// syntax/null_remover.h - leaves out the word null wherever nothing at all means the same.
#pragma once

#include "syntax/token_spacing.h"

namespace murv::detail
{

/// Passes tokens on, but for such nulls. They are held back until it is clear what follows.
class CNullRemover : public ISyntaxSink
{
public:
    /// \param hasComments  false: comments are left out, and need no value to stand at
    CNullRemover(ISyntaxSink& sink, bool hasComments) : m_tSink(sink), m_bHasComments(hasComments)
    {
    }
    void begin() override;
    void token(E_SyntaxRole role, const tTokenInfo& token) override;
    void end() override;
    void mistake(const tMistake& mistake) override
    {
        m_tSink.mistake(mistake);
    }
    /// After the last token: the null that is a whole document stays.
    void finish()
    {
        release();
    }

private:
    bool isNeededBefore(E_SyntaxRole role) const;
    void release();

    ISyntaxSink& m_tSink;
    const bool m_bHasComments;
    tTokenInfo m_tNull{};
    bool m_bWaits = false;
    bool m_bEnded = false;      // its member has ended, too
    bool m_bBare = false;       // nothing but the present value stands in its member so far
    bool m_bCommented = false;  // comments stand before the present member, in its container
    bool m_bFirst = false;      // of its container
    std::size_t m_nLevel = 0;
};

}  // namespace murv::detail
