// The password policy and the card checks on any text: the verdict agrees
// with the error bits, the details with the text, Luhn with a plain loop,
// and every brand has a name.

#include "PQFuzz.h"
#include "PQUtils/Utils/PQCreditCardNumberValidator.h"
#include "PQUtils/Utils/PQPasswordValidator.h"

namespace {

bool plainLuhn(const std::string& number) {
    int sum = 0;
    bool doubled = false;
    for (auto c = number.rbegin(); c != number.rend(); ++c, doubled = !doubled) {
        const int digit = *c >= '0' && *c <= '9' ? *c - '0' : 0;
        sum += doubled ? (2 * digit > 9 ? 2 * digit - 9 : 2 * digit) : digit;
    }
    return sum % 10 == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQCreditCardNumberValidator;
    using PQ_UTILS::PQPasswordValidator;
    pqfuzz::startLibrary();
    const std::string text = pqfuzz::textOf(data, size);
    unsigned int error = 0;
    const bool valid = PQPasswordValidator::isValidPassword(text, error);
    pqfuzz::check(valid == (error == 0), "valid exactly when no bit is set");
    pqfuzz::check((error & ~0x7FFC00U) == 0, "only the policy's bits");
    unsigned int details = 0;
    PQPasswordValidator::getPasswordDetails(text, details);
    pqfuzz::check((details == 0) == text.empty() && details < 32, "details describe the text");

    pqfuzz::check(PQCreditCardNumberValidator::isCardNumberValid(text) == plainLuhn(text),
                  "Luhn as a plain loop");
    const auto type = PQCreditCardNumberValidator::getCardType(text);
    pqfuzz::check(type >= 0 && type <= 7, "a known type");
    pqfuzz::check(
        PQCreditCardNumberValidator::getWstringFromCardType(type).starts_with("PAYMENT_TYPE_"),
        "every type has a name");
    return 0;
}
