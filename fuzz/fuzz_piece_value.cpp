// The direct look-up of a value in order text, key and text both from the
// input: what it finds is a part of the text, nothing when the key is
// absent, and a failure only when the "=" or the "//" after the key is
// missing.

#include "PQDebug/PQException.h"
#include "PQFuzz.h"
#include "PQUtils/Orders/ReceivedOrders/PQReceivedOrder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pqfuzz::startLibrary();
    const auto [key, order] = pqfuzz::split(pqfuzz::textOf(data, size));
    const std::size_t at = order.find(key);
    try {
        const std::string value =
            PQ_UTILS::PQReceivedOrder::getOrderPieceValueFromOrder(order, key);
        pqfuzz::check(order.find(value) != std::string::npos, "the value is a part of the order");
        pqfuzz::check(at != std::string::npos || value.empty(), "an absent key has no value");
    } catch (const PQ_DEBUG::PQException& failure) {
        const std::size_t equals = at == std::string::npos ? at : order.find('=', at);
        const std::string expected = equals == std::string::npos
                                         ? "posValue != kstring::npos should be true"
                                         : "posValueEnd != kstring::npos should be true";
        pqfuzz::check(at != std::string::npos && std::string(failure.what()) == expected,
                      R"(fails only without its "=" or its "//")");
    }
    return 0;
}
