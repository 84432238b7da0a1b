#include "PQUtils/Utils/PQStringRef.h"

#include <string>

#include <gtest/gtest.h>

#include "PQDebug/PQException.h"
#include "PQUtils/Utils/PQSecuredString.h"
#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "support/TestSupport.h"

using PQ_DEBUG::PQNullPointerException;
using PQ_UTILS::kstring;
using PQ_UTILS::PQSecuredString;
using PQ_UTILS::PQSecuredStringRef;
using PQ_UTILS::PQStringRef;

constexpr auto npos = kstring::npos;

// What both view types share.
template <class View> class PQViews : public ::testing::Test {};
using ViewTypes = ::testing::Types<PQStringRef, PQSecuredStringRef>;
TYPED_TEST_SUITE(PQViews, ViewTypes);

TYPED_TEST(PQViews, EqualityLooksAtTheStartsBeforeTheLengths) {
    using View = TypeParam;
    const kstring text = "abcabc";
    const kstring same = "abc";
    const View null;
    const View emptyHere(text.data(), 0);
    EXPECT_TRUE(null == View());
    EXPECT_TRUE(null != emptyHere); // both empty, but one start is null
    EXPECT_TRUE(emptyHere != null);
    EXPECT_TRUE(emptyHere == View(same.data(), 0));
    EXPECT_TRUE(View(text.data(), 3) == View(text.data() + 3, 3));
    EXPECT_TRUE(View(text.data(), 3) == View(same.data(), 3));
    EXPECT_TRUE(View(text.data(), 3) != View(text.data() + 1, 3));
    EXPECT_TRUE(View(text.data(), 3) != View(text.data(), 2));
}

TYPED_TEST(PQViews, OrderIsLengthFirstThenSignedBytes) {
    using View = TypeParam;
    struct Row {
        const char* left;
        const char* right;
        bool less;
    };
    const Row rows[] = {
        {"b", "aa", true},   {"aa", "b", false}, {"\xE9", "a", true}, {"a", "\xE9", false},
        {"ab", "ab", false}, {"", "a", true},    {"a", "", false},    {"", "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.left) + " < " + row.right);
        const kstring left = row.left;
        const kstring right = row.right;
        EXPECT_EQ(View(left.data(), left.size()) < View(right.data(), right.size()), row.less);
    }
    const kstring text = "xy";
    const View view(text.data(), 2);
    EXPECT_FALSE(view < view);
}

TYPED_TEST(PQViews, OrderReportsABrokenViewOnEitherSide) {
    using View = TypeParam;
    const kstring text = "abc";
    const View broken(nullptr, 3);
    const View fine(text.data(), 3);
    const auto mine = pqtest::thrownBy<PQNullPointerException>([&] { (void)(broken < fine); });
    ASSERT_TRUE(mine);
    EXPECT_EQ(mine->get_variable(), "m_startPointeur");
    EXPECT_EQ(mine->get_function(), "operator<");
    const auto theirs = pqtest::thrownBy<PQNullPointerException>([&] { (void)(fine < broken); });
    ASSERT_TRUE(theirs);
    EXPECT_EQ(theirs->get_variable(), "str.m_startPointeur");
}

TYPED_TEST(PQViews, SubViewsRefuseTheWholeLengthAndWrapRound) {
    using View = TypeParam;
    const kstring text = "abcdef";
    const View view(text.data(), text.size());
    const View middle = view.substr_ref(1, 3);
    EXPECT_EQ(middle.data(), text.data() + 1);
    EXPECT_EQ(middle.size(), 3U);
    EXPECT_EQ(view.substr_ref(6).size(), 0U);
    EXPECT_EQ(view.substr_ref(6).data(), text.data() + 6);
    EXPECT_EQ(view.substr_ref(2).at(0), 'c');

    EXPECT_EQ(pqtest::messageOf([&] { (void)view.substr_ref(0, 6); }),
              "m_startPointeur != NULL && length < m_length && pos + length <= m_length should "
              "be true");
    EXPECT_NE(pqtest::messageOf([&] { (void)view.substr_ref(npos, 2); }), "(no exception)");
    EXPECT_EQ(pqtest::messageOf([&] { (void)view.substr_ref(7); }),
              "m_startPointeur != NULL && pos <= m_length should be true");
    EXPECT_EQ(pqtest::messageOf([&] { (void)view.at(6); }),
              "m_startPointeur != NULL && position < m_length should be true");

    const View empty;
    EXPECT_EQ(empty.substr_ref(0, 0).data(), nullptr);
    EXPECT_EQ(empty.substr_ref(0).data(), nullptr);
    EXPECT_EQ(pqtest::messageOf([&] { (void)empty.substr_ref(0, 1); }),
              "length == 0 should be true");
    EXPECT_EQ(pqtest::messageOf([&] { (void)empty.substr_ref(1); }), "pos == 0 should be true");
}

TEST(PQStringRefs, ANullViewMatchesTheEmptyTextOnlyWhenSecured) {
    // NOLINTBEGIN(readability-container-size-empty): the comparison is under test
    const kstring empty;
    EXPECT_TRUE(PQSecuredStringRef() == empty);
    EXPECT_TRUE(PQSecuredStringRef() != kstring("a"));
    const auto failure =
        pqtest::thrownBy<PQNullPointerException>([&] { (void)(PQStringRef() == empty); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->get_variable(), "m_startPointeur");
    EXPECT_EQ(failure->get_function(), "operator!=");
    EXPECT_EQ(failure->get_message(), "Null variable : m_startPointeur - ");
    // NOLINTEND(readability-container-size-empty)

    const PQSecuredString secret("s3cret");
    EXPECT_TRUE(PQSecuredStringRef(secret) == secret);
    EXPECT_TRUE(PQStringRef(secret) == kstring("s3cret"));
    EXPECT_TRUE(PQSecuredStringRef(secret).substr_ref(0, 2) < secret);
}

TEST(PQStringRefs, SecuredSearchCountsFromPosAndReadsLikeStrstr) {
    const kstring text = "abcdef";
    const PQSecuredStringRef secured(text.data(), text.size());
    const PQStringRef plain(text);
    EXPECT_EQ(secured.find("cd", 2), 0U);
    EXPECT_EQ(plain.find("cd", 2), 2U);
    EXPECT_EQ(secured.find("cd", 7), npos);
    EXPECT_EQ(plain.find("cd", 7), npos);
    const kstring needle = "de";
    EXPECT_EQ(plain.find(PQStringRef(needle)), 3U);

    // The first three bytes: a strstr match may run past the view, a
    // strictly bounded one may not, and the text is left as it was.
    const PQSecuredStringRef head(text.data(), 3);
    EXPECT_EQ(head.find("cde"), 2U);
    EXPECT_EQ(head.find(kstring("c")), 2U);
    EXPECT_EQ(head.find("d"), npos);
    EXPECT_EQ(head.find_ns("cde"), npos);
    EXPECT_EQ(head.find_ns("bc"), 1U);
    EXPECT_EQ(text, "abcdef");
    EXPECT_EQ(PQStringRef(text.data(), 3).find("cde"), npos);

    // strstr stops at a zero byte; the plain view reads every byte.
    const kstring zero("ab\0cd", 5);
    EXPECT_EQ(PQSecuredStringRef(zero.data(), 5).find("cd"), npos);
    EXPECT_EQ(PQStringRef(zero).find(kstring("cd")), 3U);
}

TEST(PQStringRefs, AnEmptySecuredNeedleIsFoundAtZeroAndTraced) {
    const pqtest::LogCapture capture;
    const kstring text = "abc";
    const PQSecuredStringRef full(text.data(), 3);
    const PQSecuredStringRef empty;
    EXPECT_EQ(full.find(empty), 0U);
    EXPECT_EQ(empty.find(empty), 0U);
    EXPECT_EQ(empty.find(full), npos);
    EXPECT_EQ(full.find(PQSecuredStringRef(text.data() + 1, 2)), 1U);

    const auto records = capture.records();
    ASSERT_EQ(records.size(), 2U);
    const std::string common = "Trace message from : \n\nfind\n\nPlease Create a case to TK after "
                               "having identified a reproducible scneario if possible. ";
    EXPECT_NE(records[0].text.find(common + "123456709876546"), std::string::npos);
    EXPECT_NE(records[1].text.find(common + "76498797987556476"), std::string::npos);
}

TEST(PQStringRefs, ReadsTheRealBytesOut) {
    const PQSecuredString secret("4111 1111");
    const PQSecuredStringRef view(secret);
    kstring logged = "card: ";
    view.appendTo_log(logged);
    EXPECT_EQ(logged, "card: 4111 1111");
    kstring kept;
    view.substr_ref(5).appendTo_secure(kept);
    EXPECT_EQ(kept, "1111");
    EXPECT_EQ(*PQStringRef(secret).getStringSource_cpy(), "4111 1111");
    EXPECT_EQ(*PQStringRef().getStringSource_cpy(), "");
}
