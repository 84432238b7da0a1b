#pragma once

#include <memory>

#include "PQUtils/Orders/Json/PQJsonOrder.h"

namespace PQ_UTILS {

// A JSON string: one piece with the empty key holding the text as given.
// The text is escaped when written and unescaped by get_pieceValue(), which
// reads "\\n" before "\\\\": a stored backslash, backslash, "n" reads back as
// a backslash and a line feed, so the two are not exact inverses.
class PQJsonString : public PQJsonOrder {
public:
    PQ_IDENTITY(PQJsonString)

    // No piece: written "\"\"".
    PQJsonString();
    explicit PQJsonString(const kstring& value);
    explicit PQJsonString(kstring&& value);
    // The pointed-to text, or the empty text for a null pointer; the pointer
    // is only read.
    explicit PQJsonString(const std::unique_ptr<kstring>& value);
    PQJsonString(const PQJsonString& other);
    PQJsonString& operator=(const PQJsonString&) = delete;
    ~PQJsonString() override;

    [[nodiscard]] std::unique_ptr<PQOrder> clone() const override;

    using PQJsonOrder::get_localOrderString;
    using PQJsonOrder::get_localOrderString_noEscape;
    // "text", escaped or as it is.
    void get_localOrderString(PQSourceOrderPieceWrapper& out) const override;
    void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const override;
    // The text with its escapes undone; empty without a piece.
    [[nodiscard]] PQSecuredString get_pieceValue() const override;

    [[nodiscard]] bool isJSonString() const override;
    // The text as stored (not unescaped).
    [[nodiscard]] kstring getValue() const override;
};

} // namespace PQ_UTILS
