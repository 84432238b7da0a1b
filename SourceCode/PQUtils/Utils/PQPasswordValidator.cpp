#include "PQUtils/Utils/PQPasswordValidator.h"

#include <array>
#include <bitset>
#include <climits>
#include <cstdint>

namespace PQ_UTILS {
namespace {

// How many bytes of each class a password holds.
struct ClassCounts {
    std::int64_t all = 0;
    std::int64_t digits = 0;
    std::int64_t letters = 0;
    std::int64_t lowerCase = 0;
    std::int64_t upperCase = 0;
    std::int64_t specials = 0;
};

enum ByteClass : std::uint8_t { kDigit, kLower, kUpper, kSpecial };

constexpr std::array<std::uint8_t, UCHAR_MAX + 1> kByteClasses = [] {
    std::array<std::uint8_t, UCHAR_MAX + 1> classes{};
    for (std::size_t c = 0; c < classes.size(); ++c) {
        classes[c] = c >= '0' && c <= '9'   ? kDigit
                     : c >= 'a' && c <= 'z' ? kLower
                     : c >= 'A' && c <= 'Z' ? kUpper
                                            : kSpecial;
    }
    return classes;
}();

ClassCounts countClasses(kstring const& password) {
    // A table rather than tests: no branch to mispredict on mixed text.
    std::array<std::int64_t, 4> perClass{};
    for (const char c : password) {
        ++perClass[kByteClasses[static_cast<unsigned char>(c)]];
    }
    ClassCounts counts;
    // The length is taken as a signed 32-bit number, as the product always
    // has; the class counts are wide enough for any text.
    counts.all = static_cast<std::int32_t>(password.size());
    counts.digits = perClass[kDigit];
    counts.lowerCase = perClass[kLower];
    counts.upperCase = perClass[kUpper];
    counts.specials = perClass[kSpecial];
    counts.letters = counts.lowerCase + counts.upperCase;
    return counts;
}

// One rule of the policy: broken when the count is below a minimum or above
// a maximum; skipped when the limit is negative.
struct Rule {
    const int* limit;
    std::int64_t ClassCounts::*count;
    bool isMaximum;
    unsigned int bit;
};

using V = PQPasswordValidator;

// In the order the rules are applied.
const std::array<Rule, 12> kRules{{
    {&V::m_minChar, &ClassCounts::all, false, V::kTooShort},
    {&V::m_maxChar, &ClassCounts::all, true, V::kTooLong},
    {&V::m_minNumber, &ClassCounts::digits, false, V::kTooFewDigits},
    {&V::m_maxNumber, &ClassCounts::digits, true, V::kTooManyDigits},
    {&V::m_minAlphaChar, &ClassCounts::letters, false, V::kTooFewLetters},
    {&V::m_maxAlphaChar, &ClassCounts::letters, true, V::kTooManyLetters},
    {&V::m_minLowerCaseAlphaChar, &ClassCounts::lowerCase, false, V::kTooFewLowerCase},
    {&V::m_maxLowerCaseAlphaChar, &ClassCounts::lowerCase, true, V::kTooManyLowerCase},
    {&V::m_minUpperCaseAlphaChar, &ClassCounts::upperCase, false, V::kTooFewUpperCase},
    {&V::m_maxUpperAlphaChar, &ClassCounts::upperCase, true, V::kTooManyUpperCase},
    {&V::m_minSpecialChar, &ClassCounts::specials, false, V::kTooFewSpecials},
    {&V::m_maxSpecialChar, &ClassCounts::specials, true, V::kTooManySpecials},
}};

bool holdsForbiddenChar(kstring const& password) {
    if (V::forbiddenChars.empty()) {
        return false;
    }
    // A set of the forbidden bytes makes the test one look-up per byte
    // however many bytes are forbidden.
    std::bitset<UCHAR_MAX + 1> forbidden;
    for (const char c : V::forbiddenChars) {
        forbidden.set(static_cast<unsigned char>(c));
    }
    for (const char c : password) {
        if (forbidden.test(static_cast<unsigned char>(c))) {
            return true;
        }
    }
    return false;
}

} // namespace

bool PQPasswordValidator::isValidPassword(kstring const& password, unsigned int& error) {
    error = 0;
    const ClassCounts counts = countClasses(password);
    for (const Rule& rule : kRules) {
        const int limit = *rule.limit;
        const std::int64_t count = counts.*rule.count;
        if (limit >= 0 && (rule.isMaximum ? limit < count : count < limit)) {
            error |= rule.bit;
        }
    }
    if (holdsForbiddenChar(password)) {
        error |= kForbiddenChar;
    }
    return error == 0;
}

void PQPasswordValidator::getPasswordDetails(kstring const& password, unsigned int& details) {
    details = 0;
    if (password.empty()) {
        return;
    }
    const ClassCounts counts = countClasses(password);
    const std::array<std::pair<bool, unsigned int>, 5> found{{
        {counts.letters > 0, kHasLetter},
        {counts.digits > 0, kHasDigit},
        {counts.lowerCase > 0, kHasLowerCase},
        {counts.upperCase > 0, kHasUpperCase},
        {counts.specials > 0, kHasSpecial},
    }};
    for (const auto& [present, bit] : found) {
        if (present) {
            details |= bit;
        }
    }
}

void PQPasswordValidator::getError(unsigned int& /*error*/) {}

} // namespace PQ_UTILS
