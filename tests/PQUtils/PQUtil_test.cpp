#include "PQUtils/Utils/PQUtil.h"

#include <gtest/gtest.h>

using PQ_UTILS::PQUtil;

TEST(PQUtil, ConstantsHoldTheirExactBytes) {
    PQUtil::initializePublic();
    PQUtil::initializePublic(); // assigned, not appended: the same values again
    EXPECT_EQ(PQUtil::euro, "\xE2\x82\xAC");
    EXPECT_EQ(PQUtil::yuan, PQUtil::yen);
    EXPECT_EQ(PQUtil::pln, "z\xC5\x82");
    EXPECT_EQ(PQUtil::ruble, "\xD1\x80\xD1\x83\xD0\xB1.");
    EXPECT_EQ(PQUtil::ugrave, "\xC3\xC9"); // not the UTF-8 of U+00F9, on purpose
    EXPECT_EQ(PQUtil::special_space, "\x1F");
    EXPECT_EQ(PQUtil::thb, "\xE0\xB8\xBF");
}
