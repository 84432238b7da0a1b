#pragma once

// Byte-search primitives shared by the string sources of the library; not
// installed.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQFailure.h"

// Fails with the null variable "m_startPointeur" for a broken view: bytes to
// read but no start. An empty view passes whatever its start.
#define PQ_CHECK_VIEW(view)                                                                        \
    PQ_CHECK_NULL_TEXT((view).empty() ? "" : (view).data(), "m_startPointeur", ::std::string_view())

namespace PQ_UTILS::internal {

// Position of `needle` in `haystack` at or after `pos`, every byte counting
// (zero bytes too); npos when there is none. An empty needle is found at
// `pos` when pos <= size. Linear in the haystack: memchr for the first byte
// of a short needle, then a compare (at most kShortNeedle bytes per
// position); the C library's memmem (two-way) for a longer one. memmem is
// kept off the short needles that are searched over and over in one text:
// the address sanitizer checks its whole haystack on every call.
inline constexpr std::size_t kShortNeedle = 16;

[[nodiscard]] inline std::size_t findBytes(std::string_view haystack, std::string_view needle,
                                           std::size_t pos = 0) noexcept {
    if (pos > haystack.size()) {
        return std::string_view::npos;
    }
    if (needle.empty()) {
        return pos;
    }
    if (haystack.size() - pos < needle.size()) {
        return std::string_view::npos; // also keeps a null empty haystack from the C library
    }
    if (needle.size() <= kShortNeedle) {
        return haystack.find(needle, pos);
    }
    const char* const from = haystack.data() + pos;
    const void* found = ::memmem(from, haystack.size() - pos, needle.data(), needle.size());
    return found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(found) - haystack.data());
}

// The bytes of `text` before its first zero byte, reading at most `limit`
// bytes and none past that zero.
[[nodiscard]] inline std::string_view untilZero(const char* text, std::size_t limit) noexcept {
    return {text, limit == 0 ? 0 : ::strnlen(text, limit)};
}

} // namespace PQ_UTILS::internal

namespace PQ_UTILS::internal {

// How two views compare, whatever their type. A null start equals only
// another null start: the pointers are compared before the lengths.
[[nodiscard]] inline bool viewsDiffer(const char* start, std::uint64_t length,
                                      const char* otherStart, std::uint64_t otherLength) noexcept {
    if (start == nullptr) {
        return otherStart != nullptr;
    }
    if (otherStart == nullptr || length != otherLength) {
        return true;
    }
    return start != otherStart && length != 0 && std::memcmp(start, otherStart, length) != 0;
}

} // namespace PQ_UTILS::internal

namespace PQ_UTILS::internal {

// The order writer's escaping of a value ("=" -> "--equ--", "&" -> "--amp--",
// "//" -> "--dbsl--"; bytes after a zero byte copied as they are), appended
// to `out`: the same output as PQString::restorePQEntities. With
// `lineFeeds`, a line feed also becomes "--endl--" (as replace_pq would make
// it after the three others), for JSON text sent in an order.
// orderEscapedBound is a bound on the bytes appended: each special byte
// counted as growing by 7, the most any does ("=" and "&" grow by 6), so it
// is close for ordinary text. Counting is several times faster than
// escaping, and sizing the buffer this way spares a second walk.
// appendOrderEscaped needs the bound, and
// enlarges `out` by at most this much: a caller that reserves the sum of
// the bounds never has its text moved, and so never leaves a copy unwiped.
[[nodiscard]] std::size_t orderEscapedBound(std::string_view value,
                                            bool lineFeeds = false) noexcept;
void appendOrderEscaped(kstring& out, std::string_view value, std::size_t bound,
                        bool lineFeeds = false);
// The reader's unescaping of a value, appended to `out` in one pass: the
// same output as PQString::removePQEntities, that is "--equ--" restored
// first, then "--amp--", then "--dbsl--", each pass over the text the one
// before left, up to the first zero byte.
void appendOrderUnescaped(kstring& out, std::string_view value);

} // namespace PQ_UTILS::internal
