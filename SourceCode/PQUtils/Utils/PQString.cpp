#include "PQUtils/Utils/PQString.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

#include "PQUtils/Utils/PQByteSearchInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

constexpr const char* kEmptySearchRefused = " L\"\" is not permitted";

using internal::EscapeToken;
using internal::findBytes;
using internal::kAmpersand;
using internal::kArobase;
using internal::kDoublePoint;
using internal::kDoubleSlash;
using internal::kEquals;
using internal::kOrderEscapes;
using internal::untilZero;

// Appends `source` to `out` with each match of `from` (searched in
// `searched`, a prefix of `source`) replaced by `to`, left to right, never
// rescanning inserted text. `from` must not be empty.
void appendReplaced(kstring& out, std::string_view source, std::string_view searched,
                    std::string_view from, std::string_view to, bool onlyFirst) {
    std::size_t copied = 0;
    for (std::size_t match = findBytes(searched, from); match != std::string_view::npos;
         match = findBytes(searched, from, copied)) {
        out.append(source.substr(copied, match - copied)).append(to);
        copied = match + from.size();
        if (onlyFirst) {
            break;
        }
    }
    out.append(source.substr(copied));
}

// The replacement behind replace_pq and the token functions: source and
// `from` read as zero-terminated texts, the remainder copied whole.
std::unique_ptr<kstring> replaceZeroTerminated(const kstring& source, std::string_view from,
                                               std::string_view to, bool onlyFirst) {
    auto result = std::make_unique<kstring>();
    const std::string_view needle = untilZero(from.data(), from.size());
    if (needle.empty()) {
        result->assign(source);
        return result;
    }
    result->reserve(source.size());
    appendReplaced(*result, source, untilZero(source.c_str(), source.size()), needle, to,
                   onlyFirst);
    return result;
}

std::unique_ptr<kstring> escape(const kstring& text, const EscapeToken& row) {
    return replaceZeroTerminated(text, row.character, row.token, false);
}

std::unique_ptr<kstring> unescape(const kstring& text, const EscapeToken& row) {
    return replaceZeroTerminated(text, row.token, row.character, false);
}

} // namespace

void PQString::initialyze_public() {
    m_sEmptyString.clear();
    m_sEmptyVector.clear();
}

std::size_t PQString::charFind(const char* haystack, const char* needle, std::size_t length) try {
    PQ_CHECK_NULL(haystack);
    PQ_CHECK_NULL(needle);
    if (length == 0) {
        return kstring::npos;
    }
    // A match starts before `length`, so no byte from length - 1 + the
    // needle's length on can belong to one: the search never reads further.
    const std::string_view wanted(needle);
    const std::size_t reach = length - 1 + std::min(wanted.size(), kstring::npos - length);
    const std::size_t found = findBytes(untilZero(haystack, reach), wanted);
    return found < length ? found : kstring::npos;
}
PQ_CATCH_AND_TREAT

std::size_t PQString::charFind_ns(const char* haystack, const char* needle,
                                  std::size_t length) try {
    PQ_CHECK_NULL(haystack);
    PQ_CHECK_NULL(needle);
    // Reading no further than `length` is the same as ending the text there.
    return findBytes(untilZero(haystack, length), needle);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::replace_pq(const kstring& source, const kstring& from,
                                              const kstring& to, bool onlyFirst) try {
    PQ_REQUIRE(!from.empty(), kEmptySearchRefused);
    return replaceZeroTerminated(source, from, to, onlyFirst);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::replace_pq_new(const kstring& source, const kstring& from,
                                                  const kstring& to, bool onlyFirst) try {
    PQ_REQUIRE(!from.empty(), kEmptySearchRefused);
    auto result = std::make_unique<kstring>();
    result->reserve(source.size());
    appendReplaced(*result, source, source, from, to, onlyFirst);
    return result;
}
PQ_CATCH_AND_TREAT

void PQString::self_replace(kstring& text, const kstring& from, const kstring& to) try {
    if (from.empty() || findBytes(text, from) == kstring::npos) {
        return;
    }
    kstring replaced;
    replaced.reserve(text.size());
    appendReplaced(replaced, text, text, from, to, false);
    text.swap(replaced);
    secureWipe(replaced); // the text may be a secret
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDbleSlashes(const kstring& text) try {
    return escape(text, kDoubleSlash);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreDbleSlashes(const kstring& text) try {
    return unescape(text, kDoubleSlash);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeEquals(const kstring& text) try {
    return escape(text, kEquals);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreEquals(const kstring& text) try {
    return unescape(text, kEquals);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeAmpersand(const kstring& text) try {
    return escape(text, kAmpersand);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreAmpersand(const kstring& text) try {
    return unescape(text, kAmpersand);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDblePoints(const kstring& text) try {
    return escape(text, kDoublePoint);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreDblePoints(const kstring& text) try {
    return unescape(text, kDoublePoint);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeArobase(const kstring& text) try {
    return escape(text, kArobase);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreArobase(const kstring& text) try {
    return unescape(text, kArobase);
}
PQ_CATCH_AND_TREAT

void PQString::removeArobase(std::vector<kstring>* list) try {
    PQ_CHECK_NULL_MESSAGE(list, "Vector is NULL");
    for (kstring& element : *list) {
        element = std::move(*escape(element, kArobase));
    }
}
PQ_CATCH_AND_TREAT

void PQString::restoreArobase(std::vector<kstring>* list) try {
    PQ_CHECK_NULL_MESSAGE(list, "Vector is NULL");
    for (kstring& element : *list) {
        element = std::move(*unescape(element, kArobase));
    }
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restorePQEntities(const kstring& text) try {
    auto result = std::make_unique<kstring>();
    // Room guessed, which spares a pass to count the special bytes: a
    // quarter more for a short text, which grows if it must; for a long
    // one, the growth of its first bytes, scaled.
    constexpr std::size_t kSample = std::size_t{1} << 16U;
    std::size_t room = internal::orderEscapedRoom(text.size());
    if (text.size() > kSample) {
        const std::string_view sample = std::string_view(text).substr(0, kSample);
        room = text.size() + text.size() / 32 +
               (internal::orderEscapedBound(sample) - kSample) * (text.size() / kSample);
    }
    internal::appendOrderEscaped(*result, text, room);
    return result;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removePQEntities(const kstring& text) try {
    auto result = std::make_unique<kstring>();
    internal::appendOrderUnescaped(*result, text);
    return result;
}
PQ_CATCH_AND_TREAT

kstring PQString::restorePQEntities_2(kstring text) try {
    for (const EscapeToken& row : kOrderEscapes) {
        self_replace(text, kstring(row.character), kstring(row.token));
    }
    return text;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::escapeDoubleQuotes(const kstring& text) try {
    return replaceZeroTerminated(text, "\"", "\\\"", false);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::unescapeValueFromCSV(const kstring& text) try {
    // The three pairs, each read once, left to right.
    struct Pair {
        std::string_view escaped;
        char plain;
    };
    constexpr std::array<Pair, 3> pairs{{{"\r\n", '\n'}, {"\"\"", '"'}, {"\\/", '/'}}};
    auto result = std::make_unique<kstring>();
    result->reserve(text.size());
    const std::string_view rest(text);
    for (std::size_t i = 0; i < rest.size();) {
        const auto pair = std::find_if(pairs.begin(), pairs.end(), [&](const Pair& candidate) {
            return rest.substr(i, candidate.escaped.size()) == candidate.escaped;
        });
        if (pair != pairs.end()) {
            result->push_back(pair->plain);
            i += pair->escaped.size();
        } else {
            result->push_back(rest[i]);
            ++i;
        }
    }
    return result;
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
