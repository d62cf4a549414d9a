// tests/tasks/xml_test.cpp - the snippets of docs/ten-tasks.md for pugixml, and what the page says of them.
#include <gtest/gtest.h>

#include <climits>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>
#include <string>

#include "support/subprocess.h"
#include "tasks/message_of.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpShop = R"(<!-- The shop in the High Street. -->
<shop name="shop">
  <listen port="8080" host="::1"/>  <!-- as agreed -->
  <order price="19.50" lines="2"/>
  <order price="5.00" lines="1"/>
</shop>
)";

/// A document can be moved, not copied.
pugi::xml_document shop()
{
    pugi::xml_document tree;
    EXPECT_TRUE(tree.load_string(s_cpShop));
    return tree;
}

std::string textOf(const pugi::xml_node& node)
{
    std::ostringstream out;
    node.print(out, "", pugi::format_raw);
    return out.str();
}
}  // namespace

TEST(XmlTasks, load)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", "<shop name \"shop\">\n  <listen port=tru/>\n</shop>\n");
    std::ostringstream out;

    pugi::xml_document tree;
    const pugi::xml_parse_result result = tree.load_file(file.c_str());
    if (!result)
        out << "byte " << result.offset << ": " << result.description() << "\n";

    EXPECT_EQ(out.str(), R"(byte 12: Error parsing element attribute
)");
}

TEST(XmlTasks, valueOrDefault)
{
    const pugi::xml_document tree = shop();

    const int backlog = tree.child("shop").child("listen").attribute("backlog").as_int(128);

    EXPECT_EQ(backlog, 128);
    EXPECT_EQ(tree.child("shop").child("listen").attribute("port").as_int(128), 8080);
}

TEST(XmlTasks, valueOrDefaultOfAnotherType)
{
    pugi::xml_document tree;
    ASSERT_TRUE(tree.load_string(R"(<listen text="many" big="5000000000"/>)"));
    EXPECT_EQ(tree.child("listen").attribute("text").as_int(128), 0);
    EXPECT_EQ(tree.child("listen").attribute("big").as_int(128), INT_MAX);
}

namespace
{
pugi::xml_attribute attributeAt(const pugi::xml_node& tree, const std::string& path)
{
    const pugi::xml_attribute found = tree.select_node(path.c_str()).attribute();
    if (!found)
        throw std::runtime_error(path + ": missing");
    return found;
}
}  // namespace

TEST(XmlTasks, valueOrFail)
{
    const pugi::xml_document tree = shop();

    const int port = attributeAt(tree, "shop/listen/@port").as_int();

    EXPECT_EQ(port, 8080);
    EXPECT_EQ(messageOf([&] { attributeAt(tree, "shop/listen/@timeout"); }), R"(shop/listen/@timeout: missing)");
}

TEST(XmlTasks, loop)
{
    const pugi::xml_document tree = shop();
    std::ostringstream out;

    for (const pugi::xml_attribute& attribute : tree.child("shop").child("listen").attributes())
        out << attribute.name() << ": " << attribute.value() << "\n";

    EXPECT_EQ(out.str(), R"(port: 8080
host: ::1
)");
}

TEST(XmlTasks, changeAndSave)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", s_cpShop);

    pugi::xml_document tree;
    if (tree.load_file(file.c_str(), pugi::parse_default | pugi::parse_comments))
    {
        tree.child("shop").child("listen").attribute("port") = 9090;
        tree.save_file(file.c_str(), "  ", pugi::format_default | pugi::format_no_declaration);
    }

    EXPECT_EQ(directory.read("shop"), R"(<!-- The shop in the High Street. -->
<shop name="shop">
  <listen port="9090" host="::1" />
  <!-- as agreed -->
  <order price="19.50" lines="2" />
  <order price="5.00" lines="1" />
</shop>
)");
}

TEST(XmlTasks, changeAndSaveWithWhiteSpace)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", s_cpShop);
    pugi::xml_document tree;
    ASSERT_TRUE(tree.load_file(file.c_str(), pugi::parse_full | pugi::parse_ws_pcdata));
    tree.child("shop").child("listen").attribute("port") = 9090;
    tree.save_file(file.c_str(), "", pugi::format_raw | pugi::format_no_declaration);
    EXPECT_EQ(directory.read("shop"), R"(<!-- The shop in the High Street. --><shop name="shop">
  <listen port="9090" host="::1"/>  <!-- as agreed -->
  <order price="19.50" lines="2"/>
  <order price="5.00" lines="1"/>
</shop>)");
}

TEST(XmlTasks, changeAndSaveWithoutTheFlagForComments)
{
    pugi::xml_document tree;
    ASSERT_TRUE(tree.load_string("<!-- gone --><shop/>"));
    EXPECT_EQ(textOf(tree), "<shop/>");
}

TEST(XmlTasks, append)
{
    pugi::xml_document tree = shop();

    pugi::xml_node order = tree.child("shop").append_child("order");
    order.append_attribute("price") = 7.25;
    order.append_attribute("lines") = 1;

    EXPECT_EQ(textOf(tree.child("shop").last_child()), R"(<order price="7.25" lines="1"/>)");
}

namespace
{
struct tListen
{
    unsigned short port = 80;
    std::string host;
};

tListen listen4Node(const pugi::xml_node& node)
{
    return {static_cast<unsigned short>(node.attribute("port").as_uint()), node.attribute("host").as_string()};
}

void setNode(pugi::xml_node node, const tListen& listen)
{
    node.attribute("port") = listen.port;
    node.attribute("host") = listen.host.c_str();
}
}  // namespace

TEST(XmlTasks, structure)
{
    pugi::xml_document tree = shop();

    tListen listen = listen4Node(tree.child("shop").child("listen"));
    listen.port = 9090;
    setNode(tree.child("shop").child("listen"), listen);

    EXPECT_EQ(textOf(tree.child("shop").child("listen")), R"(<listen port="9090" host="::1"/>)");
}

TEST(XmlTasks, structureOfTooLargeNumber)
{
    pugi::xml_document tree;
    ASSERT_TRUE(tree.load_string(R"(<listen port="70000" host="::1"/>)"));
    EXPECT_EQ(listen4Node(tree.child("listen")).port, 4464);
}

namespace
{
void mergeNode(pugi::xml_node target, const pugi::xml_node& patch)
{
    for (const pugi::xml_attribute& attribute : patch.attributes())
    {
        pugi::xml_attribute old = target.attribute(attribute.name());
        if (!old)
            old = target.append_attribute(attribute.name());
        old = attribute.value();
    }
    for (const pugi::xml_node& child : patch.children())
    {
        if (const pugi::xml_node old = target.child(child.name()))
            mergeNode(old, child);
        else
            target.append_copy(child);
    }
}
}  // namespace

TEST(XmlTasks, mergePatch)
{
    pugi::xml_document tree = shop();
    pugi::xml_document patch;
    ASSERT_TRUE(patch.load_string(R"(<shop><listen port="8443"/></shop>)"));

    mergeNode(tree, patch);

    EXPECT_EQ(textOf(tree.child("shop").child("listen")), R"(<listen port="8443" host="::1"/>)");
    EXPECT_STREQ(tree.child("shop").attribute("name").value(), "shop");
}

TEST(XmlTasks, mergePatchChangesTheFirstOfSeveral)
{
    pugi::xml_document tree = shop();
    pugi::xml_document patch;
    ASSERT_TRUE(patch.load_string(R"(<shop><order lines="3"/></shop>)"));
    mergeNode(tree, patch);
    EXPECT_EQ(textOf(tree.child("shop").first_child().next_sibling()), R"(<order price="19.50" lines="3"/>)");
    EXPECT_EQ(textOf(tree.child("shop").last_child()), R"(<order price="5.00" lines="1"/>)");
}

TEST(XmlTasks, compare)
{
    const pugi::xml_document before = shop();
    pugi::xml_document after = shop();
    EXPECT_FALSE(before.child("shop") == after.child("shop"));
    EXPECT_EQ(textOf(before), textOf(after));
    after.child("shop").child("listen").attribute("port") = 9090;
    after.child("shop").append_child("order").append_attribute("price") = 7.25;

    std::ostringstream first;
    std::ostringstream second;
    before.save(first, "", pugi::format_raw);
    after.save(second, "", pugi::format_raw);
    const bool isSame = first.str() == second.str();

    EXPECT_FALSE(isSame);
}

TEST(XmlTasks, compareAttributesInAnotherOrder)
{
    pugi::xml_document before;
    pugi::xml_document after;
    ASSERT_TRUE(before.load_string(R"(<listen port="8080" host="::1"/>)"));
    ASSERT_TRUE(after.load_string(R"(<listen host="::1" port="8080"/>)"));
    EXPECT_NE(textOf(before), textOf(after));
}

namespace
{
class CShow : public pugi::xml_tree_walker
{
public:
    explicit CShow(std::ostream& out) : m_tOut(out)
    {
    }
    bool for_each(pugi::xml_node& node) override
    {
        for (const pugi::xml_attribute& attribute : node.attributes())
            m_tOut << node.path() << "/@" << attribute.name() << ": " << attribute.value() << "\n";
        return true;
    }

private:
    std::ostream& m_tOut;
};
}  // namespace

TEST(XmlTasks, walk)
{
    pugi::xml_document tree = shop();
    std::ostringstream out;

    CShow show(out);
    tree.traverse(show);

    EXPECT_EQ(out.str(), R"(/shop/@name: shop
/shop/listen/@port: 8080
/shop/listen/@host: ::1
/shop/order/@price: 19.50
/shop/order/@lines: 2
/shop/order/@price: 5.00
/shop/order/@lines: 1
)");
}

}  // namespace murv::tests
