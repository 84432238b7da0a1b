#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "PQUtils/Orders/PQOrderPiece.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/PQSourceOrderPieceWrapper.h"
#include "PQUtils/Orders/PQSourceOrderWrapper.h"
#include "PQUtils/Orders/ReceivedOrders/PQITimeCounter.h"
#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// An element of order text that parsing dropped: where it stands among the
// "&"-separated elements of the text (the first is 0, empty ones counted),
// its text as received, and why: "not key=value" for an element without
// exactly one "=", else the message of the failure that stopped it.
struct PQDroppedElement {
    std::size_t index = 0;
    kstring element;
    kstring reason;
};

// An order received as text from the other side (the application, a
// plug-in, a page script), read back into key/value pieces. Concrete
// received orders derive from it and supply treatOrder().
//
//   auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
//       PQSourceOrderWrapper("action=open&id=12&//"), true);  // (action, open), (id, 12)
//   order.set_listOrderPiece(std::move(pieces));
//   order.getValueFromKeyOptional("id");                       // "12"
class PQReceivedOrder : public PQIdentifiable {
public:
    PQ_IDENTITY(PQReceivedOrder)

    using PieceList = std::vector<PQOrderPiece>;

    explicit PQReceivedOrder(PQReceivedOrderType type);
    // Copies the type, the received text, the user fields and the counter,
    // but neither the pieces nor the id: a copy must be parsed again before
    // its pieces are read.
    PQReceivedOrder(const PQReceivedOrder& other);
    PQReceivedOrder& operator=(const PQReceivedOrder&) = delete;
    ~PQReceivedOrder() override;

    // The hook of derived orders; does nothing here.
    virtual void performSpecificTreatments();
    virtual void treatOrder() = 0;

    [[nodiscard]] PQReceivedOrderType get_receivedOrderType() const;
    // The parsed pieces, owned by the order; null until a list is installed.
    [[nodiscard]] PieceList* get_listOrderPiece() const;
    // Installs `list` (the caller's pointer is left null) and frees the
    // previous one.
    void set_listOrderPiece(std::unique_ptr<PieceList> list);
    [[nodiscard]] PQSourceOrderWrapper get_orderStringReceived() const;
    void set_id(const kstring& id);
    [[nodiscard]] const kstring& get_id() const;
    // The counter of the age checks; not owned, null switches them off.
    void setCounter(PQITimeCounter* counter);

    // Reads order text ("action=open&id=12&//") into pieces, in text order,
    // duplicates kept; each value is unescaped when `removeEntities` is set.
    // A malformed element (no "=" or more than one) is reported and
    // skipped; the rest is read.
    [[nodiscard]] static std::unique_ptr<PieceList>
    getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, bool removeEntities);
    // The same, and each element dropped is also appended to `dropped`, for
    // callers that show the drops themselves (the log reports them as
    // before).
    //   "a=1&junk&b=2&//" -> (a, 1), (b, 2); dropped: {1, "junk", "not key=value"}
    [[nodiscard]] static std::unique_ptr<PieceList>
    getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, bool removeEntities,
                            std::vector<PQDroppedElement>& dropped);
    // The text from the "=" after the first occurrence of `key` anywhere in
    // `order` up to the next "//"; empty when `key` does not occur.
    //   getOrderPieceValueFromOrder("action=open&id=12&//", "id") -> "12&"
    [[nodiscard]] static kstring getOrderPieceValueFromOrder(const kstring& order,
                                                             const kstring& key);

    // The first piece with `key`, or null. Fails ("Vector is NULL") when no
    // list is installed.
    [[nodiscard]] const PQOrderPiece* get_orderPiece(const kstring& key) const;
    // The piece of key name + "[" + index + "]".
    [[nodiscard]] const PQOrderPiece* get_orderPiece(const kstring& name,
                                                     const kstring& index) const;
    // Appends a text piece to the installed list.
    void add_orderPiece(const kstring& key, const kstring& value);
    // The value of the first piece with `key`; empty when there is none.
    [[nodiscard]] PQSourceOrderPieceWrapper getValueFromKeyOptional(const kstring& key) const;
    // The value for the key second + "[" + first + "]" (note the order).
    [[nodiscard]] PQSourceOrderPieceWrapper getValueFromKeyOptional(const kstring& first,
                                                                    const kstring& second) const;
    // The value of the first piece with `key`; a null-variable failure
    // ("orderPiece") when there is none.
    [[nodiscard]] PQSourceOrderPieceWrapper getValueFromKeyRequired(const kstring& key) const;

    // Age checks against the counter: an age (ms) at or over `msecsMax`, or
    // negative, is reported through the debug library and the call returns
    // normally. Only the low 32 bits of the age are compared. Without a
    // counter nothing is measured and `msecs` is left as it is.
    void verifyOrderNotTreatedSinceMoreThan(unsigned int msecsMax) const;
    void verifyOrderNotTreatedSinceMoreThan(unsigned int msecsMax, long long& msecs) const;
    // The same; the report names the caller: description + " - from:" + from.
    void assertOrderNotTreatedSinceMoreThan(unsigned int msecsMax, long long& msecs,
                                            const kstring& from) const;

protected:
    // Filled by derived orders with the text they received.
    PQSourceOrderWrapper m_orderStringReceived;
    // Two values of the derived orders' own, copied with the order.
    std::uint64_t m_userData1 = 0;
    std::uint64_t m_userData2 = 0;

private:
    struct AgeCheckTexts;
    // Both forms above; `dropped` may be null. Named as they are, since its
    // reports name the function.
    [[nodiscard]] static std::unique_ptr<PieceList>
    getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, bool removeEntities,
                            std::vector<PQDroppedElement>* dropped);
    void checkAge(unsigned int msecsMax, long long& msecs, const AgeCheckTexts& texts,
                  const kstring* from, const char* function) const;

    PQReceivedOrderType m_receivedOrderType;
    std::unique_ptr<PieceList> m_listOrderPiece;
    kstring m_id;
    PQITimeCounter* m_counter = nullptr;
};

} // namespace PQ_UTILS
