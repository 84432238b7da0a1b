// password, card, base64 and urldecode: the library's checks and filters.

#include <iterator>
#include <ostream>

#include "PQOrderTool.h"
#include "PQPasswordRules.h"
#include "PQUtils/PQUtils.h"

namespace pqorder {
namespace {

using namespace PQ_UTILS;
using Validator = PQPasswordValidator;
using Cards = PQCreditCardNumberValidator;

std::string readAll(std::istream& in) {
    std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) {
        throw UsageError("cannot read standard input");
    }
    return text;
}

Status checkCard(const std::string& number, std::ostream& out) {
    if (number.empty()) {
        out << "luhn    invalid (no number)\n";
        return Status::invalid;
    }
    const bool valid = Cards::isCardNumberValid(number);
    out << "luhn    " << (valid ? "valid" : "invalid") << '\n'
        << "brand   " << brandWords(Cards::getCardType(number)) << '\n'
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
    for (const std::string& breach : breachesOf(error)) {
        io.out << "  " << breach << '\n';
    }
    unsigned int details = 0;
    Validator::getPasswordDetails(secret, details);
    io.out << "holds  ";
    const char* separator = "";
    for (const char* name : classesOf(details)) {
        io.out << separator << name;
        separator = ", ";
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
