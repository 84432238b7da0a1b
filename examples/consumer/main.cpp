// Starts the library, names an action and an order kind both ways, and shuts
// the library down. Exits with 0 when every answer is the expected one.

#include <cstdio>

#include "PQUtils/PQUtils.h"

int main() {
    using namespace PQ_UTILS;
    PQInit::init();

    const kstring* action = PQ_DEBUG::getWstringFromIntT<PQReceivedOrderType>(
        PQ_DEBUG::PQObjectType_PQReceivedOrderType, PQReceivedOrderType_askLogin,
        &initialize_public_PQReceivedOrderType);
    const PQOrderType kind = PQ_DEBUG::getIntFromWstringT<PQOrderType>(
        PQ_DEBUG::PQObjectType_PQOrderType, "ORDER_JSONORDER", &initialize_public_PQOrderType);
    std::printf("action 13 is %s, ORDER_JSONORDER is %d\n", action->c_str(), kind);
    const bool ok = *action == "askLogin" && kind == PQOrderType_ORDER_JSONORDER &&
                    PQString().get_objectType() == PQ_DEBUG::PQObjectType_PQString;

    PQInit::clean();
    return ok ? 0 : 1;
}
