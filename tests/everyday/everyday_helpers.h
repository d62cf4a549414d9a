// tests/everyday/everyday_helpers.h - what the tests of shorthands share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/loader.h"
#include "murv/saver.h"

namespace murv::tests
{

inline CFields load(const std::string& text)
{
    CFields tree;
    CLoader4SER loader(LCBC_COMMENT | LCBC_LOSSLESS | LCBC_DUPLICATE);
    EXPECT_TRUE(loader.loading(text, tree)) << text << "\n" << loader.getLastErrMsg();
    return tree;
}

/// The tree on one line, with the marks that lossless text has: [] and {} stay, "05" is unsigned.
inline std::string textOf(const CFields& tree)
{
    CSavers saver(SCBC_LOSSLESS);
    const std::string text = saver.saving(tree, ER_SER_PKT);
    EXPECT_FALSE(saver.isError()) << saver.getLastErrMsg();
    return text;
}

/// All nodes, parents before their members.
inline std::vector<const CFields*> nodesOf(const CFields& tree)
{
    std::vector<const CFields*> nodes = {&tree};
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
        for (const CFields& member : *nodes[i])
            nodes.push_back(&member);
    }
    return nodes;
}

/// A tree of that many arrays, each in the one before.
inline CFields deepTree(unsigned int levels)
{
    CFields tree;
    CFields* node = &tree;
    for (unsigned int level = 1; level < levels; ++level)
        node = &node->addArrayAt(CFields());
    return tree;
}

}  // namespace murv::tests
