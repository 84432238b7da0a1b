#include "PQUtils/Utils/PQSecuredString.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQSecureMemory.h"

using PQ_UTILS::kstring;
using PQ_UTILS::PQSecuredString;

namespace {

// What the wipe observer saw: one entry per wiped text, true when every
// byte of it was zero, with its size.
struct WipeSeen {
    bool allZero;
    std::size_t size;
};
std::vector<WipeSeen>& wipesSeen() {
    static std::vector<WipeSeen> seen;
    return seen;
}
void recordWipe(const char* data, std::size_t size) {
    wipesSeen().push_back({std::all_of(data, data + size, [](char c) { return c == 0; }), size});
}

// Observes the wipes for the lifetime of the object.
class WipeWatch {
public:
    WipeWatch() {
        wipesSeen().clear();
        PQ_UTILS::setWipeObserver(&recordWipe);
    }
    WipeWatch(const WipeWatch&) = delete;
    WipeWatch& operator=(const WipeWatch&) = delete;
    ~WipeWatch() { PQ_UTILS::setWipeObserver(nullptr); }
};

} // namespace

TEST(PQSecuredString, HoldsACopyAndShowsTheRealContentToLogsToo) {
    kstring secret = "hunter2";
    const PQSecuredString held(secret);
    secret[0] = 'X';
    EXPECT_EQ(*held.getStringSource(), "hunter2");
    // The log form is the same object: masking is the caller's choice.
    EXPECT_EQ(held.getStringLog(), held.getStringSource());
    EXPECT_EQ(PQSecuredString::m_sStandardSecureString, "*******");
    EXPECT_TRUE(PQSecuredString::m_psEmptySecuredString.getStringSource()->empty());
    EXPECT_EQ(held.get_className_nonStatic(), "PQSecuredString");
}

TEST(PQSecuredString, CopiesAreDeep) {
    PQSecuredString original("card 4111");
    const PQSecuredString copy(original);
    EXPECT_NE(copy.getStringSource(), original.getStringSource());
    EXPECT_EQ(*copy.getStringSource(), "card 4111");
    original = PQSecuredString("other");
    EXPECT_EQ(*copy.getStringSource(), "card 4111");
    EXPECT_EQ(*original.getStringSource(), "other");
}

TEST(PQSecuredString, ContentIsWipedBeforeItIsFreed) {
    const WipeWatch watch;
    const kstring longSecret(100, 's'); // on the heap
    const kstring pin = "pin";          // inside the string object
    {
        const PQSecuredString shortOne(pin);
        const PQSecuredString longOne(longSecret);
    }
    ASSERT_EQ(wipesSeen().size(), 2U);
    for (const WipeSeen& wipe : wipesSeen()) {
        EXPECT_TRUE(wipe.allZero);
    }
    EXPECT_GE(wipesSeen()[0].size, longSecret.size());
    EXPECT_GE(wipesSeen()[1].size, 3U);

    // Assignment lets the old content go: wiped too.
    PQSecuredString reused(longSecret);
    wipesSeen().clear();
    reused = PQSecuredString("new");
    EXPECT_FALSE(wipesSeen().empty());
    EXPECT_TRUE(std::all_of(wipesSeen().begin(), wipesSeen().end(),
                            [](const WipeSeen& wipe) { return wipe.allZero; }));

    // A short text taken over leaves a copy in the caller's string: wiped.
    kstring taken = "1234";
    wipesSeen().clear();
    const PQSecuredString holder(std::move(taken));
    ASSERT_EQ(wipesSeen().size(), 1U);
    EXPECT_TRUE(wipesSeen()[0].allZero);
    EXPECT_EQ(*holder.getStringSource(), "1234");
}

TEST(PQSecureMemory, WipeCoversTheWholeCapacityNotOnlyTheSize) {
    const WipeWatch watch;
    kstring text(64, 'k');
    text.resize(3); // 61 secret bytes remain past the end
    PQ_UTILS::secureWipe(text);
    EXPECT_TRUE(text.empty());
    ASSERT_EQ(wipesSeen().size(), 1U);
    EXPECT_TRUE(wipesSeen()[0].allZero);
    EXPECT_GE(wipesSeen()[0].size, 64U);
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

TEST(PQSecuredString, AssignmentCopiesTheText) {
    const PQSecuredString source(kstring("secret"));
    PQSecuredString assigned(kstring("old"));
    assigned = source;
    const PQSecuredString& same = assigned;
    assigned = same; // assigning itself keeps its text
    EXPECT_EQ(*assigned.getStringSource(), "secret");
    EXPECT_NE(assigned.getStringSource(), source.getStringSource());
}
