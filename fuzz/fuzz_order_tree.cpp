// Orders and JSON trees built from the input, rendered, and read back: the
// reader gives back every piece, and a JSON reader the tree that was built.

#include <memory>
#include <nlohmann/json.hpp>

#include "PQFuzz.h"
#include "PQUtils/PQUtils.h"

namespace {

using namespace PQ_UTILS;
using Json = nlohmann::ordered_json;

// The input read as a stream of choices; zeros once it is used up.
class Choices {
public:
    Choices(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    unsigned int next(unsigned int bound) {
        if (m_size == 0) {
            return 0;
        }
        --m_size;
        return *m_data++ % bound; // NOLINT: a walk over the input
    }
    std::string text(std::string_view alphabet, unsigned int longest) {
        std::string chosen(next(longest + 1), ' ');
        for (char& c : chosen) {
            c = alphabet[next(static_cast<unsigned int>(alphabet.size()))];
        }
        return chosen;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};

constexpr std::string_view kKeys = "abcdefghijklmnopqrstuvwxyz0123456789_.";
// Values hold every separator and escape, but no "-" nor letter of a token
// word (which can join the writer's own dashes into a token), no zero byte
// (which ends the escaping) and only whole UTF-8 characters.
constexpr std::string_view kStrings = "xyz =&/\"\\\n\t\r\f'{}[]:,~";

void checkPlainOrder(Choices& choices) {
    PQOrder order(PQReceivedOrderType_log, PQOrderType_ORDER_NORMAL);
    std::vector<std::pair<std::string, std::string>> expected{{"action", "log"}};
    for (unsigned int i = choices.next(12); i > 0; --i) {
        std::string key = choices.text(kKeys, 6) + "k";
        std::string value = choices.text(kStrings, 20);
        order.add_orderPiece_noCheck(key, value);
        expected.emplace_back(std::move(key), std::move(value));
    }
    const PQSecuredString text = order.get_orderString();
    const auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
        PQSourceOrderWrapper(*text.getStringSource()), true);
    pqfuzz::check(pieces->size() == expected.size(), "every piece read back");
    for (std::size_t i = 0; i < expected.size(); ++i) {
        pqfuzz::check((*pieces)[i].get_key() == expected[i].first &&
                          *(*pieces)[i].get_pieceValue().getStringSource() == expected[i].second,
                      "every piece as written");
    }
}

std::unique_ptr<PQJsonOrder> buildNode(Choices& choices, int depth, Json& expected);

// Members of an object: strings, numbers, booleans and nested nodes.
std::unique_ptr<PQJsonObject> buildObject(Choices& choices, int depth, Json& expected) {
    auto object = std::make_unique<PQJsonObject>();
    expected = Json::object();
    for (unsigned int i = choices.next(5); i > 0; --i) {
        const std::string key = choices.text(kKeys, 4) + std::to_string(i);
        switch (choices.next(depth > 0 ? 4 : 3)) {
        case 0: {
            const std::string value = choices.text(kStrings, 12);
            object->addValue(key, value);
            expected[key] = value;
            break;
        }
        case 1: {
            const int value = static_cast<int>(choices.next(2000)) - 1000;
            object->addValue(key, value);
            expected[key] = value;
            break;
        }
        case 2: {
            const bool value = choices.next(2) == 1;
            object->addValue(key, value);
            expected[key] = value;
            break;
        }
        default:
            object->addValue(key, buildNode(choices, depth - 1, expected[key]));
        }
    }
    return object;
}

// A string, an object, or an array of nodes (arrays hold no bare literals in
// order text).
std::unique_ptr<PQJsonOrder> buildNode(Choices& choices, int depth, Json& expected) {
    switch (choices.next(depth > 0 ? 3 : 1)) {
    case 0: {
        const std::string value = choices.text(kStrings, 12);
        expected = value;
        return std::make_unique<PQJsonString>(value);
    }
    case 1:
        return buildObject(choices, depth, expected);
    default: {
        auto array = std::make_unique<PQJsonArray>();
        expected = Json::array();
        for (unsigned int i = choices.next(4); i > 0; --i) {
            Json element;
            array->addValue(buildNode(choices, depth - 1, element));
            expected.push_back(std::move(element));
        }
        return array;
    }
    }
}

void checkJsonOrder(Choices& choices) {
    PQJsonOrder root(PQReceivedOrderType_log);
    Json expected = Json::object();
    for (unsigned int i = choices.next(4); i > 0; --i) {
        const std::string key = choices.text(kKeys, 4) + std::to_string(i);
        root.addValue(key, buildNode(choices, 4, expected[key]));
    }
    const PQSecuredString text = root.get_orderString();
    const auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
        PQSourceOrderWrapper(*text.getStringSource()), true);
    pqfuzz::check(pieces->size() == 2 && (*pieces)[1].get_key() == "content",
                  "a JSON order is its action and its content");
    const Json content =
        Json::parse(*(*pieces)[1].get_pieceValue().getStringSource(), nullptr, false);
    pqfuzz::check(!content.is_discarded(), "the content is JSON");
    pqfuzz::check(content == expected, "the content is the tree built");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pqfuzz::startLibrary();
    Choices choices(data, size);
    checkPlainOrder(choices);
    checkJsonOrder(choices);
    return 0;
}
