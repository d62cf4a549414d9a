// tests/real/corpora_test.cpp - real documents: loaded, compared with what a JSON parser says, saved and loaded again.
//
// A small document of our own runs always. Large ones are not part of this repository: the tests look for them in the
// directory that the environment or the build names.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/support/json_to_text.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"
#include "tests/support/source_file.h"
#include "tests/support/text_ways.h"

#ifndef MURV_CORPORA_DIR
#define MURV_CORPORA_DIR ""
#endif

using namespace murv;
using namespace murv::tests;

namespace
{

using tJson = nlohmann::ordered_json;

std::string corpora()
{
    const char* const named = std::getenv("MURV_CORPORA_DIR");
    return named != nullptr && *named != '\0' ? named : MURV_CORPORA_DIR;
}

/// "" or the path of the first node that is not what the JSON parser read.
std::string difference4Json(const tJson& json, const CFields& node)
{
    if (json.is_object() || json.is_array())
    {
        if (json.is_object() ? !node.isField() : !node.isArray())
            return ": type";
        if (json.empty())
            return node.getChildCount() == 1 && node.getChildAt(0).isNull() ? "" : ": not empty";
        if (node.getChildCount() != json.size())
            return ": count";
        unsigned int index = 0;
        for (const auto& item : json.items())
        {
            const CFields& member = node.getChildAt(index++);
            if (json.is_object() && name4Node(member) != item.key())
                return "/" + item.key() + ": name";
            const std::string found = difference4Json(item.value(), member);
            if (!found.empty())
                return "/" + item.key() + found;
        }
        return "";
    }
    bool same = false;
    if (json.is_null())
        same = node.isNull();
    else if (json.is_boolean())
        same = node.isBool() && node.asBool() == json.get<bool>();
    else if (json.is_string())
        same = node.isCodelist() && node.asString() == json.get<std::string>();
    else if (json.is_number_unsigned())
        same = node.isIntegral() && node.asUint64() == json.get<unsigned long long>() &&
               node.getDT() == (json.get<unsigned long long>() <= 2147483647 ? DT_sint : DT_uint);
    else if (json.is_number_integer())
        same = node.getDT() == DT_sint && node.asSint64() == json.get<long long>();
    else
        same = node.getDT() == DT_double && node.asDouble() == json.get<double>();
    return same ? "" : ": value";
}

std::string save(const CFields& tree, E_TextWay way)
{
    return text4Way(tree, way, SCBC_SECOND_VALUE | SCBC_ONE_LINE_ARRAY);
}

void expectDocument(const std::string& path)
{
    const std::string json = contentOf(path);
    ASSERT_FALSE(json.empty()) << path;
    CLoaders loader;
    CFields tree;
    ASSERT_TRUE(loader.loading(text4Json(json), tree)) << loader.getLastErrMsg();
    ASSERT_EQ(difference4Json(tJson::parse(json), tree), "");
    for (const E_TextWay way : s_ceTextWays)
    {
        const std::string text = save(tree, way);
        CFields back;
        ASSERT_TRUE(loader.loading(text, back)) << loader.getLastErrMsg();
        ASSERT_EQ(difference(treeAsRead(tree, true), back, SP_ids | SP_comments | SP_expressions | SP_second), "");
        // The second saving gives the same bytes as the first of the tree that came back.
        const std::string again = save(back, way);
        CFields second;
        ASSERT_TRUE(loader.loading(again, second)) << loader.getLastErrMsg();
        ASSERT_EQ(save(second, way), again);
    }
}

class Corpora : public testing::TestWithParam<const char*>
{
};

}  // namespace

TEST(RealDocument, ofOurOwnIsReadSavedAndReadAgain)
{
    expectDocument(MURV_TEST_DATA_DIR "/orders.json");
}

TEST_P(Corpora, isReadSavedAndReadAgain)
{
    if (corpora().empty())
        GTEST_SKIP() << "MURV_CORPORA_DIR is not set: " << GetParam() << " was NOT read";
    const std::string path = corpora() + "/" + GetParam();
    if (!std::ifstream(path))
        GTEST_SKIP() << path << " is not there: it was NOT read";
    expectDocument(path);
}

INSTANTIATE_TEST_SUITE_P(RealDocument, Corpora, testing::Values("twitter.json", "citm_catalog.json", "canada.json"));
