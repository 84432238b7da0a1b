#include <array>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/PQException.h"
#include "PQUtils/Orders/Json/PQJsonArray.h"
#include "PQUtils/Orders/Json/PQJsonObject.h"
#include "PQUtils/Orders/Json/PQJsonOrder.h"
#include "PQUtils/Orders/Json/PQJsonString.h"
#include "PQUtils/Utils/PQString.h"
#include "support/OrderPasses.h"
#include "support/TestSupport.h"

using PQ_DEBUG::PQException;
using PQ_DEBUG::PQNullPointerException;
using PQ_UTILS::PQJsonArray;
using PQ_UTILS::PQJsonObject;
using PQ_UTILS::PQJsonOrder;
using PQ_UTILS::PQJsonString;
using PQ_UTILS::PQSourceOrderPieceWrapper;

namespace {

std::string rendered(const PQJsonOrder& node, bool escape = true) {
    PQSourceOrderPieceWrapper out;
    escape ? node.get_localOrderString(out) : node.get_localOrderString_noEscape(out);
    return *out.getStringSource();
}

std::string unescaped(const std::string& stored) {
    return *PQJsonString(stored).get_pieceValue().getStringSource();
}

// A node of a class of its own, written by its own renderer: JSON's null.
class JsonNull : public PQJsonOrder {
public:
    JsonNull() : PQJsonOrder(PQ_UTILS::PQReceivedOrderType_NO_TYPE) {}
    using PQJsonOrder::get_localOrderString;
    using PQJsonOrder::get_localOrderString_noEscape;
    void get_localOrderString(PQSourceOrderPieceWrapper& out) const override { out.append("null"); }
    void get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const override {
        out.append("null");
    }
};

// An object that refuses every piece, so that an add fails after the call
// has taken the child.
class RefusingObject : public PQJsonObject {
public:
    using PQJsonObject::add_orderPiece;
    void add_orderPiece(std::unique_ptr<PQ_UTILS::PQOrderPiece> /*piece*/) override {
        throw std::runtime_error("refused");
    }
};

// The string escapes, raw and escaped, in the writer's order; the reader
// undoes the control characters first and the backslash last. Applied row
// after row, they are what the one-pass forms must equal.
constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kEscapeRows{{{"\\", "\\\\"},
                                                                                    {"\"", "\\\""},
                                                                                    {"\n", "\\n"},
                                                                                    {"\t", "\\t"},
                                                                                    {"\v", "\\v"},
                                                                                    {"\r", "\\r"},
                                                                                    {"\f", "\\f"}}};

std::string escapedInPasses(std::string text) {
    for (const auto& [raw, escaped] : kEscapeRows) {
        PQ_UTILS::PQString::self_replace(text, std::string(raw), std::string(escaped));
    }
    return text;
}

std::string unescapedInPasses(std::string text) {
    for (const std::size_t row : {2, 3, 4, 5, 6, 1, 0}) {
        PQ_UTILS::PQString::self_replace(text, std::string(kEscapeRows[row].second),
                                         std::string(kEscapeRows[row].first));
    }
    return text;
}

} // namespace

TEST(PQJson, WorkedExampleByteForByte) {
    PQJsonOrder root(PQ_UTILS::PQReceivedOrderType_vordaApplicationResponse);
    root.addValue("orderType", "ORDER_JSONORDER");
    auto pieceValue = std::make_unique<PQJsonObject>();
    pieceValue->addValue("initialized", true);
    pieceValue->addValue("count", 3);
    root.addValue("pieceValue", std::move(pieceValue));
    auto keys = std::make_unique<PQJsonArray>();
    keys->addValue("x");
    keys->addValue("y");
    root.addValue("getKeys", std::move(keys));

    const std::string json = R"({"orderType":"ORDER_JSONORDER","pieceValue":)"
                             R"({"initialized":true,"count":3},"getKeys":["x","y"]})";
    EXPECT_EQ(rendered(root), json);
    EXPECT_EQ(*root.get_orderString().getStringSource(),
              "action=vordaApplicationResponse&content=" + json + "&//");
    EXPECT_EQ(*PQJsonOrder(PQ_UTILS::PQReceivedOrderType_log).get_orderString().getStringSource(),
              "action=log&content={}&//");
}

TEST(PQJson, StringValuesEscapeByteByByteAndReadBackInTheirOwnOrder) {
    struct Case {
        std::string stored, escaped, readBack;
    };
    const Case cases[] = {
        {"", R"("")", ""},
        {"a\"b\\c", R"("a\"b\\c")", "a\"b\\c"},
        {"\n\t\v\r\f", R"("\n\t\v\r\f")", "\n\t\v\r\f"},
        {"it's", R"("it's")", "it's"},   // the single quote is never escaped
        {"\\'", R"("\\'")", "\\'"},      // ... nor read back
        {"\\n", R"("\\n")", "\n"},       // "\n" is read before "\\"
        {"\\\\n", R"("\\\\n")", "\\\n"}, // so a rendered "\\n" reads as \ + line feed
        {"\x01/\xC3\xA9", "\"\x01/\xC3\xA9\"", "\x01/\xC3\xA9"}, // other bytes as they are
    };
    for (const Case& c : cases) {
        const PQJsonString node(c.stored);
        EXPECT_EQ(rendered(node), c.escaped) << c.stored;
        EXPECT_EQ(rendered(node, false), "\"" + c.stored + "\"") << c.stored;
        EXPECT_EQ(node.getValue(), c.stored);
        EXPECT_EQ(unescaped(c.stored), c.readBack) << c.stored;
    }
    EXPECT_EQ(unescaped("\\\\\\\""), "\\\"");
    EXPECT_EQ(rendered(PQJsonString()), R"("")");
    EXPECT_EQ(PQJsonString(std::unique_ptr<std::string>()).getValue(), "");
}

TEST(PQJson, OnePassEscapesMatchTheSequentialReplacements) {
    // The writer and the order text escape each in one pass; both must give
    // what replacing row after row gives, on any bytes (zero bytes too).
    std::mt19937 engine(5);
    const std::string alphabet("\\\"\n\t\v\r\f'=&/a\0", 13);
    for (int round = 0; round < 300; ++round) {
        std::string text;
        for (int i = std::uniform_int_distribution<>(0, 24)(engine); i > 0; --i) {
            text += alphabet[std::uniform_int_distribution<std::size_t>(0, 12)(engine)];
        }
        const std::string escaped = escapedInPasses(text);
        PQJsonObject object;
        object.addValue("k\n", text);
        const std::string json = "{\"k\n\":\"" + escaped + "\"}";
        ASSERT_EQ(rendered(object), json);

        ASSERT_EQ(*object.get_jsonOrderString().getStringSource(),
                  pqtest::orderEscapedInPasses(json, true));
    }
}

TEST(PQJson, OnePassReadingMatchesTheSequentialReplacements) {
    // Every text of up to six bytes over a backslash, a quote, two escape
    // letters and another byte, so runs of backslashes of every length meet
    // every byte that may follow them.
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i < texts.size() && texts[i].size() < 6; ++i) {
        for (const char next : std::string_view("\\\"ntx")) {
            texts.push_back(texts[i] + next);
        }
    }
    for (const std::string& text : texts) {
        ASSERT_EQ(unescaped(text), unescapedInPasses(text)) << text;
    }
}

TEST(PQJson, ObjectMembersAndTheirReaders) {
    PQJsonObject object;
    EXPECT_FALSE(object.hasChildren());
    EXPECT_TRUE(object.getKeys().empty());
    EXPECT_EQ(rendered(object), "{}");

    object.addValue("a", true);
    object.addValue("n", -12);
    object.addValue("d", 2.5);
    object.addValue("s", "v"); // a text, not the boolean a pointer converts to
    object.addValue_noCheck("s", std::string("again"));
    object.addValue("a\"b", 1); // keys are written as they are
    EXPECT_EQ(rendered(object), R"({"a":true,"n":-12,"d":2.50,"s":"v","s":"again","a"b":1})");
    EXPECT_EQ(object.getKeys(), (std::vector<std::string>{"a", "n", "d", "s", "s", "a\"b"}));

    EXPECT_EQ(object.getChildValue("a"), nullptr);
    EXPECT_EQ(object.getChildValue_nostring("a"), "true");
    EXPECT_TRUE(object.childExists("a"));
    ASSERT_NE(object.getChildValue("s"), nullptr);
    EXPECT_EQ(object.getChildValue("s")->getValue(), "v");
    EXPECT_EQ(object.getChildValue_nostring("s"), "v");
    EXPECT_EQ(object.getChildValue("missing"), nullptr);
    EXPECT_EQ(object.getChildValue_nostring("missing"), "");
    EXPECT_FALSE(object.childExists("missing"));

    object.updateValue("a", false);
    object.updateValue("s", "w");
    object.removeValue("n");
    object.removeValue("d");
    object.removeValue("a\"b");
    EXPECT_EQ(rendered(object), R"({"a":false,"s":"w","s":"again"})");
}

TEST(PQJson, ArrayElementsLiteralsAndRemovalByValue) {
    PQJsonArray array;
    EXPECT_FALSE(array.hasChildren());
    EXPECT_EQ(array.size(), 0U);
    EXPECT_EQ(rendered(array), "[]");
    array.addValue("x");
    array.addValue(std::make_unique<PQJsonObject>());
    array.addValue("x");
    ASSERT_EQ(array.getChildrenValue().size(), 3U);
    EXPECT_TRUE(array.getChildrenValue()[1]->isJSonObject());
    EXPECT_EQ(rendered(array), R"(["x",{},"x"])");
    array.removeValue("x"); // the first element of that value text
    EXPECT_EQ(rendered(array), R"([{},"x"])");
    array.addValue(std::make_unique<JsonNull>()); // a node of a class of its own renders itself
    EXPECT_EQ(rendered(array), R"([{},"x",null])");
    EXPECT_EQ(rendered(array, false), R"([{},"x",null])");

    PQJsonArray literals;
    literals.addValue(true);
    literals.addValue(7);
    literals.addValue(0.5);
    EXPECT_EQ(rendered(literals, false), "[true,7,0.50]");
    literals.removeValue("7");
    EXPECT_EQ(rendered(literals, false), "[true,0.50]");

    const pqtest::LogCapture capture;
    PQSourceOrderPieceWrapper out;
    EXPECT_EQ(pqtest::messageOf([&] { literals.get_localOrderString(out); }),
              "All Json children must be TYPE_ORDER PQOrderPiece");
    EXPECT_EQ(*out.getStringSource(), "["); // what was written stays
    const auto casted =
        pqtest::thrownBy<PQNullPointerException>([&] { (void)literals.getChildrenValue(); });
    ASSERT_TRUE(casted);
    EXPECT_EQ(casted->get_variable(), "castedOrder");
    // The root holds nodes only, in both renderings.
    PQJsonOrder root(PQ_UTILS::PQReceivedOrderType_log);
    root.addValue_nostring("n", "1");
    EXPECT_EQ(pqtest::messageOf([&] { (void)root.get_localOrderString_noEscape(); }),
              "All Json children must be TYPE_ORDER PQOrderPiece");
}

TEST(PQJson, QueriesAKindDoesNotAnswerFailWith1075) {
    const pqtest::LogCapture capture;
    const PQJsonOrder root(PQ_UTILS::PQReceivedOrderType_log);
    const PQJsonObject object;
    const PQJsonArray array;
    const PQJsonString string("s");
    const std::function<void()> refused[] = {
        [&] { (void)root.hasChildren(); },     [&] { (void)root.getChildrenValue(); },
        [&] { (void)object.getValue(); },      [&] { (void)object.getChildrenValue(); },
        [&] { (void)array.getKeys(); },        [&] { (void)array.getChildValue("k"); },
        [&] { (void)array.childExists("k"); }, [&] { (void)array.getValue(); },
        [&] { (void)string.hasChildren(); },   [&] { (void)string.getChildValue_nostring("k"); },
    };
    for (const auto& call : refused) {
        const auto failure = pqtest::thrownBy<PQException>(call);
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->get_exceptionType(), 1075);
        EXPECT_EQ(failure->get_message(), "");
    }
}

TEST(PQJson, ChildrenHandedOverAreTakenEvenWhenTheCallFails) {
    const pqtest::LogCapture capture;
    PQJsonObject object;
    const auto null = pqtest::thrownBy<PQNullPointerException>(
        [&] { object.addValue("k", std::unique_ptr<PQJsonOrder>()); });
    ASSERT_TRUE(null);
    EXPECT_EQ(null->get_message(), "Null variable : pieceValue.get() - ");
    EXPECT_FALSE(object.hasChildren());

    auto child = std::make_unique<PQJsonString>("x");
    EXPECT_THROW(object.updateValue("missing", std::move(child)), PQException);
    EXPECT_EQ(child, nullptr); // NOLINT(bugprone-use-after-move): taken, and freed
    EXPECT_FALSE(object.hasChildren());

    RefusingObject refusing;
    auto array = std::make_unique<PQJsonArray>();
    array->addValue("x");
    EXPECT_EQ(pqtest::messageOf([&] { refusing.addValue("k", std::move(array)); }), "refused");
    EXPECT_EQ(array, nullptr); // NOLINT(bugprone-use-after-move): taken, and freed
    EXPECT_FALSE(refusing.hasChildren());
}

TEST(PQJson, ClonesAreDeepAndKeepTheirClass) {
    PQJsonObject object;
    object.addValue("list", std::make_unique<PQJsonArray>());
    object.getChildValue("list")->addValue_noCheck("", "a");
    const std::unique_ptr<PQ_UTILS::PQOrder> copy = object.clone();
    object.getChildValue("list")->addValue_noCheck("", "b");
    EXPECT_EQ(copy->get_className_nonStatic(), "PQJsonObject");
    EXPECT_EQ(*copy->get_localOrderString().getStringSource(), R"({"list":["a"]})");
    EXPECT_EQ(object.getChildValue("list")->clone()->get_className_nonStatic(), "PQJsonArray");
    EXPECT_EQ(PQJsonString("s").clone()->get_className_nonStatic(), "PQJsonString");
    EXPECT_EQ(PQJsonOrder(PQ_UTILS::PQReceivedOrderType_log).clone()->get_objectType(),
              PQ_DEBUG::PQObjectType_PQJsonOrder);
}

TEST(PQJson, TreesTenThousandLevelsDeepRenderCopyAndDie) {
    // Rendering, copying and destruction go level by level, not by recursion.
    constexpr int kDepth = 10'000;
    std::unique_ptr<PQJsonOrder> node = std::make_unique<PQJsonString>("x");
    for (int level = 0; level < kDepth; ++level) {
        auto outer = level % 2 == 0 ? std::unique_ptr<PQJsonOrder>(std::make_unique<PQJsonArray>())
                                    : std::make_unique<PQJsonObject>();
        outer->addValue_noCheck("", std::move(node));
        node = std::move(outer);
    }
    std::string opening;
    std::string closing;
    for (int level = kDepth - 1; level >= 0; --level) {
        opening += level % 2 == 0 ? "[" : "{\"\":";
        closing += (kDepth - 1 - level) % 2 == 0 ? "]" : "}";
    }
    const std::string expected = opening + "\"x\"" + closing;
    EXPECT_EQ(rendered(*node), expected);
    EXPECT_EQ(rendered(*node, false), expected);
    EXPECT_EQ(*node->clone()->get_localOrderString().getStringSource(), expected);
}

TEST(PQJson, EscapingIsLinearOnAMebibyteOfQuotesAndBackslashes) {
    std::string value(1U << 20U, '"');
    for (std::size_t i = 0; i < value.size(); i += 2) {
        value[i] = '\\';
    }
    const std::string out = rendered(PQJsonString(value));
    EXPECT_EQ(out.size(), 2 * value.size() + 2);
    EXPECT_EQ(out.substr(0, 9), R"("\\\"\\\")");
    EXPECT_EQ(unescaped(out.substr(1, out.size() - 2)), value);
}

TEST(PQJson, RenderedTreesAreValidJsonToAnIndependentParser) {
    // Strings without the vertical tab or other raw control bytes, plain keys.
    std::mt19937 engine(3);
    const std::string alphabet = "ab \"\\/\n\t\r\f'{}[]:,";
    const auto randomText = [&] {
        std::string text;
        for (int i = std::uniform_int_distribution<>(0, 8)(engine); i > 0; --i) {
            text += alphabet[std::uniform_int_distribution<std::size_t>(0, alphabet.size() -
                                                                               1)(engine)];
        }
        return text;
    };
    using Json = nlohmann::ordered_json;
    const std::function<std::unique_ptr<PQJsonOrder>(Json&, int)> build = [&](Json& expected,
                                                                              int depth) {
        const int kind = depth == 0 ? 0 : std::uniform_int_distribution<>(0, 2)(engine);
        if (kind == 0) {
            expected = randomText();
            return std::unique_ptr<PQJsonOrder>(
                std::make_unique<PQJsonString>(expected.get<std::string>()));
        }
        const int members = std::uniform_int_distribution<>(0, 4)(engine);
        if (kind == 1) {
            auto array = std::make_unique<PQJsonArray>();
            expected = Json::array();
            for (int i = 0; i < members; ++i) {
                array->addValue(build(expected.emplace_back(), depth - 1));
            }
            return std::unique_ptr<PQJsonOrder>(std::move(array));
        }
        auto object = std::make_unique<PQJsonObject>();
        expected = Json::object();
        for (int i = 0; i < members; ++i) {
            const std::string key = "k" + std::to_string(i);
            if (i % 3 == 2) {
                object->addValue(key, i * 7 - 10);
                expected[key] = i * 7 - 10;
            } else {
                object->addValue(key, build(expected[key], depth - 1));
            }
        }
        return std::unique_ptr<PQJsonOrder>(std::move(object));
    };
    for (int round = 0; round < 100; ++round) {
        Json expected;
        const std::unique_ptr<PQJsonOrder> tree = build(expected, 4);
        const std::string json = rendered(*tree);
        ASSERT_TRUE(Json::accept(json)) << json;
        EXPECT_EQ(Json::parse(json), expected) << json;
    }
}

// The writer guesses its first room from the root's pieces and doubles it
// when it runs out: texts just under, at and over the guess, and far over,
// come out whole, also after text already in the output.
TEST(PQJson, RenderingGrowsPastItsFirstRoom) {
    for (const std::size_t length : {0, 50, 56, 57, 58, 63, 64, 65, 200, 100000}) {
        for (const std::string_view before : {"", "already here "}) {
            std::string value(length, 'v');
            for (std::size_t i = 0; i < length; i += 7) {
                value[i] = "\"\\\n"[i % 3];
            }
            PQJsonObject object;
            object.addValue("k", value);
            PQSourceOrderPieceWrapper out;
            out.append(before);
            object.get_localOrderString(out);
            EXPECT_EQ(*out.getStringSource(),
                      std::string(before) + "{\"k\":\"" + escapedInPasses(value) + "\"}")
                << length;
        }
    }
}
