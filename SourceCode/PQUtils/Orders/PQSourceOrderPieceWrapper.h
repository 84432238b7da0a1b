#pragma once

#include <string_view>
#include <utility>

#include "PQUtils/Utils/PQSecuredString.h"

namespace PQ_UTILS {

// The text of one piece's value, and the buffer that renderers append a
// piece's value to.
class PQSourceOrderPieceWrapper : public PQSecuredString {
public:
    PQ_IDENTITY(PQSourceOrderPieceWrapper)

    PQSourceOrderPieceWrapper() = default;
    explicit PQSourceOrderPieceWrapper(const kstring& text) : PQSecuredString(text) {}
    explicit PQSourceOrderPieceWrapper(kstring&& text) : PQSecuredString(std::move(text)) {}

    // Appends `text` to the value (old buffers are wiped as it grows).
    void append(std::string_view text) { appendText(text); }

private:
    friend class PQJsonOrder; // sizes its text first, then writes it in place
};

} // namespace PQ_UTILS
