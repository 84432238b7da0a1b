#pragma once

// What the view classes (PQByteView, PQStringRef, PQSecuredStringRef) and
// the string operations that take views share: the check of a broken view
// and the comparison of two views. Not installed.

#include <cstdint>
#include <cstring>
#include <string_view>

#include "PQUtils/Utils/PQFailure.h"

// Fails with the null variable "m_startPointeur" for a broken view: bytes to
// read but no start. An empty view passes whatever its start.
#define PQ_CHECK_VIEW(view)                                                                        \
    PQ_CHECK_NULL_TEXT((view).empty() ? "" : (view).data(), "m_startPointeur", ::std::string_view())

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
