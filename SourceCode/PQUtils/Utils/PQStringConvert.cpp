#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>

#include "PQDebug/PQDebugString.h"
#include "PQUtils/Utils/PQByteSearchInternal.h"
#include "PQUtils/Utils/PQByteViewInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQFromCharsInternal.h"
#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "PQUtils/Utils/PQString.h"
#include "PQUtils/Utils/PQStringRef.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

using PQ_DEBUG::PQDebugString;

// The pieces of `text` between the matches of `separator` (not empty), each
// made from its start and length, so one loop serves strings and views.
template <class Piece>
std::unique_ptr<std::vector<Piece>> splitInto(std::string_view text, std::string_view separator) {
    auto pieces = std::make_unique<std::vector<Piece>>();
    if (text.empty()) { // the text of an empty view may have no address to search
        pieces->emplace_back(text.data(), 0);
        return pieces;
    }
    std::size_t start = 0;
    for (std::size_t match = internal::findBytes(text, separator); match != std::string_view::npos;
         match = internal::findBytes(text, separator, start)) {
        pieces->emplace_back(text.data() + start, match - start);
        start = match + separator.size();
    }
    pieces->emplace_back(text.data() + start, text.size() - start);
    return pieces;
}

constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t blankPrefix(std::string_view text) {
    const auto kept = std::find_if_not(text.begin(), text.end(), isBlank);
    return static_cast<std::size_t>(kept - text.begin());
}

std::size_t blankSuffix(std::string_view text) {
    const auto kept = std::find_if_not(text.rbegin(), text.rend(), isBlank);
    return static_cast<std::size_t>(kept - text.rbegin());
}

// The bounds [first, last) of `text` without its blank ends; first == last
// == size when it is all blank.
struct Trimmed {
    std::size_t first;
    std::size_t last;
};

Trimmed trimmedBounds(std::string_view text) {
    const std::size_t first = blankPrefix(text);
    if (first == text.size()) {
        return {first, first};
    }
    return {first, text.size() - blankSuffix(text)};
}

template <class View> View trimView(const View& text) {
    if (text.empty()) {
        return text;
    }
    const Trimmed bounds = trimmedBounds(text.bytes());
    return View(text.data() + bounds.first, bounds.last - bounds.first);
}

// `text` read as from_chars reads it, after an optional '+' (which
// from_chars does not take), with the range resolved: beyond double it
// gives +-infinity, below it +-0. Returns the value and the bytes read (0
// when nothing was read).
struct DoubleRead {
    double value = 0;
    std::size_t length = 0;
    bool finite = true;
};

DoubleRead readDouble(std::string_view text) {
    DoubleRead read;
    std::size_t start = 0;
    if (!text.empty() && text[0] == '+') {
        if (text.size() > 1 && text[1] == '-') {
            return read; // "+-": no number
        }
        start = 1;
    }
    const char* const first = text.data() + start;
    const char* const last = text.data() + text.size();
    double value = 0;
    const auto [end, error] = internal::fromChars(first, last, value);
    if (error == std::errc::invalid_argument) {
        return read;
    }
    read.length = static_cast<std::size_t>(end - text.data());
    if (error == std::errc::result_out_of_range) {
        const bool negative = *first == '-';
        const internal::DecimalNumber number =
            internal::scanDecimal(text.substr(start + (negative ? 1 : 0)));
        // Out of range, a number of 1 or more overflows and one below 1 underflows.
        read.finite = number.order < 0;
        value = read.finite ? 0.0 : std::numeric_limits<double>::infinity();
        value = negative ? -value : value;
    } else {
        read.finite = std::isfinite(value);
    }
    read.value = value;
    return read;
}

std::unique_ptr<kstring> mapBytes(const kstring& text, char (*change)(char)) {
    auto result = std::make_unique<kstring>(text.size(), '\0');
    std::transform(text.begin(), text.end(), result->begin(), change);
    return result;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// The text after its sign, if it has one.
std::string_view unsignedPart(std::string_view text) {
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
        text.remove_prefix(1);
    }
    return text;
}

} // namespace

std::unique_ptr<std::vector<kstring>> PQString::splitString(const kstring& text,
                                                            const kstring& separator) try {
    PQ_ASSERT(!separator.empty());
    return splitInto<kstring>(text, separator);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<std::vector<PQStringRef>> PQString::splitString(const PQStringRef& text,
                                                                const kstring& separator) try {
    PQ_ASSERT(!separator.empty());
    PQ_CHECK_VIEW(text);
    return splitInto<PQStringRef>(text.bytes(), separator);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<std::vector<PQSecuredStringRef>>
PQString::splitString(const PQSecuredStringRef& text, const kstring& separator) try {
    PQ_ASSERT(!separator.empty());
    PQ_CHECK_VIEW(text);
    return splitInto<PQSecuredStringRef>(text.bytes(), separator);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::implode(const std::vector<kstring>& pieces,
                                           const kstring& glue) try {
    auto result = std::make_unique<kstring>();
    if (pieces.empty()) {
        return result;
    }
    std::size_t total = glue.size() * (pieces.size() - 1);
    for (const kstring& piece : pieces) {
        total += piece.size();
    }
    result->reserve(total);
    result->append(pieces.front());
    for (auto piece = pieces.begin() + 1; piece != pieces.end(); ++piece) {
        result->append(glue).append(*piece);
    }
    return result;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::trim(const kstring& text) try {
    const Trimmed bounds = trimmedBounds(text);
    return std::make_unique<kstring>(text, bounds.first, bounds.last - bounds.first);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::trimLeft(const kstring& text) try {
    return std::make_unique<kstring>(text, blankPrefix(text));
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::trimRight(const kstring& text) try {
    return std::make_unique<kstring>(text, 0, text.size() - blankSuffix(text));
}
PQ_CATCH_AND_TREAT

PQStringRef PQString::trim(const PQStringRef& text) try {
    PQ_CHECK_VIEW(text);
    return trimView(text);
}
PQ_CATCH_AND_TREAT

PQSecuredStringRef PQString::trim(const PQSecuredStringRef& text) try {
    PQ_CHECK_VIEW(text);
    return trimView(text);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::toLowerCase(const kstring& text) try {
    return mapBytes(text, lower);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::toUpperCase(const kstring& text) try {
    return mapBytes(text, upper);
}
PQ_CATCH_AND_TREAT

int PQString::fromWstringToInt(const kstring& text) try {
    return PQDebugString::fromWstringToInt(text);
}
PQ_CATCH_AND_TREAT

double PQString::fromWstringToDouble(const kstring& text) try {
    const std::string_view view(text);
    return readDouble(view.substr(blankPrefix(view))).value;
}
PQ_CATCH_AND_TREAT

kstring PQString::fromDoubleToWstring(double const& value, int precision) try {
    return PQDebugString::fromDoubleToWstring(value, precision);
}
PQ_CATCH_AND_TREAT

bool PQString::isInt(const kstring& text) try {
    const std::string_view digits = unsignedPart(text);
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit)) {
        return false;
    }
    // from_chars takes a '-' but no '+'.
    const std::string_view number = text[0] == '+' ? digits : std::string_view(text);
    int value = 0;
    return std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc();
}
PQ_CATCH_AND_TREAT

bool PQString::isDouble(const kstring& text) try {
    const std::string_view number = unsignedPart(text);
    if (number.empty() || internal::scanDecimal(number).length != number.size()) {
        return false;
    }
    const DoubleRead read = readDouble(text);
    return read.length == text.size() && read.finite;
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
