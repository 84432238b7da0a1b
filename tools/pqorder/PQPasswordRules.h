#pragma once

// The limits of the password policy with the words that name a breach of
// each, the classes of byte a password can hold with their names, and the
// words of a card's brand: the words that `pqorder password` and `pqorder
// card` print and the JavaScript package returns.

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "PQOrderTool.h"
#include "PQUtils/Utils/PQCreditCardNumberValidator.h"

namespace pqorder {

// A limit of the policy: its option name ("min-length"), the tool's field,
// the library's member, and the bit and words of its breach.
struct PasswordLimit {
    const char* name;
    std::optional<int> PasswordPolicy::*option;
    int* member;
    unsigned int bit;
    bool isMaximum;
    const char* one; // what is counted, one and many
    const char* many;
};

// In the order in which a report lists the breaches.
[[nodiscard]] const std::array<PasswordLimit, 12>& passwordLimits();

// The words of a forbidden byte, a breach without a limit.
constexpr const char* kForbiddenCharWords = "a forbidden character";

// Sets every limit (and the forbidden bytes) that `policy` gives; the others
// keep their values.
void applyPolicy(const PasswordPolicy& policy);

// The policy as the library holds it now, every limit and the forbidden
// bytes given: applying it puts the library back as it is.
[[nodiscard]] PasswordPolicy currentPolicy();

// The words of each breach in `error` (the bits of isValidPassword), in
// report order: "fewer than 8 characters", "no digit", "more than 1 letter".
[[nodiscard]] std::vector<std::string> breachesOf(unsigned int error);

// The names of the classes in `details` (the bits of getPasswordDetails):
// "letters", "digits", "lower-case", "upper-case", "special".
[[nodiscard]] std::vector<const char*> classesOf(unsigned int details);

// The brand of a card type in words: its name ("PAYMENT_TYPE_VISA"), and for
// a type without one, "none" or "unnamed" with the name it is stored under.
[[nodiscard]] std::string brandWords(PQ_UTILS::PQCreditCardNumberValidator::CREDITCARD_TYPE type);

} // namespace pqorder
