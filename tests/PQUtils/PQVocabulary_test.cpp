#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"
#include "support/TestSupport.h"

using namespace PQ_UTILS;
using PQ_DEBUG::PQObjectType;

namespace {

struct PinnedRow {
    int value;
    std::string name;
};

// One vocabulary: its table identifier, initialiser and rows.
template <class T> struct Vocabulary {
    PQObjectType tableId;
    void (*initialize)();
    std::span<const PQ_DEBUG::PQVocabularyRow<T>> (*rows)();

    [[nodiscard]] std::string nameOf(int value) const {
        return *PQ_DEBUG::getWstringFromIntT<T>(tableId, static_cast<T>(value), initialize);
    }
    [[nodiscard]] int valueOf(const std::string& name) const {
        return PQ_DEBUG::getIntFromWstringT<T>(tableId, name, initialize);
    }

    // The table's size, every row of the source both ways, and the pinned
    // rows (written here by hand, so a mistyped row of the source shows).
    void check(std::size_t size, const std::vector<PinnedRow>& pinned) const {
        EXPECT_EQ(PQ_DEBUG::get_intToWstringMap<T>(tableId, initialize).size(), size);
        EXPECT_EQ(rows().size(), size);
        for (const auto& row : rows()) {
            SCOPED_TRACE(row.name);
            EXPECT_EQ(nameOf(row.value), row.name);
            EXPECT_EQ(valueOf(row.name), row.value);
        }
        for (const PinnedRow& row : pinned) {
            SCOPED_TRACE(row.name);
            EXPECT_EQ(nameOf(row.value), row.name);
            EXPECT_EQ(valueOf(row.name), row.value);
        }
    }
};

const Vocabulary<PQOrderType> kOrderTypes{PQ_DEBUG::PQObjectType_PQOrderType,
                                          &initialize_public_PQOrderType, &get_PQOrderTypeRows};
const Vocabulary<PQReceivedOrderType> kActions{PQ_DEBUG::PQObjectType_PQReceivedOrderType,
                                               &initialize_public_PQReceivedOrderType,
                                               &get_PQReceivedOrderTypeRows};
const Vocabulary<PQLoadingEventType> kEvents{PQ_DEBUG::PQObjectType_PQLoadingEventType,
                                             &initialize_public_PQLoadingEventType,
                                             &get_PQLoadingEventTypeRows};

} // namespace

TEST(PQVocabulary, OrderTypes) {
    kOrderTypes.check(46, {{1, "TYPE_PQ_EX_BAS_EXCEPTION_TYPE"},
                           {2, "ORDER_JSONORDER"},
                           {19, "ORDER_AUTH_STATUS"},
                           {27, "ORDER_SIGNALNEWLAUNCHOFVORDAINSTANCE"},
                           {43, "PQOrderType_IS_THIS_BULLSHIT_QUESTION_MARK"},
                           {48, "ORDER_SEARCH_QUERY"}});
    EXPECT_EQ(PQOrderType_ORDER_NORMAL, 1);
    EXPECT_EQ(PQOrderType_IS_THIS_BULLSHIT_QUESTION_MARK, 43);
}

TEST(PQVocabulary, ReceivedOrderTypes) {
    kActions.check(184, {{-1, "NO_TYPE"},
                         {303, "log"},
                         {87, "blurDescriptionsForAutoFill"},
                         {8701, "valueDescriptionsForAutoFill"},
                         {1461, "authenticationActualLogin"},
                         {255, "QuorvaneAPIRequest_getSearchData"},
                         {2984, "popover_askForShowPassword"},
                         {428, "watchPutputForLog"},
                         {505, "signalContextDebugInfo"}});
    EXPECT_EQ(PQReceivedOrderType_log, 303);
    // Declaration order is kept: 16 is declared before 15.
    const auto rows = get_PQReceivedOrderTypeRows();
    EXPECT_STREQ(rows[4].name, "askLoginPopup");
    EXPECT_STREQ(rows[5].name, "openApplicationVorda");
}

TEST(PQVocabulary, LoadingEventTypes) {
    kEvents.check(12, {{-1, "NO_TYPE"}, {0, "LOAD_STARTS"}, {10, "HOME_CLICKED"}});
    EXPECT_EQ(PQLoadingEventType_NO_TYPE, -1);
}

TEST(PQVocabulary, UnnamedValuesAndUnknownNamesFail) {
    const struct {
        std::string message;
        std::string expected;
    } rows[] = {
        {pqtest::messageOf([] { (void)kOrderTypes.nameOf(10); }),
         "Value not valid : '10' - type: 67"},
        {pqtest::messageOf([] { (void)kOrderTypes.nameOf(33); }),
         "Value not valid : '33' - type: 67"},
        {pqtest::messageOf([] { (void)kActions.nameOf(14); }), "Value not valid : '14' - type: 68"},
        {pqtest::messageOf([] { (void)kActions.valueOf("Log"); }),
         "Value not valid : 'Log'' - type: 68' tablesize=184"},
        {pqtest::messageOf([] { (void)kEvents.valueOf(""); }),
         "Value not valid : ''' - type: 66' tablesize=12"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.message, row.expected);
    }
}

TEST(PQVocabulary, InitialisingTwiceChangesNothing) {
    const auto& table = PQ_DEBUG::get_intToWstringMap_const<PQOrderType>(
        PQ_DEBUG::PQObjectType_PQOrderType, &initialize_public_PQOrderType);
    const auto copy = table;
    initialize_public_PQOrderType();
    initialize_public_PQOrderType();
    EXPECT_EQ(table, copy);
}
