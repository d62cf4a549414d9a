// tools/lossless.cpp - saves with SCBC_LOSSLESS, and turns what that refuses into diagnostics.
#include "tools/lossless.h"

#include <optional>
#include <vector>

#include "murv/saver.h"

namespace murv::tool
{

namespace
{
/// What a lossless saver could not hold, and of which node.
tLoss loss4Saver(const CFields& root, const ISaver& saver)
{
    tLoss loss{nullptr, withoutFunction(saver.getLastErrMsg())};
    const std::optional<std::vector<unsigned int>> path = saver.getErrorPath();
    if (!path)
        return loss;
    loss.m_pNode = &root;
    for (const unsigned int index : *path)
        loss.m_pNode = &loss.m_pNode->getChildAt(index);
    // Neither text nor binary files hold it, so the message need not name the medium.
    const bool isContainer = loss.m_pNode->isField() || loss.m_pNode->isArray();
    if (isContainer && !CFields::pkt_IsNullExp(loss.m_pNode->pkt_GetExp()))
        loss.m_strMessage = "the packet expression of this container would be lost";
    return loss;
}
}  // namespace

bool writeText(const CFields& tree, bool isCompact, std::string& text, tLoss& loss)
{
    CSaver4SER_PKT compact;
    CSaver4SER_HFW indented;
    IStringSaver& saver = isCompact ? static_cast<IStringSaver&>(compact) : indented;
    saver.setSCBC(SCBC_SECOND_VALUE | SCBC_LOSSLESS | SCBC_ONE_LINE_ARRAY | SCBC_FINAL_NEWLINE);
    text = saver.saving(tree, SAVE_ALL);
    if (saver.isError())
        loss = loss4Saver(tree, saver);
    return !saver.isError();
}

bool writeBinary(const CFields& tree, const std::string& password, std::string& file, tLoss& loss)
{
    CSavers saver(SCBC_SECOND_VALUE | SCBC_LOSSLESS);
    file = saver.saving(tree, ER_BER, SAVE_ALL, password.c_str());
    if (saver.isError())
        loss = loss4Saver(tree, saver);
    return !saver.isError();
}

E_ExitCode reportLoss(const tInput& input, const tLoss& loss, CDiagnostics& diagnostics)
{
    if (!input.isText() || loss.m_pNode == nullptr)  // binary files have no lines to show
        return diagnostics.fail(input.m_strName, loss.m_strMessage, EC_malformed);
    const auto begin = static_cast<std::size_t>(loss.m_pNode->getOffsetStart());
    return diagnostics.failAt(input.m_strName, input.text(), {begin, begin + 1}, loss.m_strMessage, EC_malformed);
}

}  // namespace murv::tool
