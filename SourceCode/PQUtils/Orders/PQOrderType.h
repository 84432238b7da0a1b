#pragma once

#include <span>

#include "PQDebug/Resources/PQConst.h"

namespace PQ_UTILS {

// The kinds of order that this side builds and sends: 46 names, table
// identifier 67. Each ROW(id, value) gives the enumerator PQOrderType_<id>
// and the name "<id>"; a ROW_NAMED row gives its name apart. Two names are
// kept as the other side knows them: an ordinary order (1) is named
// "TYPE_PQ_EX_BAS_EXCEPTION_TYPE", and 43 carries the prefix in its name.
// Values 10 and 33 have no name; there is no 0.
// clang-format off
#define PQ_ORDER_TYPE_ROWS(ROW, ROW_NAMED)                                                      \
    ROW_NAMED(ORDER_NORMAL, 1, "TYPE_PQ_EX_BAS_EXCEPTION_TYPE")                                 \
    ROW(ORDER_JSONORDER, 2)                                                                     \
    ROW(ORDER_NEXTSTEP, 3)                                                                      \
    ROW(ORDER_INFORMATIONCHOOSENORDER, 4)                                                       \
    ROW(ORDER_MISSINFINFORMATIONORDER, 5)                                                       \
    ROW(ORDER_FORWARDMESSAGE, 6)                                                                \
    ROW(ORDER_FILLORDER, 7)                                                                     \
    ROW(ORDER_DISPLAYTOOLBAR, 8)                                                                \
    ROW(ORDER_HIGHLIGHTELEMENTFORLEARNING, 9)                                                   \
    ROW(FORWARDED_ORDER, 11)                                                                    \
    ROW(ORDER_FROMPLUGIN, 12)                                                                   \
    ROW(ORDER_FROMAPPLICATION, 13)                                                              \
    ROW(ORDER_ASK_FOR_DATA_REFRESH, 14)                                                         \
    ROW(ORDER_ASK_FOR_HTTP_SERVER, 15)                                                          \
    ROW(ORDER_SIGNAL_LEARNING_DATA, 16)                                                         \
    ROW(ORDER_AUTH_LOGIN, 17)                                                                   \
    ROW(ORDER_AUTH_LOGOUT, 18)                                                                  \
    ROW(ORDER_AUTH_STATUS, 19)                                                                  \
    ROW(ORDER_COULDFILLORDER, 20)                                                               \
    ROW(ORDER_BANISH_URL_FOR_AUTOLOGIN, 21)                                                     \
    ROW(ORDER_REGISTER_URL_FOR_AUTOLOGIN, 22)                                                   \
    ROW(ORDER_REMOVE_BANISHED_URL_FOR_AUTOLOGIN, 23)                                            \
    ROW(ORDER_REMOVE_REGISTERED_URL_FOR_AUTOLOGIN, 24)                                          \
    ROW(ORDER_AUTOLOGINSTATUS, 25)                                                              \
    ROW(ORDER_AUTOFILLSTATUS, 26)                                                               \
    ROW(ORDER_SIGNALNEWLAUNCHOFVORDAINSTANCE, 27)                                               \
    ROW(ORDER_GET_LOGS_LEVELS, 28)                                                              \
    ROW(ORDER_ASK_FOR_CHANGE_LOG_LEVEL, 29)                                                     \
    ROW(ORDER_ASK_FOR_AUTOLOGIN_ON_WEBSITE, 30)                                                 \
    ROW(ORDER_SIGNAL_BASKET_INFORMATION, 31)                                                    \
    ROW(ORDER_AUTOFILLCHOICE, 32)                                                               \
    ROW(ORDER_BACKUP_GENERATED_PASSWORD, 34)                                                    \
    ROW(ORDER_ADDRESS_PARSING_VALIDATION, 35)                                                   \
    ROW(ORDER_DISABLE_TEMPORARY_AUTOLOGIN, 36)                                                  \
    ROW(ORDER_SIGNAL_USAGE, 37)                                                                 \
    ROW(ORDER_CHANGE_DEFAULT_AUTO_FILL_FORM, 38)                                                \
    ROW(ORDER_CHANGELANGUAGE, 39)                                                               \
    ROW(ORDER_ASK_FOR_LOAD_URL, 40)                                                             \
    ROW(ORDER_GET_MORE_COUPONS, 41)                                                             \
    ROW(ORDER_TAKESCREENSHOT, 42)                                                               \
    ROW_NAMED(IS_THIS_BULLSHIT_QUESTION_MARK, 43, "PQOrderType_IS_THIS_BULLSHIT_QUESTION_MARK") \
    ROW(ORDER_SET_COOKIES_FOR_COUPONS, 44)                                                      \
    ROW(ORDER_FILLMULTIPLEORDER, 45)                                                            \
    ROW(ORDER_DISPLAY_ONBOARDING_SUCCESS_OVERLAY, 46)                                           \
    ROW(ORDER_HIDE_ONBOARDING_SUCCESS_OVERLAY, 47)                                              \
    ROW(ORDER_SEARCH_QUERY, 48)
// clang-format on

enum PQOrderType : int {
#define PQ_ORDER_TYPE_ENUMERATOR(id, value) PQOrderType_##id = (value),
#define PQ_ORDER_TYPE_NAMED_ENUMERATOR(id, value, name) PQOrderType_##id = (value),
    PQ_ORDER_TYPE_ROWS(PQ_ORDER_TYPE_ENUMERATOR, PQ_ORDER_TYPE_NAMED_ENUMERATOR)
#undef PQ_ORDER_TYPE_NAMED_ENUMERATOR
#undef PQ_ORDER_TYPE_ENUMERATOR
};

// Fills the PQOrderType table when it is empty, then its reverse. Passed as the
// initialisation function to every lookup, so the table is also built on
// first use.
void initialize_public_PQOrderType();

// The rows of the table, in declaration order.
[[nodiscard]] std::span<const PQ_DEBUG::PQVocabularyRow<PQOrderType>> get_PQOrderTypeRows();

} // namespace PQ_UTILS
