#pragma once

#include <utility>

#include "PQUtils/Utils/PQSecuredString.h"

namespace PQ_UTILS {

// The source text of a whole order, as received or as rendered: a secured
// string, so that order text is treated as sensitive wherever it goes.
class PQSourceOrderWrapper : public PQSecuredString {
public:
    PQ_IDENTITY(PQSourceOrderWrapper)

    PQSourceOrderWrapper() = default;
    explicit PQSourceOrderWrapper(const kstring& text) : PQSecuredString(text) {}
    explicit PQSourceOrderWrapper(kstring&& text) : PQSecuredString(std::move(text)) {}
};

} // namespace PQ_UTILS
