#include "PQUtils/Orders/ReceivedOrders/PQReceivedOrder.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/PQException.h"
#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQOrder.h"
#include "support/OrderVectors.h"
#include "support/TestSupport.h"

using PQ_UTILS::PQReceivedOrder;
using PQ_UTILS::PQSourceOrderWrapper;
using Pieces = std::vector<std::pair<std::string, std::string>>;

namespace {

class TestOrder : public PQReceivedOrder {
public:
    TestOrder() : PQReceivedOrder(PQ_UTILS::PQReceivedOrderType_log) {}
    void treatOrder() override {}
    void receive(const std::string& text) { m_orderStringReceived = PQSourceOrderWrapper(text); }
};

class FixedCounter : public PQ_UTILS::PQITimeCounter {
public:
    FixedCounter(long long age, std::string description)
        : m_age(age), m_description(std::move(description)) {}
    void start() override {}
    long long getElapsedMsecs() const override { return m_age; }
    void restart() override {}
    const std::string& getDescription() const override { return m_description; }

private:
    long long m_age;
    std::string m_description;
};

Pieces parse(const std::string& text, bool removeEntities = true) {
    const auto parsed =
        PQReceivedOrder::getOrderPiecesFromOrder(PQSourceOrderWrapper(text), removeEntities);
    Pieces pieces;
    for (const auto& piece : *parsed) {
        pieces.emplace_back(piece.get_key(), *piece.get_pieceValue().getStringSource());
    }
    return pieces;
}

std::string valueOf(const PQ_UTILS::PQSecuredString& value) { return *value.getStringSource(); }

} // namespace

TEST(PQReceivedOrder, SharedVectorsRenderAndReadBack) {
    const auto vectors = pqtest::readOrderVectors(PQ_TEST_DATA_DIR "/orders.txt");
    ASSERT_GE(vectors.size(), 10U);
    for (const pqtest::OrderVector& vector : vectors) {
        SCOPED_TRACE(vector.name);
        PQ_UTILS::PQOrder order(PQ_DEBUG::getIntFromWstringT<PQ_UTILS::PQReceivedOrderType>(
                                    PQ_DEBUG::PQObjectType_PQReceivedOrderType, vector.action,
                                    &PQ_UTILS::initialize_public_PQReceivedOrderType),
                                PQ_UTILS::PQOrderType_ORDER_NORMAL);
        for (const auto& [key, value] : vector.pieces) {
            order.add_orderPiece(key, value);
        }
        EXPECT_EQ(*order.get_orderString().getStringSource(), vector.text);

        const pqtest::LogCapture quiet;
        Pieces expected{{"action", vector.action}};
        expected.insert(expected.end(), vector.pieces.begin(), vector.pieces.end());
        if (vector.oneway.empty()) {
            EXPECT_EQ(parse(vector.text), expected);
        } else {
            EXPECT_NE(parse(vector.text), expected);
        }
    }
}

TEST(PQReceivedOrder, ParsesElementsAndReportsTheMalformed) {
    // The drops are the reported elements, each with its index among the
    // "&"-separated elements, empty ones counted.
    using Drops = std::vector<std::pair<std::size_t, std::string>>;
    struct Case {
        std::string text;
        bool removeEntities;
        Pieces pieces;
        Drops dropped;
    };
    const std::vector<Case> cases{
        {"action=open&id=12&//", false, {{"action", "open"}, {"id", "12"}}, {}},
        {"action=open&id=12&", false, {{"action", "open"}, {"id", "12"}}, {}},
        {"action=open&id=12", false, {{"action", "open"}, {"id", "12"}}, {}},
        {"a=1&&b=2", true, {{"a", "1"}, {"b", "2"}}, {}},
        {"a=1&junk&b=2&//", true, {{"a", "1"}, {"b", "2"}}, {{1, "junk"}}},
        {"a=1=2&//", true, {}, {{0, "a=1=2"}}},
        {"&&x&y=1&=&//&z==", true, {{"y", "1"}, {"", ""}}, {{2, "x"}, {6, "z=="}}},
        {"a=&=x&//", true, {{"a", ""}, {"", "x"}}, {}},
        {"//", true, {}, {}},
        {"", true, {}, {}},
        {"a=1&////", true, {{"a", "1"}}, {}}, // one end mark removed, then "//" skipped
        {"v=x--amp--y&//", true, {{"v", "x&y"}}, {}},
        {"v=x--amp--y&//", false, {{"v", "x--amp--y"}}, {}},
        {"v=--amp--equ--&//", true, {{"v", "--amp="}}, {}}, // the tokens go in sequence
        {" k = v &//", true, {{" k ", " v "}}, {}},
        {std::string("k=a\0b&z\0=1", 10),
         true,
         {{"k", std::string("a\0b", 3)}, {std::string("z\0", 2), "1"}},
         {}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.text);
        const pqtest::LogCapture capture;
        EXPECT_EQ(parse(each.text, each.removeEntities), each.pieces);
        EXPECT_EQ(capture.count(), each.dropped.size());
        std::vector<PQ_UTILS::PQDroppedElement> dropped;
        const auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
            PQSourceOrderWrapper(each.text), each.removeEntities, dropped);
        EXPECT_EQ(pieces->size(), each.pieces.size());
        Drops drops;
        for (const PQ_UTILS::PQDroppedElement& drop : dropped) {
            EXPECT_EQ(drop.reason, "not key=value");
            drops.emplace_back(drop.index, drop.element);
        }
        EXPECT_EQ(drops, each.dropped);
    }
}

TEST(PQReceivedOrder, MalformedElementReportNamesElementAndOrder) {
    const pqtest::LogCapture capture;
    EXPECT_EQ(parse("a=1&junk&b==2&//").size(), 1U);
    const auto records = capture.records();
    ASSERT_EQ(records.size(), 2U);
    for (const auto& record : records) {
        EXPECT_EQ(record.logType, PQ_DEBUG::PQLogType_EXCEPTION);
        EXPECT_NE(record.text.find("treated in getOrderPiecesFromOrder"), std::string::npos);
        EXPECT_NE(record.text.find(" - getOrderPiecesFromOrder_2 - order: a=1&junk&b==2&//: "),
                  std::string::npos);
    }
    EXPECT_NE(records[0].text.find("key_value->size() == 2 should be true\nPrecisions : "
                                   "blibli2 - junk - raised in getOrderPiecesFromOrder"),
              std::string::npos);
    EXPECT_NE(records[1].text.find("blibli2 - b==2 - raised"), std::string::npos);
}

TEST(PQReceivedOrder, ReadsOneValueStraightFromTheText) {
    const std::string order = "action=open&id=12&//";
    EXPECT_EQ(PQReceivedOrder::getOrderPieceValueFromOrder(order, "id"), "12&");
    EXPECT_EQ(PQReceivedOrder::getOrderPieceValueFromOrder(order, "action"), "open&id=12&");
    EXPECT_EQ(PQReceivedOrder::getOrderPieceValueFromOrder(order, "ope"), "12&"); // inside a value
    EXPECT_EQ(PQReceivedOrder::getOrderPieceValueFromOrder(order, "zz"), "");

    const pqtest::LogCapture quiet;
    EXPECT_EQ(pqtest::messageOf(
                  [] { (void)PQReceivedOrder::getOrderPieceValueFromOrder("id=12", "id"); }),
              "posValueEnd != kstring::npos should be true");
    EXPECT_EQ(pqtest::messageOf(
                  [] { (void)PQReceivedOrder::getOrderPieceValueFromOrder("id&//", "id"); }),
              "posValue != kstring::npos should be true");
}

TEST(PQReceivedOrder, LooksPiecesUpByKeyAndIndex) {
    TestOrder order;
    const pqtest::LogCapture quiet;
    EXPECT_EQ(pqtest::messageOf([&] { (void)order.get_orderPiece("a"); }), "Vector is NULL");

    order.set_listOrderPiece(PQReceivedOrder::getOrderPiecesFromOrder(
        PQSourceOrderWrapper("a=1&items[3]=x&a=2&//"), true));
    order.add_orderPiece("b", "y");
    EXPECT_EQ(order.get_listOrderPiece()->size(), 4U);
    EXPECT_EQ(valueOf(order.get_orderPiece("a")->get_pieceValue()), "1");
    EXPECT_EQ(order.get_orderPiece("items", "3")->get_key(), "items[3]");
    EXPECT_EQ(valueOf(order.getValueFromKeyOptional("3", "items")), "x");
    EXPECT_EQ(valueOf(order.getValueFromKeyOptional("b")), "y");
    EXPECT_EQ(valueOf(order.getValueFromKeyOptional("zz")), "");
    EXPECT_EQ(valueOf(order.getValueFromKeyRequired("b")), "y");

    const auto missing = pqtest::thrownBy<PQ_DEBUG::PQNullPointerException>(
        [&] { (void)order.getValueFromKeyRequired("zz"); });
    ASSERT_TRUE(missing.has_value());
    EXPECT_EQ(missing->get_variable(), "orderPiece");
    EXPECT_EQ(missing->get_message(), "Null variable : orderPiece - ");
}

TEST(PQReceivedOrder, CopyDropsPiecesAndId) {
    TestOrder order;
    order.receive("a=1&//");
    order.set_id("id-7");
    FixedCounter counter(0, "c");
    order.setCounter(&counter);
    order.set_listOrderPiece(
        PQReceivedOrder::getOrderPiecesFromOrder(order.get_orderStringReceived(), true));

    const TestOrder copy(order);
    EXPECT_EQ(copy.get_listOrderPiece(), nullptr);
    EXPECT_EQ(copy.get_id(), "");
    EXPECT_EQ(valueOf(copy.get_orderStringReceived()), "a=1&//");
    EXPECT_EQ(copy.get_receivedOrderType(), PQ_UTILS::PQReceivedOrderType_log);
    EXPECT_EQ(order.get_listOrderPiece()->size(), 1U);
}

TEST(PQReceivedOrder, AgeChecksReportAndGoOn) {
    enum Form { kOneArgument, kWithOutput, kAssert };
    struct Case {
        long long age;
        unsigned int limit;
        Form form;
        std::string assertion; // empty: the check passes
    };
    const std::vector<Case> cases{
        {499, 500, kWithOutput, ""},
        {500, 500, kWithOutput, "(unsigned int)msecs < msecsMax should be true - c1"},
        {500, 500, kOneArgument, "(unsigned int)mssecs < msecsMax should be true - c1"},
        {0, 0, kWithOutput, "(unsigned int)msecs < msecsMax should be true - c1"},
        {-1, 500, kWithOutput, "msecs >= 0 should be true"},
        {-1, 500, kOneArgument, "mssecs >= 0 should be true"},
        {4294967296LL, 10, kWithOutput, ""}, // compared by its low 32 bits, 0
        {4294967306LL, 10, kAssert, "(unsigned int)msecs < msecsMax should be true - c1"},
        {100, 100, kAssert, "(unsigned int)msecs < msecsMax should be true - c1"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::to_string(each.age) + " / " + std::to_string(each.limit));
        TestOrder order;
        FixedCounter counter(each.age, "c1");
        order.setCounter(&counter);
        long long msecs = 12345;
        const pqtest::LogCapture capture;
        if (each.form == kOneArgument) {
            order.verifyOrderNotTreatedSinceMoreThan(each.limit);
        } else if (each.form == kWithOutput) {
            order.verifyOrderNotTreatedSinceMoreThan(each.limit, msecs);
        } else {
            order.assertOrderNotTreatedSinceMoreThan(each.limit, msecs, "treatLogin");
        }
        if (each.form != kOneArgument) {
            EXPECT_EQ(msecs, each.age);
        }
        const auto records = capture.records();
        if (each.assertion.empty()) {
            EXPECT_TRUE(records.empty());
            continue;
        }
        ASSERT_EQ(records.size(), 1U);
        const std::string context = each.form == kAssert ? " - c1 - from:treatLogin: " : " - c1: ";
        EXPECT_NE(records[0].text.find(context + each.assertion + " - raised in "),
                  std::string::npos)
            << records[0].text;
    }

    TestOrder unmeasured;
    long long msecs = 7;
    const pqtest::LogCapture capture;
    unmeasured.verifyOrderNotTreatedSinceMoreThan(0, msecs);
    unmeasured.assertOrderNotTreatedSinceMoreThan(0, msecs, "x");
    EXPECT_EQ(msecs, 7);
    EXPECT_EQ(capture.count(), 0U);
}

// Inputs that a quadratic reader, or one that copied the order into each
// report, would not get through in the time of a test run.
TEST(PQReceivedOrder, HostileTextsStayLinear) {
    constexpr std::size_t kMiB = std::size_t{1} << 20U;
    EXPECT_TRUE(parse(std::string(kMiB, '&')).empty());
    {
        const pqtest::LogCapture capture(1);
        EXPECT_TRUE(parse(std::string(kMiB, '=')).empty());
        EXPECT_EQ(capture.count(), 1U);
    }
    std::string many;
    for (int i = 0; i < 1000000; ++i) {
        many += "k=v&";
    }
    EXPECT_EQ(parse(many + "//").size(), 1000000U);

    std::string malformed; // 200,000 bad elements, each reported with the whole order
    for (int i = 0; i < 200000; ++i) {
        malformed += "badx&";
    }
    const pqtest::LogCapture capture(1);
    EXPECT_TRUE(parse(malformed).empty());
    EXPECT_EQ(capture.count(), 200000U);
    EXPECT_NE(capture.records()[0].text.find("more bytes cut]: key_value"), std::string::npos);

    const std::string key = std::string(kMiB / 2, 'a') + "b";
    EXPECT_EQ(PQReceivedOrder::getOrderPieceValueFromOrder(std::string(kMiB, 'a'), key), "");
}
