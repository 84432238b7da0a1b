#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "PQUtils/Orders/Json/PQJsonOrder.h"

namespace PQ_UTILS {

// A JSON array: its elements are its pieces, in order, all with the empty
// key (so they are added without the duplicate-key check).
//
// Literals and numbers can be added, but only the no-escape rendering
// writes them; the escaping one, which get_orderString uses, accepts node
// elements only and fails with "All Json children must be TYPE_ORDER
// PQOrderPiece".
class PQJsonArray : public PQJsonOrder {
public:
    PQ_IDENTITY(PQJsonArray)

    PQJsonArray();
    PQJsonArray(const PQJsonArray& other);
    PQJsonArray& operator=(const PQJsonArray&) = delete;
    ~PQJsonArray() override;

    [[nodiscard]] std::unique_ptr<PQOrder> clone() const override;

    using PQJsonOrder::get_localOrderString;
    using PQJsonOrder::get_localOrderString_noEscape;
    // [element,...]
    void get_localOrderString(PQSourceOrderPieceWrapper& out) const override;
    void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const override;

    [[nodiscard]] bool isJSonArray() const override;
    [[nodiscard]] bool hasChildren() const override;
    // Every element's node, in order; fails ("castedOrder") when an element
    // is a literal or number, or not a JSON node.
    [[nodiscard]] std::vector<PQJsonOrder*> getChildrenValue() const override;
    // Removes the first element whose value text is `value` (a literal or a
    // number; a node element by what it gives as its value).
    void removeValue(const kstring& value) override;

    [[nodiscard]] virtual std::size_t size() const;
    using PQJsonOrder::addValue;
    // Appends an element; a text as a new PQJsonString node.
    virtual void addValue(std::unique_ptr<PQJsonOrder> value);
    virtual void addValue(kstring value);
    virtual void addValue(bool value);
    virtual void addValue(int value);
    virtual void addValue(double value);
    // A text given as a literal is a string, not the boolean true that the
    // pointer would otherwise convert to. A null pointer fails.
    void addValue(const char* value);
};

} // namespace PQ_UTILS
