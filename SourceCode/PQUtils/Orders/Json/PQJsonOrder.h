#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "PQDebug/PQException.h"
#include "PQUtils/Orders/PQOrder.h"
#include "PQUtils/Orders/PQSourceOrderWrapper.h"

namespace PQ_UTILS {

// A JSON order: an order whose content is a JSON value tree, sent as
//   action=NAME&content=ESCAPED_JSON&//
// It is the root of such a tree and the base of the three node kinds
// (PQJsonObject, PQJsonArray, PQJsonString). A node is an order of kind
// ORDER_JSONORDER, marked initialized, whose pieces are its children: an
// object member is a piece keyed by its name, an array element a piece with
// the empty key, a node child a TYPE_ORDER piece owning the child, and a
// boolean or number a text piece written bare ("true", "12").
//
// The base answers the queries that no kind supports with exception type
// 1075; each kind overrides the ones it supports. Children handed over as
// std::unique_ptr are taken at the call, also when the call then fails.
// Pointers to children returned by queries are borrowed from the tree.
//
// Rendering walks the tree with a stack of its own, not by recursion, so a
// tree of any depth renders (and is destroyed) without exhausting the call
// stack; only nodes of a class derived from the four, which may render in
// their own way, are asked to render themselves.
class PQJsonOrder : public PQOrder {
public:
    PQ_IDENTITY(PQJsonOrder)

    // The root of a tree sent as an order for `action`.
    explicit PQJsonOrder(PQReceivedOrderType action);
    PQJsonOrder(const PQJsonOrder& other);
    PQJsonOrder& operator=(const PQJsonOrder&) = delete;
    ~PQJsonOrder() override;

    // A deep copy of the same class; only while the kind is ORDER_JSONORDER.
    [[nodiscard]] std::unique_ptr<PQOrder> clone() const override;

    // "action=" + action name + "&content=" + get_jsonOrderString() + "&//".
    [[nodiscard]] PQSecuredString get_orderString() const override;
    // The JSON text of the node, in a new buffer (through the forms below).
    [[nodiscard]] PQSecuredString get_localOrderString() const override;
    [[nodiscard]] PQSecuredString get_localOrderString_noEscape() const override;
    // Appends the JSON text of the node to `out`, string values escaped
    // (backslash, double quote, line feed, tab, vertical tab, carriage
    // return, form feed) or as they are. Keys are never escaped. On failure
    // what was appended stays in `out`; it must not be sent.
    //   {"name":"a\"b","size":3,"tags":["x"]}
    void get_localOrderString(PQSourceOrderPieceWrapper& out) const override;
    void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const override;

    [[nodiscard]] virtual bool isJSonString() const;
    [[nodiscard]] virtual bool isJSonObject() const;
    [[nodiscard]] virtual bool isJSonArray() const;

    // Adds a node child under `key`: checked, or without the duplicate-key
    // check. A text is added as a new PQJsonString node.
    virtual void addValue(const kstring& key, std::unique_ptr<PQJsonOrder> value);
    virtual void addValue(const kstring& key, kstring value);
    virtual void addValue_noCheck(const kstring& key, std::unique_ptr<PQJsonOrder> value);
    virtual void addValue_noCheck(const kstring& key, kstring value);
    // Adds `value` as a text piece, written bare: a JSON literal or number.
    virtual void addValue_nostring(const kstring& key, const kstring& value);

    // The queries; here each fails with exception type 1075.
    [[nodiscard]] virtual bool hasChildren() const;
    [[nodiscard]] virtual PQJsonOrder* getChildValue(const kstring& key) const;
    [[nodiscard]] virtual kstring getChildValue_nostring(const kstring& key) const;
    [[nodiscard]] virtual std::vector<kstring> getKeys() const;
    [[nodiscard]] virtual bool childExists(const kstring& key) const;
    [[nodiscard]] virtual kstring getValue() const;
    [[nodiscard]] virtual std::vector<PQJsonOrder*> getChildrenValue() const;

    // Replaces the value of the first child under `key` (a node by a copy of
    // `value`); a missing key fails.
    virtual void updateValue(const kstring& key, std::unique_ptr<PQJsonOrder> value);
    virtual void updateValue(const kstring& key, kstring value);
    virtual void updateValue_nostring(const kstring& key, const kstring& value);
    // Removes the first child under `key`; nothing when there is none.
    virtual void removeValue(const kstring& key);

    // The JSON text made safe to travel as an order value: "&", "//" and "="
    // become their tokens and line feeds "--endl--".
    [[nodiscard]] PQSourceOrderWrapper get_jsonOrderString() const;

protected:
    // How a node writes itself.
    enum class Shape : std::uint8_t { Root, Object, Array, String };

    // Appends the tree under this node, written as `shape`, to `out`.
    void render(Shape shape, PQSourceOrderPieceWrapper& out, bool escape) const;
    // The node that the piece holds, when it is a JSON node; else null.
    [[nodiscard]] static PQJsonOrder* jsonNodeOf(const PQOrderPiece& piece) noexcept;
    // The text of a text piece, read in place; null for a nested order or a
    // piece moved from.
    [[nodiscard]] static const kstring* storedText(const PQOrderPiece& piece) noexcept;
    // What clone() requires, reported at `site`: the kind ORDER_JSONORDER.
    void checkCloneable(const PQ_DEBUG::PQTreatmentSite& site) const;
    // The text of a literal or number: "true", "12", "2.50" (two decimals).
    [[nodiscard]] static kstring valueText(bool value);
    [[nodiscard]] static kstring valueText(int value);
    [[nodiscard]] static kstring valueText(double value);

private:
    // render()'s writer, and the Walk over the tree that feeds it.
    class Writer;
    class Walk;
};

} // namespace PQ_UTILS
