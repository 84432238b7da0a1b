#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PQUtils/Orders/PQOrderPiece.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/PQSourceOrderPieceWrapper.h"
#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQSecuredString.h"

namespace PQ_UTILS {

class PQOrder_p;

// An order: a kind, an action and an ordered list of key/value pieces, the
// message that the application, its plug-ins and the page scripts exchange.
// Its text is "action=" + action name + ("&" + key + "=" + escaped value)*
// + "&//".
//
// Pieces handed over as std::unique_ptr are taken at once, also when the
// call then fails. Keys are compared exactly; duplicates are kept, and a
// lookup finds the first. Orders are copied deeply and never assigned.
// The JSON orders derive from it and override the virtual operations.
class PQOrder : public PQIdentifiable {
public:
    PQ_IDENTITY(PQOrder)

    // No action (NO_TYPE, -1), no pieces.
    explicit PQOrder(PQOrderType type);
    PQOrder(PQReceivedOrderType action, PQOrderType type);
    // A deep copy: kind, action, initialized flag and every piece.
    PQOrder(const PQOrder& order);

    // A new deep copy; only orders of kind ORDER_NORMAL or ORDER_AUTH_STATUS.
    [[nodiscard]] virtual std::unique_ptr<PQOrder> clone() const;
    ~PQOrder() override;
    // Always fails (exception type 1075): orders are never assigned.
    PQOrder& operator=(const PQOrder& order);

    // Appends the piece; no check of the key in a plain order. Each of the
    // key/value and key/order forms builds the piece and calls the matching
    // piece form, so an override of that one covers all three.
    virtual void add_orderPiece(std::unique_ptr<PQOrderPiece> piece);
    virtual void add_orderPiece_noCheck(std::unique_ptr<PQOrderPiece> piece);
    virtual void add_orderPiece(const std::string& key, const std::string& value);
    virtual void add_orderPiece_noCheck(const std::string& key, const std::string& value);
    virtual void add_orderPiece(const std::string& key, std::unique_ptr<PQOrder> order);
    virtual void add_orderPiece_noCheck(const std::string& key, std::unique_ptr<PQOrder> order);

    // Replaces the value of the first piece with the piece's key (a nested
    // order by a clone of the given one, a text by its text); the piece keeps
    // its place and type. A missing key fails ("Trying to update a value that
    // does not exist for key: " + key).
    virtual void update_orderPiece(std::unique_ptr<PQOrderPiece> piece);
    virtual void update_orderPiece(const std::string& key, const std::string& value);
    virtual void update_orderPiece(const std::string& key, std::unique_ptr<PQOrder> order);

    // Removes the first piece with the piece's key; nothing when none.
    virtual void delete_orderPiece(std::unique_ptr<PQOrderPiece> piece);
    virtual void delete_orderPiece(const std::string& key);
    // Removes the first piece whose value text is the piece's value text.
    virtual void delete_orderPieceValue(std::unique_ptr<PQOrderPiece> piece);
    virtual void delete_orderPieceValue(const std::string& value);

    // The order text; an action without a name fails.
    //   action=log&level=3&text=hi&//
    [[nodiscard]] virtual PQSecuredString get_orderString() const;
    // What the virtual get_orderString() gives.
    [[nodiscard]] virtual PQSecuredString get_orderString_Debug() const;
    // The rendering of an order that is the value of a piece. A plain order
    // has none: each fails with "this must must not be called" (the doubled
    // word is the product's); the JSON orders supply them.
    [[nodiscard]] virtual PQSecuredString get_localOrderString() const;
    [[nodiscard]] virtual PQSecuredString get_localOrderString_noEscape() const;
    virtual void get_localOrderString(PQSourceOrderPieceWrapper& out) const;
    virtual void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const;
    [[nodiscard]] virtual PQSecuredString get_pieceValue() const;

    // The name of the action (not its value); an action without a name fails.
    [[nodiscard]] kstring get_action() const;
    void set_action(PQReceivedOrderType action);
    // The first piece with `key`, or null; owned by the order.
    [[nodiscard]] const PQOrderPiece* get_orderPiece(const std::string& key) const;
    [[nodiscard]] bool orderPieceExists(const std::string& key) const;
    // The pieces in insertion order.
    [[nodiscard]] const std::vector<std::unique_ptr<PQOrderPiece>>& get_listOrderPiece() const;
    [[nodiscard]] bool get_initialized() const;
    void set_initialized(bool initialized);
    [[nodiscard]] PQOrderType get_orderType() const;

private:
    friend class PQJsonOrder; // its writer reads the state of every node in place

    // Logs the creation or destruction of an order of the one kind whose
    // life the product traces (ORDER_CHANGELANGUAGE).
    void traceLife(const char* source, const char* verb) const;
    [[nodiscard]] PQOrderPiece* findPiece(const std::string& key) const;
    // Copies the pieces of `original`, and of every order nested in them.
    void copyTreeOf(const PQOrder& original);

    std::unique_ptr<PQOrder_p> m_pPrivateImp;
};

} // namespace PQ_UTILS
