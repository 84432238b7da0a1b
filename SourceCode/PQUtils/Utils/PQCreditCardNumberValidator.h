#pragma once

#include <cstdint>
#include <vector>

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

struct PQCreditCardTypeInfo;

// Payment-card numbers: the Luhn checksum, the brand told by a fixed table
// of leading digits and lengths, and the brand names of the payment data.
// The table is built on first use, without a lock: call getCardType (or
// initializeCardTypes) once before using it from several threads.
class PQCreditCardNumberValidator : public PQIdentifiable {
public:
    PQ_IDENTITY(PQCreditCardNumberValidator)

    enum CREDITCARD_TYPE : std::int32_t {
        CREDITCARD_NONE = 0,
        CREDITCARD_MASTERCARD = 1,
        CREDITCARD_VISA = 2,
        CREDITCARD_AMEX = 3,
        CREDITCARD_DISCOVER = 4,
        CREDITCARD_DINERSCLUB = 5,
        CREDITCARD_JCB = 6,
        CREDITCARD_UNNAMED = 7, // in the table, but without a brand name
    };

    // The Luhn checksum over the characters as given: nothing is stripped,
    // a non-digit counts 0 and takes a position. "" is valid; callers test
    // emptiness themselves. No allocation.
    [[nodiscard]] static bool isCardNumberValid(kstring const& number);
    // The brand: the first record that matches length and prefix, else the
    // first that matches the prefix alone, else the first of the same
    // length (any 16 characters name VISA), else CREDITCARD_NONE.
    [[nodiscard]] static CREDITCARD_TYPE getCardType(kstring const& number);
    // Builds the table once. The flag is set first: a failure part way
    // leaves a partial table that is never rebuilt.
    static void initializeCardTypes();
    // The type of a brand name ("PAYMENT_TYPE_JCB" -> CREDITCARD_JCB), exact
    // and case-sensitive; CREDITCARD_NONE for any other text.
    [[nodiscard]] static CREDITCARD_TYPE getCardTypeFromWstring(kstring const& name);
    // The brand name of a type; every type without one, CREDITCARD_NONE and
    // CREDITCARD_UNNAMED included, gives "PAYMENT_TYPE_VISA": a card of
    // unknown brand is stored as a VISA card.
    [[nodiscard]] static kstring getWstringFromCardType(CREDITCARD_TYPE type);

    static bool m_sInitialized;
    // In the order of search.
    static std::vector<PQCreditCardTypeInfo> m_sCardTypeInfos;
};

// One kind of card: its exact length and the leading digits that name it.
// A brand with several lengths has one record per length.
struct PQCreditCardTypeInfo {
    std::int32_t length = 0;
    PQCreditCardNumberValidator::CREDITCARD_TYPE type =
        PQCreditCardNumberValidator::CREDITCARD_NONE;
    std::vector<kstring> prefixes;

    // The number has this length and begins with one of the prefixes.
    [[nodiscard]] bool match(kstring const& number) const;
    // The number begins with one of the prefixes, compared as text.
    [[nodiscard]] bool matchPrefix(kstring const& number) const;
};

} // namespace PQ_UTILS
