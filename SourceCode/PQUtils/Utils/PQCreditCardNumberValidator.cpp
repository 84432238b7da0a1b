#include "PQUtils/Utils/PQCreditCardNumberValidator.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

// The card validator reports from the source file it shares with PQUtil.
constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQUtil";

using Validator = PQCreditCardNumberValidator;

// What the debug library's fromWstringToInt reads from a one-character text:
// the digit's value, 0 for any other character.
constexpr std::size_t digitValue(char c) {
    const auto digit = static_cast<std::size_t>(static_cast<unsigned char>(c)) - '0';
    return digit < 10 ? digit : 0;
}

// The sum of the decimal digits of twice a digit.
constexpr std::array<std::size_t, 10> kDoubledDigitSum{0, 2, 4, 6, 8, 1, 3, 5, 7, 9};

struct BrandName {
    std::string_view name;
    Validator::CREDITCARD_TYPE type;
};

// In the order names are compared.
constexpr std::array<BrandName, 6> kBrandNames{{
    {"PAYMENT_TYPE_MASTERCARD", Validator::CREDITCARD_MASTERCARD},
    {"PAYMENT_TYPE_VISA", Validator::CREDITCARD_VISA},
    {"PAYMENT_TYPE_AMEX", Validator::CREDITCARD_AMEX},
    {"PAYMENT_TYPE_DISCOVER", Validator::CREDITCARD_DISCOVER},
    {"PAYMENT_TYPE_JCB", Validator::CREDITCARD_JCB},
    {"PAYMENT_TYPE_DINERSCLUB", Validator::CREDITCARD_DINERSCLUB},
}};

const BrandName* nameRowOf(Validator::CREDITCARD_TYPE type) {
    const auto* const found = std::find_if(kBrandNames.begin(), kBrandNames.end(),
                                           [&](const BrandName& row) { return row.type == type; });
    return found == kBrandNames.end() ? nullptr : found;
}

} // namespace

bool PQCreditCardNumberValidator::m_sInitialized = false;
std::vector<PQCreditCardTypeInfo> PQCreditCardNumberValidator::m_sCardTypeInfos;

bool PQCreditCardTypeInfo::match(kstring const& number) const try {
    return std::cmp_equal(number.size(), length) && matchPrefix(number);
}
PQ_CATCH_AND_TREAT

bool PQCreditCardTypeInfo::matchPrefix(kstring const& number) const try {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](const kstring& prefix) { return number.starts_with(prefix); });
}
PQ_CATCH_AND_TREAT

bool PQCreditCardNumberValidator::isCardNumberValid(kstring const& number) try {
    // From the last character back: one as it is, the next doubled.
    std::size_t sum = 0;
    std::size_t i = number.size();
    for (; i >= 2; i -= 2) {
        sum += digitValue(number[i - 1]) + kDoubledDigitSum[digitValue(number[i - 2])];
    }
    if (i == 1) {
        sum += digitValue(number[0]);
    }
    return sum % 10 == 0;
}
PQ_CATCH_AND_TREAT

PQCreditCardNumberValidator::CREDITCARD_TYPE
PQCreditCardNumberValidator::getCardType(kstring const& number) try {
    initializeCardTypes();
    using Pass = bool (*)(const PQCreditCardTypeInfo&, kstring const&);
    const std::array<Pass, 3> passes{
        [](const PQCreditCardTypeInfo& info, kstring const& n) { return info.match(n); },
        [](const PQCreditCardTypeInfo& info, kstring const& n) { return info.matchPrefix(n); },
        [](const PQCreditCardTypeInfo& info, kstring const& n) {
            return std::cmp_equal(n.size(), info.length);
        },
    };
    for (const Pass pass : passes) {
        for (const PQCreditCardTypeInfo& info : m_sCardTypeInfos) {
            if (pass(info, number)) {
                return info.type;
            }
        }
    }
    return CREDITCARD_NONE;
}
PQ_CATCH_AND_TREAT

void PQCreditCardNumberValidator::initializeCardTypes() try {
    if (m_sInitialized) {
        return;
    }
    m_sInitialized = true;
    // In the order of search: "3" (JCB, 16) comes after the AMEX and
    // DINERSCLUB prefixes that also begin with 3.
    const std::array<PQCreditCardTypeInfo, 9> table{{
        {16, CREDITCARD_VISA, {"4"}},
        {13, CREDITCARD_VISA, {"4"}},
        {16, CREDITCARD_MASTERCARD, {"51", "52", "53", "54", "55"}},
        {15, CREDITCARD_AMEX, {"34", "37"}},
        {16, CREDITCARD_DISCOVER, {"6011"}},
        {14, CREDITCARD_DINERSCLUB, {"300", "301", "302", "303", "304", "305", "36", "38"}},
        {16, CREDITCARD_JCB, {"3"}},
        {15, CREDITCARD_JCB, {"2131", "1800"}},
        {15, CREDITCARD_UNNAMED, {"2014", "2149"}},
    }};
    for (const PQCreditCardTypeInfo& info : table) {
        m_sCardTypeInfos.push_back(info);
    }
}
PQ_CATCH_AND_TREAT

PQCreditCardNumberValidator::CREDITCARD_TYPE
PQCreditCardNumberValidator::getCardTypeFromWstring(kstring const& name) try {
    const auto* const found = std::find_if(kBrandNames.begin(), kBrandNames.end(),
                                           [&](const BrandName& row) { return row.name == name; });
    return found == kBrandNames.end() ? CREDITCARD_NONE : found->type;
}
PQ_CATCH_AND_TREAT

kstring PQCreditCardNumberValidator::getWstringFromCardType(CREDITCARD_TYPE type) try {
    const BrandName* const row = nameRowOf(type);
    return kstring((row != nullptr ? row : nameRowOf(CREDITCARD_VISA))->name);
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
