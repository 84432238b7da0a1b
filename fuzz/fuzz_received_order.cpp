// Received order text, both ways of reading it: the same pieces, values that
// are the unescaped raw values, and no separator left in a key or a value.

#include "PQFuzz.h"
#include "PQUtils/Orders/ReceivedOrders/PQReceivedOrder.h"
#include "PQUtils/Utils/PQString.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQReceivedOrder;
    pqfuzz::startLibrary();
    const std::string text = pqfuzz::textOf(data, size);
    const auto raw =
        PQReceivedOrder::getOrderPiecesFromOrder(PQ_UTILS::PQSourceOrderWrapper(text), false);
    const auto read =
        PQReceivedOrder::getOrderPiecesFromOrder(PQ_UTILS::PQSourceOrderWrapper(text), true);
    pqfuzz::check(raw->size() == read->size(), "the same pieces either way");
    for (std::size_t i = 0; i < raw->size(); ++i) {
        const std::string& key = (*raw)[i].get_key();
        const std::string value = *(*raw)[i].get_pieceValue().getStringSource();
        pqfuzz::check(key == (*read)[i].get_key(), "the same keys either way");
        pqfuzz::check(key.find_first_of("&=") == std::string::npos, "a key holds no separator");
        pqfuzz::check(value.find_first_of("&=") == std::string::npos, "a value holds no separator");
        pqfuzz::check(*(*read)[i].get_pieceValue().getStringSource() ==
                          *PQ_UTILS::PQString::removePQEntities(value),
                      "a read value is its raw value unescaped");
    }
    return 0;
}
