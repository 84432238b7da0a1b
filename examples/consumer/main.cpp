// Starts the library, names an action and an order kind both ways, renders
// an order and reads it back, sends a JSON order, and shuts the library
// down, after checking a card number. Exits with 0 when every answer is the expected one.

#include <cstdio>
#include <memory>
#include <utility>

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
    PQOrder order(PQReceivedOrderType_askLogin, PQOrderType_ORDER_NORMAL);
    order.add_orderPiece("url", "https://a.example/?q=1&r=2");
    const PQSecuredString text = order.get_orderString();
    const auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
        PQSourceOrderWrapper(*text.getStringSource()), true);
    std::printf("%s\n", text.getStringSource()->c_str());

    PQJsonOrder answer(PQReceivedOrderType_vordaApplicationResponse);
    auto user = std::make_unique<PQJsonObject>();
    user->addValue("name", "Ada");
    user->addValue("admin", true);
    answer.addValue("user", std::move(user));
    const PQSecuredString json = answer.get_orderString();
    std::printf("%s\n", json.getStringSource()->c_str());

    const bool cardOk = PQCreditCardNumberValidator::isCardNumberValid("4111111111111111") &&
                        PQCreditCardNumberValidator::getCardType("4111111111111111") ==
                            PQCreditCardNumberValidator::CREDITCARD_VISA;

    const bool ok =
        cardOk && *action == "askLogin" && kind == PQOrderType_ORDER_JSONORDER &&
        PQString().get_objectType() == PQ_DEBUG::PQObjectType_PQString && pieces->size() == 2 &&
        *(*pieces)[1].get_pieceValue().getStringSource() == "https://a.example/?q=1&r=2" &&
        *json.getStringSource() == "action=vordaApplicationResponse&content="
                                   R"({"user":{"name":"Ada","admin":true}})"
                                   "&//";

    PQInit::clean();
    return ok ? 0 : 1;
}
