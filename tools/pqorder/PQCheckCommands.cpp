// password, card, base64 and urldecode: the library's checks and filters.

#include <array>
#include <iterator>
#include <ostream>

#include "PQOrderTool.h"
#include "PQUtils/PQUtils.h"

namespace pqorder {
namespace {

using namespace PQ_UTILS;
using Validator = PQPasswordValidator;
using Cards = PQCreditCardNumberValidator;

// A limit of the policy: the tool's option, the library's member, and the
// bit and words of its breach.
struct Limit {
    std::optional<int> PasswordPolicy::*option;
    int* member;
    unsigned int bit;
    bool isMaximum;
    const char* one; // what is counted, one and many
    const char* many;
};

const std::array<Limit, 12> kLimits{{
    {&PasswordPolicy::minLength, &Validator::m_minChar, Validator::kTooShort, false, "character",
     "characters"},
    {&PasswordPolicy::maxLength, &Validator::m_maxChar, Validator::kTooLong, true, "character",
     "characters"},
    {&PasswordPolicy::minDigits, &Validator::m_minNumber, Validator::kTooFewDigits, false, "digit",
     "digits"},
    {&PasswordPolicy::maxDigits, &Validator::m_maxNumber, Validator::kTooManyDigits, true, "digit",
     "digits"},
    {&PasswordPolicy::minLetters, &Validator::m_minAlphaChar, Validator::kTooFewLetters, false,
     "letter", "letters"},
    {&PasswordPolicy::maxLetters, &Validator::m_maxAlphaChar, Validator::kTooManyLetters, true,
     "letter", "letters"},
    {&PasswordPolicy::minSpecial, &Validator::m_minSpecialChar, Validator::kTooFewSpecials, false,
     "special character", "special characters"},
    {&PasswordPolicy::maxSpecial, &Validator::m_maxSpecialChar, Validator::kTooManySpecials, true,
     "special character", "special characters"},
    {&PasswordPolicy::minLower, &Validator::m_minLowerCaseAlphaChar, Validator::kTooFewLowerCase,
     false, "lower-case letter", "lower-case letters"},
    {&PasswordPolicy::maxLower, &Validator::m_maxLowerCaseAlphaChar, Validator::kTooManyLowerCase,
     true, "lower-case letter", "lower-case letters"},
    {&PasswordPolicy::minUpper, &Validator::m_minUpperCaseAlphaChar, Validator::kTooFewUpperCase,
     false, "upper-case letter", "upper-case letters"},
    {&PasswordPolicy::maxUpper, &Validator::m_maxUpperAlphaChar, Validator::kTooManyUpperCase, true,
     "upper-case letter", "upper-case letters"},
}};

constexpr std::array<std::pair<unsigned int, const char*>, 5> kClasses{{
    {Validator::kHasLetter, "letters"},
    {Validator::kHasDigit, "digits"},
    {Validator::kHasLowerCase, "lower-case"},
    {Validator::kHasUpperCase, "upper-case"},
    {Validator::kHasSpecial, "special"},
}};

// "fewer than 8 characters", "no digit", "more than 1 letter".
std::string breachOf(const Limit& limit) {
    const int value = *limit.member;
    if (!limit.isMaximum && value == 1) {
        return std::string("no ") + limit.one;
    }
    return std::string(limit.isMaximum ? "more than " : "fewer than ") + std::to_string(value) +
           ' ' + (value == 1 ? limit.one : limit.many);
}

void applyPolicy(const PasswordPolicy& policy) {
    for (const Limit& limit : kLimits) {
        if (const std::optional<int>& value = policy.*limit.option) {
            *limit.member = *value;
        }
    }
    if (policy.forbid) {
        Validator::set_forbiddenChars({policy.forbid->begin(), policy.forbid->end()});
    }
}

std::string readAll(std::istream& in) {
    std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) {
        throw UsageError("cannot read standard input");
    }
    return text;
}

// The brand name, and for a number without one the name it is stored under.
std::string brandOf(Cards::CREDITCARD_TYPE type) {
    std::string stored = Cards::getWstringFromCardType(type);
    if (type == Cards::CREDITCARD_NONE || type == Cards::CREDITCARD_UNNAMED) {
        return (type == Cards::CREDITCARD_NONE ? "none" : "unnamed") + std::string(" (stored as ") +
               stored + ")";
    }
    return stored;
}

Status checkCard(const std::string& number, std::ostream& out) {
    if (number.empty()) {
        out << "luhn    invalid (no number)\n";
        return Status::invalid;
    }
    const bool valid = Cards::isCardNumberValid(number);
    out << "luhn    " << (valid ? "valid" : "invalid") << '\n'
        << "brand   " << brandOf(Cards::getCardType(number)) << '\n'
        << "masked  " << *PQString::obfuscateNumber(number) << '\n';
    return valid ? Status::ok : Status::invalid;
}

constexpr std::size_t kPasswordRoom = 1024;

} // namespace

Status password(const PasswordPolicy& policy, Streams io) {
    applyPolicy(policy);
    // Wiped when the check is done; room up front, so that reading a usual
    // password leaves no regrown copy behind.
    PQWipedString held;
    std::string& secret = held.get();
    secret.reserve(kPasswordRoom);
    if (!std::getline(io.in, secret)) {
        throw UsageError("no password on standard input");
    }
    if (!secret.empty() && secret.back() == '\r') {
        secret.pop_back();
    }
    unsigned int error = 0;
    const bool valid = Validator::isValidPassword(secret, error);
    io.out << (valid ? "valid" : "invalid") << '\n';
    for (const Limit& limit : kLimits) {
        if ((error & limit.bit) != 0) {
            io.out << "  " << breachOf(limit) << '\n';
        }
    }
    if ((error & Validator::kForbiddenChar) != 0) {
        io.out << "  a forbidden character\n";
    }
    unsigned int details = 0;
    Validator::getPasswordDetails(secret, details);
    io.out << "holds  ";
    const char* separator = "";
    for (const auto& [bit, name] : kClasses) {
        if ((details & bit) != 0) {
            io.out << separator << name;
            separator = ", ";
        }
    }
    io.out << (details == 0 ? "nothing\n" : "\n");
    return valid ? Status::ok : Status::invalid;
}

Status card(const std::optional<std::string>& number, Streams io) {
    bool first = true;
    return forEachInput(number, io.in, [&](const std::string& each) {
        io.out << (first ? "" : "\n");
        first = false;
        return checkCard(each, io.out);
    });
}

Status base64(const std::optional<std::string>& text, Streams io) {
    const std::string data = text ? *text : readAll(io.in);
    io.out << *PQString::toBase64(data, data.size()) << '\n';
    return Status::ok;
}

Status urldecode(const std::optional<std::string>& text, Streams io) {
    return forEachInput(
        text, io.in,
        [&](const std::string& line) {
            io.out << PQUtil::urlDecode(line) << '\n';
            return Status::ok;
        },
        true);
}

} // namespace pqorder
