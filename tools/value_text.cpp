// tools/value_text.cpp - one line for a node, by the saver of compact text.
#include "tools/value_text.h"

#include "murv/saver.h"
#include "tools/json_writer.h"

namespace murv::tool
{

namespace
{
std::string text4Tree(const CFields& tree)
{
    CSaver4SER_PKT saver;
    saver.setSCBC(SCBC_SECOND_VALUE | SCBC_LOSSLESS);
    std::string text = saver.saving(tree, SAVE_ALL);
    return saver.isError() ? exactJson4Node(tree, false) : text;
}
}  // namespace

std::string lineText4Node(const CFields& node)
{
    CFields nameless = node;
    nameless.clearName();
    return text4Tree(nameless);
}

std::string lineText4Value(const CFields& node)
{
    CFields value;
    value.setValue(node);
    value.setVK(VK_actual);
    return text4Tree(value);
}

}  // namespace murv::tool
