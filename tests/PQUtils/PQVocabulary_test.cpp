#include <string>

#include <gtest/gtest.h>

#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"

using namespace PQ_UTILS;
using PQ_DEBUG::PQObjectType;

namespace {

// One vocabulary: its table identifier, initialiser and rows.
template <class T> struct Vocabulary {
    PQObjectType tableId;
    void (*initialize)();
    std::span<const PQ_DEBUG::PQVocabularyRow<T>> (*rows)();

    [[nodiscard]] std::string nameOf(T value) const {
        return *PQ_DEBUG::getWstringFromIntT<T>(tableId, value, initialize);
    }
    [[nodiscard]] T valueOf(const std::string& name) const {
        return PQ_DEBUG::getIntFromWstringT<T>(tableId, name, initialize);
    }
    [[nodiscard]] std::size_t size() const {
        return PQ_DEBUG::get_intToWstringMap<T>(tableId, initialize).size();
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

// Every row resolves both ways, and the table holds nothing else.
template <class T> void expectWholeTableBothWays(const Vocabulary<T>& vocabulary) {
    for (const auto& row : vocabulary.rows()) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(vocabulary.nameOf(row.value), row.name);
        EXPECT_EQ(vocabulary.valueOf(row.name), row.value);
    }
    EXPECT_EQ(vocabulary.size(), vocabulary.rows().size());
}

template <class Function> std::string messageOf(Function&& call) {
    try {
        call();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "(no exception)";
}

} // namespace

TEST(PQVocabulary, TablesHaveTheirSizesAndEveryRowBothWays) {
    EXPECT_EQ(kOrderTypes.size(), 46U);
    EXPECT_EQ(kActions.size(), 184U);
    EXPECT_EQ(kEvents.size(), 12U);
    expectWholeTableBothWays(kOrderTypes);
    expectWholeTableBothWays(kActions);
    expectWholeTableBothWays(kEvents);
}

TEST(PQVocabulary, SampleRows) {
    const struct {
        PQOrderType value;
        const char* name;
    } orderTypes[] = {
        {PQOrderType_ORDER_NORMAL, "TYPE_PQ_EX_BAS_EXCEPTION_TYPE"},
        {PQOrderType_ORDER_JSONORDER, "ORDER_JSONORDER"},
        {PQOrderType_ORDER_AUTH_STATUS, "ORDER_AUTH_STATUS"},
        {PQOrderType_IS_THIS_BULLSHIT_QUESTION_MARK, "PQOrderType_IS_THIS_BULLSHIT_QUESTION_MARK"},
        {PQOrderType_ORDER_SIGNALNEWLAUNCHOFVORDAINSTANCE, "ORDER_SIGNALNEWLAUNCHOFVORDAINSTANCE"},
        {PQOrderType_ORDER_SEARCH_QUERY, "ORDER_SEARCH_QUERY"},
    };
    for (const auto& row : orderTypes) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(kOrderTypes.nameOf(row.value), row.name);
        EXPECT_EQ(kOrderTypes.valueOf(row.name), row.value);
    }
    EXPECT_EQ(PQOrderType_ORDER_NORMAL, 1);
    EXPECT_EQ(PQOrderType_IS_THIS_BULLSHIT_QUESTION_MARK, 43);
    EXPECT_EQ(PQOrderType_ORDER_SEARCH_QUERY, 48);

    const struct {
        PQReceivedOrderType value;
        int number;
        const char* name;
    } actions[] = {
        {PQReceivedOrderType_NO_TYPE, -1, "NO_TYPE"},
        {PQReceivedOrderType_log, 303, "log"},
        {PQReceivedOrderType_blurDescriptionsForAutoFill, 87, "blurDescriptionsForAutoFill"},
        {PQReceivedOrderType_valueDescriptionsForAutoFill, 8701, "valueDescriptionsForAutoFill"},
        {PQReceivedOrderType_authenticationActualLogin, 1461, "authenticationActualLogin"},
        {PQReceivedOrderType_QuorvaneAPIRequest_getSearchData, 255,
         "QuorvaneAPIRequest_getSearchData"},
        {PQReceivedOrderType_popover_askForShowPassword, 2984, "popover_askForShowPassword"},
        {PQReceivedOrderType_watchPutputForLog, 428, "watchPutputForLog"},
        {PQReceivedOrderType_signalContextDebugInfo, 505, "signalContextDebugInfo"},
    };
    for (const auto& row : actions) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(static_cast<int>(row.value), row.number);
        EXPECT_EQ(kActions.nameOf(row.value), row.name);
        EXPECT_EQ(kActions.valueOf(row.name), row.value);
    }

    EXPECT_EQ(kEvents.nameOf(PQLoadingEventType_NO_TYPE), "NO_TYPE");
    EXPECT_EQ(static_cast<int>(PQLoadingEventType_NO_TYPE), -1);
    EXPECT_EQ(kEvents.valueOf("HOME_CLICKED"), 10);
}

TEST(PQVocabulary, DeclarationOrderIsKept) {
    const auto rows = get_PQReceivedOrderTypeRows();
    ASSERT_EQ(rows.size(), 184U);
    EXPECT_STREQ(rows.front().name, "NO_TYPE");
    EXPECT_STREQ(rows[4].name, "askLoginPopup"); // 16 is declared before 15
    EXPECT_STREQ(rows[5].name, "openApplicationVorda");
    EXPECT_STREQ(rows.back().name, "signalContextDebugInfo");
}

TEST(PQVocabulary, UnnamedValuesAndUnknownNamesFail) {
    EXPECT_EQ(messageOf([] { (void)kOrderTypes.nameOf(static_cast<PQOrderType>(10)); }),
              "Value not valid : '10' - type: 67");
    EXPECT_EQ(messageOf([] { (void)kOrderTypes.nameOf(static_cast<PQOrderType>(33)); }),
              "Value not valid : '33' - type: 67");
    EXPECT_EQ(messageOf([] { (void)kActions.nameOf(static_cast<PQReceivedOrderType>(14)); }),
              "Value not valid : '14' - type: 68");
    EXPECT_EQ(messageOf([] { (void)kActions.valueOf("Log"); }),
              "Value not valid : 'Log'' - type: 68' tablesize=184");
    EXPECT_EQ(messageOf([] { (void)kEvents.valueOf(""); }),
              "Value not valid : ''' - type: 66' tablesize=12");
}

TEST(PQVocabulary, InitialisingTwiceChangesNothing) {
    const auto& table = PQ_DEBUG::get_intToWstringMap_const<PQOrderType>(
        PQ_DEBUG::PQObjectType_PQOrderType, &initialize_public_PQOrderType);
    const auto copy = table;
    initialize_public_PQOrderType();
    initialize_public_PQOrderType();
    EXPECT_EQ(table, copy);
}
