#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "PQUtils/Orders/PQSourceOrderPieceWrapper.h"
#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQSecuredString.h"

namespace PQ_UTILS {

class PQOrder;

// One piece of an order: a key with either a text value (TYPE_STRING) or a
// nested order (TYPE_ORDER), which the piece owns.
class PQOrderPiece : public PQIdentifiable {
public:
    PQ_IDENTITY(PQOrderPiece)

    static constexpr int TYPE_STRING = 1;
    static constexpr int TYPE_ORDER = 2;

    PQOrderPiece(std::string key, std::string value);
    // Takes the order, even when construction then fails.
    PQOrderPiece(std::string key, std::unique_ptr<PQOrder> order);
    // Copies the key, the text and the type, and clones a nested order
    // (which fails for an order that cannot be cloned).
    PQOrderPiece(const PQOrderPiece& other);
    PQOrderPiece(PQOrderPiece&& other) noexcept;
    PQOrderPiece& operator=(const PQOrderPiece&) = delete;
    PQOrderPiece& operator=(PQOrderPiece&&) = delete;
    ~PQOrderPiece() override;

    // Pieces come from a pool of blocks rather than one heap allocation
    // each; a block is wiped when it is given back.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size) noexcept;

    [[nodiscard]] const std::string& get_key() const noexcept { return m_key; }
    [[nodiscard]] int get_orderPieceType() const noexcept { return m_orderPieceType; }
    // The nested order; null for a text piece.
    [[nodiscard]] const PQOrder* get_orderPieceValue() const noexcept {
        return m_orderPieceValue.get();
    }

    // The value for the order text: the text, or the nested order's own
    // rendering (which must be marked initialized).
    [[nodiscard]] PQSecuredString get_localOrderString() const;
    // The same, appended to `out`.
    void get_localOrderString(PQSourceOrderPieceWrapper& out) const;
    void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const;
    // The value for programmatic use.
    [[nodiscard]] PQSecuredString get_pieceValue() const;

private:
    friend class PQOrder;     // updates pieces in place, takes trees apart
    friend class PQJsonOrder; // renders trees without copying their texts

    // The nested order, checked to be one and to be initialized; failures
    // are reported for `function`.
    [[nodiscard]] const PQOrder& nestedOrder(const char* function) const;

    std::string m_key;
    PQSourceOrderPieceWrapper m_value;
    std::unique_ptr<PQOrder> m_orderPieceValue;
    int m_orderPieceType;
};

} // namespace PQ_UTILS
