#pragma once

// The text of a flat order, written and read in one place each: PQOrder
// writes its pieces and PQReceivedOrder reads them back through these, and
// callers that need no tree (the JavaScript package) use them on views.

#include <cstddef>
#include <span>
#include <string_view>

#include "PQUtils/Orders/PQSourceOrderWrapper.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS::internal {

// A key as it stands, and its value before escaping.
struct OrderTextPiece {
    std::string_view key;
    std::string_view value;
};

// "action=ACTION&KEY=ESCAPED VALUE...&//" appended to `out`, which is sized
// once for the whole text first, so that it never moves and leaves no copy
// of a value unwiped. An action without a name has no text.
void appendOrderText(kstring& out, std::string_view action, std::span<const OrderTextPiece> pieces);

// What reading order text finds, in order: the pieces, with their value as
// it stands in the text, and the elements dropped as malformed (each
// already reported to the log when the sink hears of it).
class OrderTextSink {
public:
    OrderTextSink() = default;
    OrderTextSink(const OrderTextSink&) = delete;
    OrderTextSink& operator=(const OrderTextSink&) = delete;
    virtual ~OrderTextSink() = default;

    // A bound on the number of elements, before the first.
    virtual void expect(std::size_t /*elements*/) {}
    virtual void piece(std::string_view key, std::string_view rawValue) = 0;
    virtual void dropped(std::size_t index, std::string_view element, std::string_view reason) = 0;
};

// The value of a piece as the reader keeps it, appended to `out`: with
// `removeEntities`, its escape tokens restored.
void appendOrderValue(kstring& out, std::string_view rawValue, bool removeEntities);

// Reads order text into `sink`: one element per "&"-separated part, empty
// ones skipped, the end mark "//" ignored; an element without exactly one
// "=" is reported and dropped, and so is one whose piece the sink fails to
// take. (Named as the reader's entry point, whose reports it writes.)
void getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, OrderTextSink& sink);

} // namespace PQ_UTILS::internal
