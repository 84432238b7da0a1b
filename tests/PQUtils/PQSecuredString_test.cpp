#include "PQUtils/Utils/PQSecuredString.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQSecureMemory.h"
#include "support/WipeWatch.h"

using PQ_UTILS::kstring;
using PQ_UTILS::PQSecuredString;

using pqtest::WipeWatch;

TEST(PQSecuredString, HoldsACopyAndShowsTheRealContentToLogsToo) {
    kstring secret = "hunter2";
    const PQSecuredString held(secret);
    secret[0] = 'X';
    EXPECT_EQ(*held.getStringSource(), "hunter2");
    // The log form is the same object: masking is the caller's choice.
    EXPECT_EQ(held.getStringLog(), held.getStringSource());
    EXPECT_EQ(PQSecuredString::m_sStandardSecureString, "*******");
    EXPECT_TRUE(PQSecuredString::m_psEmptySecuredString.getStringSource()->empty());
}

TEST(PQSecuredString, CopiesAndAssignmentsAreDeep) {
    PQSecuredString original("card 4111");
    const PQSecuredString copy(original);
    EXPECT_NE(copy.getStringSource(), original.getStringSource());
    original = PQSecuredString("other");
    EXPECT_EQ(*copy.getStringSource(), "card 4111");
    EXPECT_EQ(*original.getStringSource(), "other");

    original = copy;
    const PQSecuredString& same = original;
    original = same; // assigning itself keeps its text
    EXPECT_EQ(*original.getStringSource(), "card 4111");
    EXPECT_NE(original.getStringSource(), copy.getStringSource());
}

TEST(PQSecuredString, ContentIsWipedBeforeItIsFreed) {
    const WipeWatch watch;
    const kstring longSecret(100, 's'); // on the heap
    const kstring pin = "pin";          // inside the string object
    {
        const PQSecuredString shortOne(pin);
        const PQSecuredString longOne(longSecret);
    }
    ASSERT_EQ(WipeWatch::seen().size(), 2U);
    EXPECT_TRUE(WipeWatch::allZero());
    EXPECT_GE(WipeWatch::seen()[0].size, longSecret.size());
    EXPECT_GE(WipeWatch::seen()[1].size, 3U);

    // Assignment lets the old content go: wiped too.
    PQSecuredString reused(longSecret);
    WipeWatch::seen().clear();
    reused = PQSecuredString("new");
    EXPECT_FALSE(WipeWatch::seen().empty());
    EXPECT_TRUE(WipeWatch::allZero());

    // A short text taken over leaves a copy in the caller's string: wiped.
    kstring taken = "1234";
    WipeWatch::seen().clear();
    const PQSecuredString holder(std::move(taken));
    ASSERT_EQ(WipeWatch::seen().size(), 1U);
    EXPECT_TRUE(WipeWatch::seen()[0].allZero);
    EXPECT_EQ(*holder.getStringSource(), "1234");
}

TEST(PQSecureMemory, WipeCoversTheWholeCapacityNotOnlyTheSize) {
    const WipeWatch watch;
    kstring text(64, 'k');
    text.resize(3); // 61 secret bytes remain past the end
    PQ_UTILS::secureWipe(text);
    EXPECT_TRUE(text.empty());
    ASSERT_EQ(WipeWatch::seen().size(), 1U);
    EXPECT_TRUE(WipeWatch::seen()[0].allZero);
    EXPECT_GE(WipeWatch::seen()[0].size, 64U);
}

// Each configuration builds the wipe it asked for (one builds the fallback
// for C libraries without a wipe of their own), and it zeros exactly the
// bytes it is given.
TEST(PQSecureMemory, TheConfiguredWipeZerosItsRange) {
    EXPECT_STREQ(PQ_UTILS::secureWipeMethod(), PQ_WIPE_BUILT);
    std::vector<char> bytes(100, 'x');
    PQ_UTILS::secureWipe(bytes.data() + 3, 37);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\0'), 37);
    EXPECT_EQ(bytes[2], 'x');
    EXPECT_EQ(bytes[3], '\0');
    EXPECT_EQ(bytes[39], '\0');
    EXPECT_EQ(bytes[40], 'x');
}
