#pragma once

#include "PQUtils/Utils/PQString.h"

namespace pqtest {

// The order text escapes as their single-token passes in sequence (the line
// feed last, when asked): what the one-walk forms must equal byte for byte.
inline PQ_UTILS::kstring orderEscapedInPasses(const PQ_UTILS::kstring& value,
                                              bool lineFeeds = false) {
    using PQ_UTILS::PQString;
    const auto text =
        PQString::removeDbleSlashes(*PQString::removeAmpersand(*PQString::removeEquals(value)));
    return lineFeeds ? *PQString::replace_pq(*text, "\n", "--endl--", false) : *text;
}

inline PQ_UTILS::kstring orderUnescapedInPasses(const PQ_UTILS::kstring& text) {
    using PQ_UTILS::PQString;
    return *PQString::restoreDbleSlashes(
        *PQString::restoreAmpersand(*PQString::restoreEquals(text)));
}

} // namespace pqtest
