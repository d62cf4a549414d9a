// tests/everyday/get_test.cpp - values by type and path, and what errors say.
#include "murv/get.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "tests/everyday/everyday_helpers.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpText =
    "{ \"name\" = \"shop\",\n"
    "  \"listen\" = { \"port\" = 70000, \"tls\" = true, \"rate\" = 2.5, \"none\" = null },\n"
    "  \"list\" = [1, \"two\"] }";

template <typename T>
void expectRange()
{
    const T least = std::numeric_limits<T>::min();
    const T most = std::numeric_limits<T>::max();
    EXPECT_EQ(get<T>(CFields(least)), least);
    EXPECT_EQ(get<T>(CFields(most)), most);
    if (sizeof(T) < 8)
    {
        EXPECT_EQ(get<T>(CFields(static_cast<long long>(least) - 1)), std::nullopt);
        EXPECT_EQ(get<T>(CFields(static_cast<long long>(most) + 1)), std::nullopt);
        EXPECT_EQ(get<T>(CFields(static_cast<unsigned long long>(most) + 1)), std::nullopt);
    }
}

CValueError errorOf(const CFields& tree, const std::string& path, std::string_view source = {})
{
    try
    {
        at<unsigned short>(tree, path, source);
    }
    catch (const CValueError& error)
    {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return CValueError({}, nullptr, tree, {});
}
}  // namespace

TEST(Get, integersComeWhenTheyFit)
{
    expectRange<signed char>();
    expectRange<unsigned char>();
    expectRange<short>();
    expectRange<unsigned short>();
    expectRange<int>();
    expectRange<unsigned int>();
    expectRange<long>();
    expectRange<unsigned long>();
    expectRange<long long>();
    expectRange<unsigned long long>();
    EXPECT_EQ(get<unsigned long long>(CFields(-1)), std::nullopt);
    EXPECT_EQ(get<long long>(CFields(std::numeric_limits<unsigned long long>::max())), std::nullopt);
    EXPECT_EQ(get<long long>(CFields(5U)), 5);
    EXPECT_EQ(get<unsigned int>(CFields(5)), 5U);
}

TEST(Get, nothingElseBecomesAnInteger)
{
    for (const CFields& node : {CFields(1.0), CFields("1"), CFields(true), CFields(), CFields(DT_array)})
        EXPECT_EQ(get<int>(node), std::nullopt) << typeName(node);
}

TEST(Get, doublesComeFromExactIntegers)
{
    EXPECT_EQ(get<double>(CFields(2.5)), 2.5);
    EXPECT_EQ(get<double>(CFields(-3)), -3.0);
    EXPECT_EQ(get<double>(CFields(9007199254740992LL)), 9007199254740992.0);
    EXPECT_EQ(get<double>(CFields(9007199254740993LL)), std::nullopt);
    EXPECT_EQ(get<double>(CFields(-9007199254740993LL)), std::nullopt);
    EXPECT_EQ(get<double>(CFields(9007199254740994LL)), 9007199254740994.0);
    EXPECT_EQ(get<double>(CFields(std::numeric_limits<long long>::min())), -9223372036854775808.0);
    EXPECT_EQ(get<double>(CFields(std::numeric_limits<long long>::max())), std::nullopt);
    EXPECT_EQ(get<double>(CFields(std::numeric_limits<unsigned long long>::max())), std::nullopt);
    EXPECT_EQ(get<double>(CFields(9223372036854775808ULL)), 9223372036854775808.0);
    EXPECT_EQ(get<double>(CFields(true)), std::nullopt);
    EXPECT_EQ(get<double>(CFields("1")), std::nullopt);
}

TEST(Get, floatsComeFromNumbersInTheirRange)
{
    EXPECT_EQ(get<float>(CFields(0.1)), 0.1F);
    EXPECT_EQ(get<float>(CFields(16777216)), 16777216.0F);
    EXPECT_EQ(get<float>(CFields(16777217)), std::nullopt);
    EXPECT_EQ(get<float>(CFields(1e39)), std::nullopt);
    EXPECT_EQ(get<float>(CFields(-1e39)), std::nullopt);
    EXPECT_EQ(get<float>(CFields(1e-60)), std::nullopt);
    EXPECT_EQ(get<float>(CFields(std::numeric_limits<double>::infinity())), std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(*get<float>(CFields(std::numeric_limits<double>::quiet_NaN()))));
}

TEST(Get, textsAndBoolsComeFromTheirTypeAlone)
{
    EXPECT_EQ(get<std::string>(CFields(std::string("a\0b", 3))), std::string("a\0b", 3));
    EXPECT_EQ(get<std::string>(CFields(DT_codelist)), "");
    EXPECT_EQ(get<std::string>(CFields(1)), std::nullopt);
    EXPECT_EQ(get<bool>(CFields(true)), true);
    EXPECT_EQ(get<bool>(CFields(1)), std::nullopt);
    EXPECT_EQ(get<bool>(CFields("true")), std::nullopt);
    const CFields node("text");
    EXPECT_EQ(get<std::string_view>(node), "text");
    EXPECT_EQ(get<std::string_view>(node)->data(), node.getValuePtr());
    EXPECT_EQ(textView(node), "text");
    const CFields number(5);
    EXPECT_EQ(textView(number), "");
}

TEST(Get, takesPathsAndPointers)
{
    const CFields tree = load(s_cpText);
    EXPECT_EQ(get<std::string>(tree, "name"), "shop");
    EXPECT_EQ(get<int>(tree, "listen.port"), 70000);
    EXPECT_EQ(get<int>(tree, "/list/0"), 1);
    EXPECT_EQ(get<int>(tree, parsePath("list[0]")), 1);
    EXPECT_EQ(get<int>(tree, parsePath("list[2]")), std::nullopt);
    EXPECT_EQ(get<int>(tree, "list[1]"), std::nullopt);
    EXPECT_EQ(get<int>(tree, "missing"), std::nullopt);
    EXPECT_THROW(static_cast<void>(get<int>(tree, "list[")), CPathError);
}

TEST(Get, viewsIntoNodesThatGoDoNotCompile)
{
    static_assert(
        std::is_same_v<decltype(get<std::string_view>(std::declval<CFields&>())), std::optional<std::string_view>>);
    const auto viewsOf = [](auto&& node, auto tag) -> decltype(get<decltype(tag)>(std::forward<decltype(node)>(node))) {
        return {};
    };
    static_assert(!std::is_invocable_v<decltype(viewsOf), CFields, std::string_view>);
    static_assert(std::is_invocable_v<decltype(viewsOf), CFields&, std::string_view>);
    static_assert(std::is_invocable_v<decltype(viewsOf), CFields, std::string>);
}

TEST(ValueOr, givesTheValueOrTheFallback)
{
    const CFields tree = load(s_cpText);
    EXPECT_EQ(valueOr(tree, "listen.port", 1), 70000);
    EXPECT_EQ(valueOr(tree, "listen.port", std::uint16_t{1}), 1);
    EXPECT_EQ(valueOr(tree, "listen.rate", 1), 1);
    EXPECT_EQ(valueOr(tree, "listen.rate", 1.0), 2.5);
    EXPECT_EQ(valueOr(tree, "listen.tls", false), true);
    EXPECT_EQ(valueOr(tree, "name", "x"), "shop");
    EXPECT_EQ(valueOr(tree, "nome", "x"), "x");
    EXPECT_EQ(valueOr(tree, "name", std::string_view("x")), "shop");
    EXPECT_EQ(valueOr(tree, "listen.none", std::string("x")), "x");
    static_assert(std::is_same_v<decltype(valueOr(tree, "name", "x")), std::string>);
}

TEST(At, givesNodesAndValues)
{
    CFields tree = load(s_cpText);
    at(tree, "listen.port") = 8080;
    EXPECT_EQ(at<unsigned short>(tree, "listen.port"), 8080);
    EXPECT_EQ(at<std::string_view>(tree, "name"), "shop");
    EXPECT_EQ(&at(static_cast<const CFields&>(tree), "list[1]"), &tree["list"][1]);
}

TEST(At, saysWhatIsFoundAndWanted)
{
    const CFields tree = load("{ \"a\" = { \"n\" = 70000, \"d\" = 2.5, \"t\" = \"secret\", \"u\" = 8589934592 } }");
    const CFields bare = [&] {
        CFields copy;
        copy.addChildRef("a").addChildRef("n") = -1;
        return copy;
    }();
    EXPECT_EQ(thrown([&] { at<std::uint16_t>(bare, "a.n"); }), "a.n: integer -1 found, integer from 0 to 65535 wanted");
    EXPECT_EQ(thrown([&] { at<bool>(bare, "a.x.y"); }), "a.x.y: nothing found, bool wanted");
    EXPECT_EQ(thrown([&] { at(bare, "a.x"); }), "a.x: nothing found");
    EXPECT_EQ(thrown([&] { at<std::string>(bare, "a"); }), "a: field set found, string wanted");
    EXPECT_EQ(thrown([&] { at<double>(bare, "."); }), ".: field set found, double wanted");
    EXPECT_EQ(thrown([&] { at<float>(bare, "/b"); }), "/b: nothing found, float wanted");
    EXPECT_EQ(thrown([&] { at<signed char>(tree, "a.t"); }),
              "a.t: string found, integer from -128 to 127 wanted (byte 40)");
    EXPECT_EQ(thrown([&] { at<int>(tree, "a.d"); }),
              "a.d: double 2.5 found, integer from -2147483648 to 2147483647 wanted (byte 29)");
    EXPECT_EQ(thrown([&] { at<bool>(tree, "a.u"); }), "a.u: unsigned integer 8589934592 found, bool wanted (byte 56)");
    EXPECT_THROW(at<int>(tree, "a["), CPathError);
}

TEST(At, saysLineAndColumnWhenTheTextIsGiven)
{
    const CFields tree = load(s_cpText);
    EXPECT_STREQ(errorOf(tree, "listen.port", s_cpText).what(),
                 "listen.port: integer 70000 found, integer from 0 to 65535 wanted (line 2, column 25)");
    EXPECT_STREQ(errorOf(tree, "listen.prot.x", s_cpText).what(),
                 "listen.prot.x: nothing found, integer from 0 to 65535 wanted (below line 2, column 14)");
    EXPECT_STREQ(errorOf(tree, "prot").what(), "prot: nothing found, integer from 0 to 65535 wanted (below byte 0)");
}

TEST(At, errorsAreData)
{
    const CFields tree = load(s_cpText);
    const CValueError error = errorOf(tree, "listen.port", s_cpText);
    EXPECT_EQ(error.getPath(), "listen.port");
    EXPECT_EQ(error.getFound(), "integer 70000");
    EXPECT_EQ(error.getWanted(), "integer from 0 to 65535");
    ASSERT_TRUE(error.getPlace().has_value());
    EXPECT_EQ(error.getPlace()->m_uiLine, 2U);
    EXPECT_EQ(error.getPlace()->m_uiColumn, 25U);
    EXPECT_EQ(error.getPlace()->m_uiOffset, 43U);
    EXPECT_EQ(errorOf(tree, "listen.port").getPlace()->m_uiLine, 0U);
    EXPECT_FALSE(errorOf(CFields(), "x").getPlace().has_value());
    EXPECT_EQ(errorOf(CFields(), "x").getFound(), "nothing");
}

TEST(TypeName, isAWordForEachType)
{
    const std::pair<E_DataType, const char*> names[] = {
        {DT_null, "null"},    {DT_array, "array"},           {DT_fields, "field set"}, {DT_bool, "bool"},
        {DT_sint, "integer"}, {DT_uint, "unsigned integer"}, {DT_double, "double"},    {DT_codelist, "string"}};
    for (const auto& [type, name] : names)
        EXPECT_STREQ(typeName(CFields(type)), name);
}

}  // namespace murv::tests
