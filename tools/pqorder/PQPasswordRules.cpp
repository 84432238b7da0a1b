#include "PQPasswordRules.h"

#include "PQUtils/Utils/PQPasswordValidator.h"

namespace pqorder {
namespace {

using Validator = PQ_UTILS::PQPasswordValidator;

const std::array<PasswordLimit, 12> kLimits{{
    {"min-length", &PasswordPolicy::minLength, &Validator::m_minChar, Validator::kTooShort, false,
     "character", "characters"},
    {"max-length", &PasswordPolicy::maxLength, &Validator::m_maxChar, Validator::kTooLong, true,
     "character", "characters"},
    {"min-digits", &PasswordPolicy::minDigits, &Validator::m_minNumber, Validator::kTooFewDigits,
     false, "digit", "digits"},
    {"max-digits", &PasswordPolicy::maxDigits, &Validator::m_maxNumber, Validator::kTooManyDigits,
     true, "digit", "digits"},
    {"min-letters", &PasswordPolicy::minLetters, &Validator::m_minAlphaChar,
     Validator::kTooFewLetters, false, "letter", "letters"},
    {"max-letters", &PasswordPolicy::maxLetters, &Validator::m_maxAlphaChar,
     Validator::kTooManyLetters, true, "letter", "letters"},
    {"min-special", &PasswordPolicy::minSpecial, &Validator::m_minSpecialChar,
     Validator::kTooFewSpecials, false, "special character", "special characters"},
    {"max-special", &PasswordPolicy::maxSpecial, &Validator::m_maxSpecialChar,
     Validator::kTooManySpecials, true, "special character", "special characters"},
    {"min-lower", &PasswordPolicy::minLower, &Validator::m_minLowerCaseAlphaChar,
     Validator::kTooFewLowerCase, false, "lower-case letter", "lower-case letters"},
    {"max-lower", &PasswordPolicy::maxLower, &Validator::m_maxLowerCaseAlphaChar,
     Validator::kTooManyLowerCase, true, "lower-case letter", "lower-case letters"},
    {"min-upper", &PasswordPolicy::minUpper, &Validator::m_minUpperCaseAlphaChar,
     Validator::kTooFewUpperCase, false, "upper-case letter", "upper-case letters"},
    {"max-upper", &PasswordPolicy::maxUpper, &Validator::m_maxUpperAlphaChar,
     Validator::kTooManyUpperCase, true, "upper-case letter", "upper-case letters"},
}};

constexpr std::array<std::pair<unsigned int, const char*>, 5> kClasses{{
    {Validator::kHasLetter, "letters"},
    {Validator::kHasDigit, "digits"},
    {Validator::kHasLowerCase, "lower-case"},
    {Validator::kHasUpperCase, "upper-case"},
    {Validator::kHasSpecial, "special"},
}};

// "fewer than 8 characters", "no digit", "more than 1 letter".
std::string breachOf(const PasswordLimit& limit) {
    const int value = *limit.member;
    if (!limit.isMaximum && value == 1) {
        return std::string("no ") + limit.one;
    }
    return std::string(limit.isMaximum ? "more than " : "fewer than ") + std::to_string(value) +
           ' ' + (value == 1 ? limit.one : limit.many);
}

} // namespace

const std::array<PasswordLimit, 12>& passwordLimits() { return kLimits; }

void applyPolicy(const PasswordPolicy& policy) {
    for (const PasswordLimit& limit : kLimits) {
        if (const std::optional<int>& value = policy.*limit.option) {
            *limit.member = *value;
        }
    }
    if (policy.forbid) {
        Validator::set_forbiddenChars({policy.forbid->begin(), policy.forbid->end()});
    }
}

PasswordPolicy currentPolicy() {
    PasswordPolicy policy;
    for (const PasswordLimit& limit : kLimits) {
        policy.*limit.option = *limit.member;
    }
    const std::vector<char> forbidden = Validator::get_forbiddenChars();
    policy.forbid = std::string(forbidden.begin(), forbidden.end());
    return policy;
}

std::vector<std::string> breachesOf(unsigned int error) {
    std::vector<std::string> words;
    for (const PasswordLimit& limit : kLimits) {
        if ((error & limit.bit) != 0) {
            words.push_back(breachOf(limit));
        }
    }
    if ((error & Validator::kForbiddenChar) != 0) {
        words.emplace_back(kForbiddenCharWords);
    }
    return words;
}

std::vector<const char*> classesOf(unsigned int details) {
    std::vector<const char*> names;
    for (const auto& [bit, name] : kClasses) {
        if ((details & bit) != 0) {
            names.push_back(name);
        }
    }
    return names;
}

std::string brandWords(PQ_UTILS::PQCreditCardNumberValidator::CREDITCARD_TYPE type) {
    using Cards = PQ_UTILS::PQCreditCardNumberValidator;
    std::string stored = Cards::getWstringFromCardType(type);
    if (type == Cards::CREDITCARD_NONE || type == Cards::CREDITCARD_UNNAMED) {
        return (type == Cards::CREDITCARD_NONE ? "none" : "unnamed") + std::string(" (stored as ") +
               stored + ")";
    }
    return stored;
}

} // namespace pqorder
