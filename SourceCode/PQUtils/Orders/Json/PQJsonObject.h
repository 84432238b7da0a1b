#pragma once

#include <memory>
#include <vector>

#include "PQUtils/Orders/Json/PQJsonOrder.h"

namespace PQ_UTILS {

// A JSON object: its members are its pieces, in insertion order, keyed by
// their names (never sorted; a duplicate name is kept, and a lookup finds
// the first).
//   auto object = std::make_unique<PQJsonObject>();
//   object->addValue("name", "Ada");      // a string node
//   object->addValue("admin", true);      // a bare literal
//   object->getChildValue_nostring("admin") == "true"
class PQJsonObject : public PQJsonOrder {
public:
    PQ_IDENTITY(PQJsonObject)

    PQJsonObject();
    PQJsonObject(const PQJsonObject& other);
    PQJsonObject& operator=(const PQJsonObject&) = delete;
    ~PQJsonObject() override;

    [[nodiscard]] std::unique_ptr<PQOrder> clone() const override;

    using PQJsonOrder::get_localOrderString;
    using PQJsonOrder::get_localOrderString_noEscape;
    // {"key":value,...}; literals and numbers bare.
    void get_localOrderString(PQSourceOrderPieceWrapper& out) const override;
    void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const override;

    [[nodiscard]] bool isJSonObject() const override;

    using PQJsonOrder::addValue;
    using PQJsonOrder::updateValue;
    // A null node fails ("pieceValue.get()") and adds nothing.
    void addValue(const kstring& key, std::unique_ptr<PQJsonOrder> pieceValue) override;
    void addValue(const kstring& key, kstring value) override;
    void addValue_noCheck(const kstring& key, std::unique_ptr<PQJsonOrder> value) override;
    void addValue_noCheck(const kstring& key, kstring value) override;

    [[nodiscard]] bool hasChildren() const override;
    // The node of the first member named `key`; null when there is none or
    // when it is a literal or number (read those with the _nostring form).
    [[nodiscard]] PQJsonOrder* getChildValue(const kstring& key) const override;
    // The value text of the first member named `key` ("true", "12"); for a
    // node member what the node gives as its value; "" when there is none.
    [[nodiscard]] kstring getChildValue_nostring(const kstring& key) const override;
    // Every member name, in order, duplicates included.
    [[nodiscard]] std::vector<kstring> getKeys() const override;
    [[nodiscard]] bool childExists(const kstring& key) const override;

    void updateValue(const kstring& key, std::unique_ptr<PQJsonOrder> value) override;
    void updateValue(const kstring& key, kstring value) override;
    void removeValue(const kstring& key) override;

    // Literals and numbers (integers as plain decimals, doubles with two
    // decimals), written bare.
    virtual void addValue(const kstring& key, bool value);
    virtual void addValue(const kstring& key, int value);
    virtual void addValue(const kstring& key, double value);
    virtual void updateValue(const kstring& key, bool value);
    virtual void updateValue(const kstring& key, int value);
    virtual void updateValue(const kstring& key, double value);

    // A text given as a literal is a string, not the boolean true that the
    // pointer would otherwise convert to. A null pointer fails.
    void addValue(const kstring& key, const char* value);
    void updateValue(const kstring& key, const char* value);

private:
    // The first member named `key`, or null.
    [[nodiscard]] const PQOrderPiece* member(const kstring& key) const;
};

} // namespace PQ_UTILS
