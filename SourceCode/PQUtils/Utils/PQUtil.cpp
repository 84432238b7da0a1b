#include "PQUtils/Utils/PQUtil.h"

#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQUtil_macosx.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQUtil";

// One change to a value template: the character at `at` becomes `fixed`,
// or (when `fixed` is 0) the character at `from` plus `add`.
struct Overwrite {
    std::size_t at;
    char fixed;
    std::size_t from;
    int add;
};

// How get_value and get_value_ios build their value: the template changed
// by the overwrites, then a 7-character piece of it cut at `pieceAt` whose
// first two characters become `pieceHead`; the value is `lead`, the debug
// library's text, and that piece.
struct ValueRecipe {
    std::string_view text;
    std::array<Overwrite, 4> overwrites;
    std::size_t pieceAt;
    std::string_view pieceHead;
    std::string_view lead;
};

constexpr std::size_t kPieceSize = 7;

constexpr ValueRecipe kValue{"k2Rw7QmZp4Lx9TcB1vNs8HdJ3fYg6Ke",
                             {{{4, 'u', 0, 0}, {9, 0, 2, 2}, {12, 0, 20, 0}, {15, 'E', 0, 0}}},
                             9,
                             "Tm",
                             "p7Q"};
constexpr ValueRecipe kValueIos{"Hs4Lq9Wd2Xc7Nv1Bz8Mf3Ga6Rk5Tj0P",
                                {{{3, 'e', 0, 0}, {11, 0, 6, 2}, {14, 0, 24, 0}, {27, 'y', 0, 0}}},
                                11,
                                "Wx",
                                "c4H"};
constexpr std::string_view kValueOldHead = "q8Zr2";
constexpr std::string_view kValueOldTail = "M3v";

kstring buildValue(const ValueRecipe& recipe) {
    PQWipedString text{kstring(recipe.text)};
    kstring& chars = text.get();
    for (const Overwrite& change : recipe.overwrites) {
        chars[change.at] =
            change.fixed != 0 ? change.fixed : static_cast<char>(chars[change.from] + change.add);
    }
    const std::string misc = PQ_DEBUG::PQDebug::get_miscValue();
    kstring value;
    value.reserve(recipe.lead.size() + misc.size() + kPieceSize);
    value.append(recipe.lead).append(misc).append(recipe.pieceHead);
    value.append(chars, recipe.pieceAt + recipe.pieceHead.size(),
                 kPieceSize - recipe.pieceHead.size());
    return value;
}

bool isStreamBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

// A constant and its bytes; a row without bytes copies the constant named by
// `copyOf`.
struct ConstantRow {
    kstring* constant;
    std::string_view bytes;
    const kstring* copyOf;
};

} // namespace

void PQUtil::initializePublic() try {
    const std::array<ConstantRow, 18> rows{{
        {&euro, "\xE2\x82\xAC", nullptr},
        {&pound, "\xC2\xA3", nullptr},
        {&yen, "\xC2\xA5", nullptr},
        {&yuan, {}, &yen},
        {&inr, "\xE2\x82\xB9", nullptr},
        {&krw, "\xE2\x82\xA9", nullptr},
        {&uah, "\xE2\x82\xB4", nullptr},
        {&thb, "\xE0\xB8\xBF", nullptr},
        {&pln, "z\xC5\x82", nullptr},
        {&ruble, "\xD1\x80\xD1\x83\xD0\xB1.", nullptr},
        {&little_o_number, "\xC2\xB0", nullptr},
        {&eacute, "\xC3\xA9", nullptr},
        {&ecirc, "\xC3\xAA", nullptr},
        {&egrave, "\xC3\xA8", nullptr},
        {&agrave, "\xC3\xA0", nullptr},
        {&ccdil, "\xC3\xA7", nullptr},
        {&ugrave, "\xC3\xC9", nullptr},
        {&special_space, "\x1F", nullptr},
    }};
    for (const ConstantRow& row : rows) {
        if (row.copyOf != nullptr) {
            *row.constant = *row.copyOf;
        } else {
            row.constant->assign(row.bytes);
        }
    }
} catch (...) {
    traceMessageFrom("initializePublic", "probleme dans initializePublic()");
    throw;
}

std::map<kstring, double>::iterator PQUtil::getRankedElement(std::map<kstring, double>* scores,
                                                             unsigned int rank) try {
    PQ_CHECK_NULL(scores);
    if (rank == 0 || rank > scores->size()) {
        return scores->end();
    }
    // Highest value first, by insertion before the first strictly smaller
    // value: equal values keep the map's order, and a NaN, smaller than
    // nothing, goes where the walk ends.
    std::list<kstring> ranked;
    for (const auto& [key, value] : *scores) {
        auto place = ranked.begin();
        while (place != ranked.end() && !(scores->at(*place) < value)) {
            ++place;
        }
        ranked.insert(place, key);
    }
    return scores->find(getRankedElement(&ranked, rank));
}
PQ_CATCH_AND_TREAT

kstring PQUtil::getRankedElement(std::list<kstring>* keys, unsigned int rank) try {
    PQ_CHECK_NULL(keys);
    PQ_REQUIRE(rank != 0 && rank <= keys->size(), "list too short");
    unsigned int position = 1;
    for (const kstring& key : *keys) {
        if (position++ == rank) {
            return key;
        }
    }
    throw frame::failure("this point should be never reached", PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

kstring PQUtil::getRequestWithoutArgs(kstring const& url) {
    // What the first piece of the text split on "?" is.
    return url.substr(0, url.find('?'));
}

kstring PQUtil::urlDecode(kstring const& text) {
    // The text before the first "%" never holds one, so the search that
    // starts again from the start finds either the "%" that a decoding just
    // made or the next one of the text: one walk does it.
    kstring decoded;
    decoded.reserve(text.size());
    std::size_t next = 0;
    bool madePercent = false;
    while (true) {
        if (!madePercent) {
            const std::size_t percent = text.find('%', next);
            if (percent == kstring::npos) {
                decoded.append(text, next);
                return decoded;
            }
            decoded.append(text, next, percent - next);
            next = percent + 1;
        }
        const std::size_t taken = std::min<std::size_t>(2, text.size() - next);
        const char c = charFromHex(text.substr(next, taken));
        next += taken;
        madePercent = c == '%';
        if (!madePercent) {
            decoded.push_back(c);
        }
    }
}

char PQUtil::charFromHex(kstring hex) {
    // As `std::istringstream(hex) >> std::hex >> anInt` reads, without a
    // stream: blanks, a sign, a "0x", digits; a number out of an int's range
    // reads as the nearer limit.
    std::size_t i = 0;
    while (i < hex.size() && isStreamBlank(hex[i])) {
        ++i;
    }
    const bool negative = i < hex.size() && hex[i] == '-';
    if (i < hex.size() && (hex[i] == '-' || hex[i] == '+')) {
        ++i;
    }
    bool digits = false;
    if (i < hex.size() && hex[i] == '0') {
        digits = true;
        ++i;
        if (i < hex.size() && (hex[i] == 'x' || hex[i] == 'X')) {
            digits = false;
            ++i;
        }
    }
    const unsigned long long limit =
        negative ? static_cast<unsigned long long>(LONG_MAX) + 1 : LONG_MAX;
    unsigned long long magnitude = 0;
    bool overflow = false;
    for (int digit = 0; i < hex.size() && (digit = hexDigit(hex[i])) >= 0; ++i) {
        digits = true;
        if (magnitude > (limit - static_cast<unsigned long long>(digit)) / 16) {
            overflow = true;
        } else {
            magnitude = magnitude * 16 + static_cast<unsigned long long>(digit);
        }
    }
    if (!digits) {
        return 0;
    }
    const long value = overflow   ? (negative ? LONG_MIN : LONG_MAX)
                       : negative ? static_cast<long>(0 - magnitude)
                                  : static_cast<long>(magnitude);
    return static_cast<char>(value < INT_MIN   ? INT_MIN
                             : value > INT_MAX ? INT_MAX
                                               : static_cast<int>(value));
}

bool PQUtil::arePricesEqual(double const& a, double const& b, bool coarse) {
    return std::fabs(a - b) <= (coarse ? 1.0 : 0.0011);
}

kstring PQUtil::getEnvironmentVariable(kstring const& name) try {
    // No variable has such a name, though C libraries differ on what they
    // look up for one: "A=B" can find A's value, "A\0B" A itself.
    if (name.empty() || name.find_first_of(kstring("=\0", 2)) != kstring::npos) {
        return {};
    }
    const char* const value = std::getenv(name.c_str()); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? kstring() : kstring(value);
}
PQ_CATCH_AND_TREAT

kstring PQUtil::getComputerName() { return PQDEBUG_MACOSX::PQUtil_macosx::getComputerName(); }

kstring PQUtil::get_value() try { return buildValue(kValue); }
PQ_CATCH_AND_TREAT

kstring PQUtil::get_value_ios() try { return buildValue(kValueIos); }
PQ_CATCH_AND_TREAT

kstring PQUtil::get_value_old() try {
    kstring value(kValueOldHead);
    value.append(PQ_DEBUG::PQDebug::get_miscValue()).append(kValueOldTail);
    return value;
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
