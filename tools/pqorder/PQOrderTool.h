#pragma once

// The commands of pqorder, each a function over the streams it is given,
// so that the demo runs them as the command line does.

#include <cstdint>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pqorder {

// Exit status: success; input well-formed but invalid (a bad password, a
// failed checksum, a malformed piece); a usage error or unreadable input.
enum class Status : int { ok = 0, invalid = 1, usage = 2 };

// A command cannot run as asked: the message is printed on one line and the
// tool exits with Status::usage.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The worse of two results.
Status worst(Status a, Status b);

struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

// --- Orders ------------------------------------------------------------------

struct RenderOptions {
    std::string action;              // a name ("log") or a value ("13")
    std::vector<std::string> pieces; // KEY=VALUE, or KEY:=JSON with json
    bool json = false;
};
Status render(const RenderOptions& options, Streams io);

struct ParseOptions {
    std::optional<std::string> text; // else one order per line of input
    bool json = false;               // JSON objects instead of a table
    bool raw = false;                // escape tokens kept
};
Status parse(const ParseOptions& options, Streams io);

Status get(const std::string& key, const std::optional<std::string>& text, Streams io);

// The whole action table, or one name <-> value look-up.
Status actions(const std::optional<std::string>& query, Streams io);

// --- Checks ------------------------------------------------------------------

// Limits of the password policy; an absent one keeps the library's default.
struct PasswordPolicy {
    std::optional<int> minLength, maxLength, minDigits, maxDigits, minLetters, maxLetters, minLower,
        maxLower, minUpper, maxUpper, minSpecial, maxSpecial;
    std::optional<std::string> forbid;
};
// Checks the password on the first line of input (never an argument, so that
// it stays out of shell history).
Status password(const PasswordPolicy& policy, Streams io);

Status card(const std::optional<std::string>& number, Streams io);
Status base64(const std::optional<std::string>& text, Streams io);
Status urldecode(const std::optional<std::string>& text, Streams io);

Status demo(Streams io);

// --- Shared by the commands --------------------------------------------------

// Calls `each` with the argument, or with each line of input (a trailing
// "\r" dropped; empty lines too when `keepEmpty`), and returns the worst
// result. Fails on unreadable input.
template <class Each>
Status forEachInput(const std::optional<std::string>& text, std::istream& in, Each each,
                    bool keepEmpty = false) {
    if (text) {
        return each(*text);
    }
    Status status = Status::ok;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (keepEmpty || !line.empty()) {
            status = worst(status, each(line));
        }
    }
    if (in.bad()) {
        throw UsageError("cannot read standard input");
    }
    return status;
}

// The text of a JSON string holding `text`, bytes that are not UTF-8 shown
// as U+FFFD.
std::string jsonQuoted(std::string_view text);

// `text` with control bytes shown as \n, \r, \t or \xhh, for a table cell.
std::string printable(std::string_view text);

// The library's log goes to standard error with --verbose, and nowhere
// otherwise: the commands report what went wrong in their own words.
void routeLibraryLog(bool verbose);

} // namespace pqorder
