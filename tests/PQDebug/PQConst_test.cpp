#include "PQDebug/Resources/PQConst.h"

#include <array>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/TestSupport.h"

using namespace PQ_DEBUG;

namespace {

enum Colour : int { Colour_red = 1, Colour_green = 2, Colour_blue = -3 };

constexpr auto kColourTable = static_cast<PQObjectType>(9001);
constexpr auto kEmptyTable = static_cast<PQObjectType>(9002);
constexpr auto kNoInitTable = static_cast<PQObjectType>(9003);

constexpr std::array<PQVocabularyRow<Colour>, 3> kColourRows{
    {{Colour_red, "red"}, {Colour_green, "green"}, {Colour_blue, "blue"}}};

int s_colourFills = 0;

void initializeColours() {
    ++s_colourFills;
    fillNameTable<Colour>(kColourTable, &initializeColours, kColourRows);
}

void initializeNothing() {}

} // namespace

TEST(PQConst, LookupsBuildTheTableOnceAndWorkBothWays) {
    const int before = s_colourFills;
    EXPECT_EQ(getIntFromWstringT<Colour>(kColourTable, "blue", &initializeColours), Colour_blue);
    EXPECT_EQ(*getWstringFromIntT<Colour>(kColourTable, Colour_green, &initializeColours), "green");
    EXPECT_EQ(get_intToWstringMap_const<Colour>(kColourTable, &initializeColours).size(), 3U);
    // The name lookup came first: its table was registered empty, the
    // initialiser asked for the value table (calling itself once more), filled
    // it and reversed it. No further call after that.
    EXPECT_LE(s_colourFills - before, 2);
    const int settled = s_colourFills;
    (void)getIntFromWstringT<Colour>(kColourTable, "red", &initializeColours);
    EXPECT_EQ(s_colourFills, settled);
}

TEST(PQConst, UnknownValueAndNameMessages) {
    EXPECT_EQ(pqtest::messageOf([] {
                  (void)getWstringFromIntT<Colour>(kColourTable, static_cast<Colour>(10),
                                                   &initializeColours);
              }),
              "Value not valid : '10' - type: 9001");
    EXPECT_EQ(pqtest::messageOf([] {
                  (void)getIntFromWstringT<Colour>(kColourTable, "Red", &initializeColours);
              }),
              "Value not valid : 'Red'' - type: 9001' tablesize=3");
    const auto e = pqtest::thrownBy<PQException>(
        [] { (void)getIntFromWstringT<Colour>(kColourTable, "Nothing", &initializeColours); });
    ASSERT_TRUE(e.has_value());
    EXPECT_EQ(e->get_exceptionType(), 1008);
    EXPECT_EQ(e->get_file(), "../../SourceCode/PQDebug/Resources/PQConst.h");
    EXPECT_EQ(e->get_function(), "getIntFromWstringT");
    EXPECT_EQ(e->get_line(), 330);
    EXPECT_EQ(e->get_logType(), 1005);
    EXPECT_EQ(e->get_level(), PQException::get_PQ_EX_ANORMAL());
}

TEST(PQConst, MissingOrFailingInitialiserKeepsTheEmptyTable) {
    EXPECT_EQ(pqtest::messageOf([] { (void)get_intToWstringMap<Colour>(kNoInitTable, nullptr); }),
              "initializationFunction == NULL");
    EXPECT_EQ(pqtest::messageOf(
                  [] { (void)get_wstringToIntMap<Colour>(kEmptyTable, &initializeNothing); }),
              "newMap->empty()");
    // Both stay registered, empty: the next lookup finds them and reports
    // the unknown value instead.
    EXPECT_NE(PQAdvancedConst::get_intToWstringMap_g().at(kNoInitTable).get(), nullptr);
    EXPECT_TRUE(get_intToWstringMap<Colour>(kNoInitTable, nullptr).empty());
    EXPECT_THROW((void)getIntFromWstringT<Colour>(kEmptyTable, "red", &initializeNothing),
                 PQException);
}

TEST(PQConst, CleanedTablesAreRebuiltOnTheirNextUse) {
    (void)getWstringFromIntT<Colour>(kColourTable, Colour_red, &initializeColours);
    cleanMaps<Colour>(kColourTable);
    EXPECT_EQ(PQAdvancedConst::get_intToWstringMap_g().at(kColourTable).get(), nullptr);
    EXPECT_EQ(PQAdvancedConst::get_wstringToIntMap_g().at(kColourTable).get(), nullptr);

    EXPECT_EQ(getIntFromWstringT<Colour>(kColourTable, "green", &initializeColours), Colour_green);
    EXPECT_EQ(*getWstringFromIntT<Colour>(kColourTable, Colour_blue, &initializeColours), "blue");

    cleanMaps<Colour>(static_cast<PQObjectType>(9999)); // never built: nothing happens
    EXPECT_EQ(PQAdvancedConst::get_intToWstringMap_g().count(static_cast<PQObjectType>(9999)), 0U);
}

TEST(PQConst, ReverseMapIsTheExactInverse) {
    auto& values = get_intToWstringMap<Colour>(kColourTable, &initializeColours);
    values[static_cast<Colour>(4)] = "violet";
    PQAdvancedConst::reverseMap(kColourTable);
    const auto& names = get_wstringToIntMap<Colour>(kColourTable, &initializeColours);
    ASSERT_EQ(names.size(), values.size());
    for (const auto& [value, name] : values) {
        EXPECT_EQ(names.at(name), value) << name;
    }
    values.erase(static_cast<Colour>(4));
    PQAdvancedConst::reverseMap(kColourTable);
    EXPECT_EQ(names.count("violet"), 0U);

    EXPECT_THROW(PQAdvancedConst::reverseMap(static_cast<PQObjectType>(9998)), std::logic_error);
}

TEST(PQConst, ATableIsReadOnlyAsItsOwnType) {
    (void)get_intToWstringMap<Colour>(kColourTable, &initializeColours);
    EXPECT_THROW((void)get_intToWstringMap<PQObjectType>(kColourTable, &initializeColours),
                 std::logic_error);
}

TEST(PQConst, ObjectTypeTableHoldsTheFifteenClasses) {
    const auto& names = get_wstringToIntMap<PQObjectType>(PQObjectType_PQObjectType,
                                                          &initialize_public_PQObjectType);
    EXPECT_EQ(names.size(), 15U);
    EXPECT_EQ(names.at("PQOrder_p"), PQObjectType_PQOrder_p);
}
