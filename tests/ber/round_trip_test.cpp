// tests/ber/round_trip_test.cpp - what is saved is what is loaded, by us and by others.
#include <gtest/gtest.h>

#include <string>

#include "murv/murv.h"
#include "tests/ber/independent_decoder.h"
#include "tests/ber/murf_bytes.h"
#include "tests/ber/random_file_tree.h"
#include "tests/support/same_tree.h"

namespace murv::tests
{

TEST(RoundTrip, tenThousandRandomTreesComeBackEqual)
{
    CRandomFileTree trees(1);
    CSaver4BER_BASIC saver;
    CLoader4BER loader;
    for (int i = 0; i < 10000; ++i)
    {
        const CFields tree = trees.make();
        const char* const password = i % 2 == 0 ? nullptr : "some password";
        CFields again;
        ASSERT_TRUE(loader.loading(saver.saving(tree, SAVE_ALL, password), again, password)) << loader.getLastErrMsg();
        ASSERT_EQ(difference(tree, again, SP_all & ~SP_offsets), "") << i;
    }
}

TEST(RoundTrip, independentDecoderReadsWhatTheSaverWrites)
{
    CRandomFileTree trees(2);
    for (int i = 0; i < 500; ++i)
    {
        const CFields tree = trees.make();
        ASSERT_EQ(difference(tree, CIndependentDecoder::decode(save(tree)), SP_all & ~SP_offsets), "") << i;
    }
}

TEST(RoundTrip, independentDecoderReadsFilesWithPasswords)
{
    if (!CIndependentDecoder::isSeedThere())
        GTEST_SKIP() << "NOT COMPARED: OpenSSL's legacy provider (legacy.so, Debian: libssl3) is not installed";
    CRandomFileTree trees(3);
    for (const char* password : {"p", "sixteen byte key", "a password of more than sixteen bytes"})
        for (int i = 0; i < 200; ++i)
        {
            const CFields tree = trees.make();
            const CFields again = CIndependentDecoder::decode(save(tree, SAVE_ALL, password), password);
            ASSERT_EQ(difference(tree, again, SP_all & ~SP_offsets), "") << i;
        }
}

TEST(RoundTrip, namesOfEveryLengthComeBack)
{
    CFields tree;
    for (std::size_t length = 1; length <= 255; ++length)
    {
        std::string name(length, 'a');
        name.front() = 'f';  // both ends differ from what is between them
        name.back() = 'l';
        tree.addChildRef(name) = static_cast<int>(length);
        CFields& container = tree.addChildRef(name + "c");  // a name of 256 bytes is left out
        container.addChildRef(name) = name;
    }
    EXPECT_EQ(difference(CIndependentDecoder::decode(save(tree)), tree, SP_all & ~SP_offsets), "");
}

TEST(RoundTrip, textAndBinaryGiveTheSameTree)
{
    CRandomFileTree trees(4, true);
    for (int i = 0; i < 1000; ++i)
    {
        const CFields tree = trees.make();
        CFields fromText;
        CFields fromBinary;
        CSavers savers(SCBC_SECOND_VALUE | SCBC_NULL_WORD);
        CLoaders loaders;
        const std::string text = savers.saving(tree, ER_SER_HFW);
        ASSERT_TRUE(text.size() < 4 || loaders.loading(text, fromText)) << loaders.getLastErrMsg() << text;
        ASSERT_TRUE(loaders.loading(savers.saving(tree, ER_BER), fromBinary)) << loaders.getLastErrMsg();
        if (text.size() < 4)
            continue;  // the front loader wants four bytes
        ASSERT_EQ(difference(fromText, fromBinary, SP_all & ~SP_offsets), "") << text;
    }
}

TEST(RoundTrip, whatWasLoadedIsSavedTheSame)
{
    CRandomFileTree trees(5);
    for (int i = 0; i < 200; ++i)
    {
        const std::string file = save(trees.make());
        EXPECT_EQ(save(load(file).m_tTree), file);
    }
}

TEST(RoundTrip, repeatedNamesNeedTheLoadersConsent)
{
    CFields tree;
    tree.addChildRef("a", 0, true) = 1;
    tree.addChildRef("a", 0, true) = 2;
    EXPECT_NE(load(save(tree)).m_strMessage, "");
    EXPECT_EQ(difference(load(save(tree), nullptr, LCBC_DUPLICATE).m_tTree, tree, SP_all & ~SP_offsets), "");
}

}  // namespace murv::tests
