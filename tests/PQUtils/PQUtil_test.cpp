#include <string>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQUtil.h"

using PQ_UTILS::PQUtil;

TEST(PQUtil, ConstantsHoldTheirExactBytes) {
    PQUtil::initializePublic();
    PQUtil::initializePublic(); // assignment, not append: same values again
    const struct {
        const std::string& constant;
        std::string bytes;
    } rows[] = {
        {PQUtil::euro, "\xE2\x82\xAC"},
        {PQUtil::pound, "\xC2\xA3"},
        {PQUtil::yen, "\xC2\xA5"},
        {PQUtil::yuan, "\xC2\xA5"},
        {PQUtil::inr, "\xE2\x82\xB9"},
        {PQUtil::krw, "\xE2\x82\xA9"},
        {PQUtil::uah, "\xE2\x82\xB4"},
        {PQUtil::thb, "\xE0\xB8\xBF"},
        {PQUtil::pln, "z\xC5\x82"},
        {PQUtil::ruble, "\xD1\x80\xD1\x83\xD0\xB1."},
        {PQUtil::little_o_number, "\xC2\xB0"},
        {PQUtil::eacute, "\xC3\xA9"},
        {PQUtil::ecirc, "\xC3\xAA"},
        {PQUtil::egrave, "\xC3\xA8"},
        {PQUtil::agrave, "\xC3\xA0"},
        {PQUtil::ccdil, "\xC3\xA7"},
        {PQUtil::ugrave, "\xC3\xC9"},
        {PQUtil::special_space, "\x1F"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes);
        EXPECT_EQ(row.constant, row.bytes);
    }
    EXPECT_EQ(PQUtil::ruble.size(), 7U);
}
