#include "PQUtils/Orders/PQOrder.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "PQDebug/PQException.h"
#include "PQUtils/Orders/Json/PQJsonObject.h"
#include "PQUtils/Utils/PQInit.h"
#include "support/TestSupport.h"

using PQ_DEBUG::PQException;
using PQ_UTILS::PQOrder;
using PQ_UTILS::PQOrderPiece;

namespace {

std::string textOf(const PQOrder& order) { return *order.get_orderString().getStringSource(); }

PQOrder logOrder() {
    return {PQ_UTILS::PQReceivedOrderType_log, PQ_UTILS::PQOrderType_ORDER_NORMAL};
}

} // namespace

TEST(PQOrder, RendersActionPiecesAndEndMark) {
    PQOrder order = logOrder();
    EXPECT_EQ(textOf(order), "action=log&//");
    order.add_orderPiece("level", "3");
    order.add_orderPiece("text", "hi");
    EXPECT_EQ(textOf(order), "action=log&level=3&text=hi&//");
    EXPECT_EQ(*order.get_orderString_Debug().getStringSource(), textOf(order));

    order.add_orderPiece("level", "a=b&c//d");
    EXPECT_EQ(textOf(order), "action=log&level=3&text=hi&level=a--equ--b--amp--c--dbsl--d&//");
    EXPECT_EQ(*order.get_orderPiece("level")->get_pieceValue().getStringSource(), "3");

    const PQOrder none(PQ_UTILS::PQOrderType_ORDER_NORMAL);
    EXPECT_EQ(textOf(none), "action=NO_TYPE&//");
    EXPECT_EQ(none.get_action(), "NO_TYPE");

    // An action that the vocabulary does not name has no text.
    const pqtest::LogCapture log;
    const PQOrder unnamed(static_cast<PQ_UTILS::PQReceivedOrderType>(14),
                          PQ_UTILS::PQOrderType_ORDER_NORMAL);
    const std::string notNamed = "Value not valid : '14' - type: 68";
    EXPECT_EQ(pqtest::messageOf([&unnamed] { (void)unnamed.get_action(); }), notNamed);
    EXPECT_EQ(pqtest::messageOf([&unnamed] { (void)unnamed.get_orderString(); }), notNamed);
}

TEST(PQOrder, DuplicatesUpdatesAndDeletes) {
    PQOrder order = logOrder();
    order.add_orderPiece("a", "1");
    order.add_orderPiece_noCheck("a", "2");
    order.add_orderPiece("b", "2");
    ASSERT_EQ(order.get_listOrderPiece().size(), 3U);
    order.update_orderPiece("a", "9");
    EXPECT_EQ(textOf(order), "action=log&a=9&a=2&b=2&//");
    order.delete_orderPieceValue("2"); // the first piece of that value, whatever its key
    EXPECT_EQ(textOf(order), "action=log&a=9&b=2&//");
    order.delete_orderPiece("a");
    order.delete_orderPiece("zz");
    EXPECT_EQ(textOf(order), "action=log&b=2&//");
    EXPECT_FALSE(order.orderPieceExists("a"));

    const pqtest::LogCapture capture;
    EXPECT_EQ(pqtest::messageOf([&] { order.update_orderPiece("missing", "x"); }),
              "Trying to update a value that does not exist for key: missing");
    // A piece handed to a call that fails is taken all the same.
    auto piece = std::make_unique<PQOrderPiece>("missing", "x");
    EXPECT_THROW(order.update_orderPiece(std::move(piece)), PQException);
    EXPECT_EQ(piece, nullptr); // NOLINT(bugprone-use-after-move)

    // Both adding forms refuse a null piece, each in its own name.
    for (const bool checked : {true, false}) {
        const auto e = pqtest::thrownBy<PQ_DEBUG::PQNullPointerException>([&order, checked] {
            checked ? order.add_orderPiece(std::unique_ptr<PQOrderPiece>())
                    : order.add_orderPiece_noCheck(std::unique_ptr<PQOrderPiece>());
        });
        ASSERT_TRUE(e.has_value()) << checked;
        EXPECT_EQ(e->get_message(), "Null variable : piece.get() - ");
        EXPECT_EQ(e->get_function(), checked ? "add_orderPiece" : "add_orderPiece_noCheck");
    }
    EXPECT_EQ(textOf(order), "action=log&b=2&//");
}

TEST(PQOrder, CopiesDeeplyClonesTwoKindsAndRefusesAssignment) {
    PQOrder order = logOrder();
    order.add_orderPiece("k", "v");
    order.set_initialized(true);
    const PQOrder copy(order);
    order.update_orderPiece("k", "changed");
    EXPECT_EQ(textOf(copy), "action=log&k=v&//");
    EXPECT_TRUE(copy.get_initialized());
    EXPECT_EQ(textOf(*copy.clone()), "action=log&k=v&//");

    const pqtest::LogCapture capture;
    const PQOrder json(PQ_UTILS::PQOrderType_ORDER_JSONORDER);
    EXPECT_EQ(pqtest::messageOf([&] { (void)json.clone(); }),
              "m_pPrivateImp->m_orderType == PQOrderType_ORDER_NORMAL || "
              "m_pPrivateImp->m_orderType == PQOrderType_ORDER_AUTH_STATUS should be true");
    const auto refused = pqtest::thrownBy<PQException>([&] { order = copy; });
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->get_exceptionType(), 1075);
    EXPECT_EQ(refused->get_function(), "operator=");
}

TEST(PQOrder, APlainNestedOrderCannotRender) {
    const pqtest::LogCapture capture;
    PQOrder order = logOrder();
    order.add_orderPiece("nested", std::make_unique<PQOrder>(PQ_UTILS::PQOrderType_ORDER_NORMAL));
    EXPECT_EQ(pqtest::messageOf([&] { (void)order.get_orderString(); }),
              "m_orderPieceValue->get_initialized() should be true");
    auto inner = std::make_unique<PQOrder>(PQ_UTILS::PQOrderType_ORDER_NORMAL);
    inner->set_initialized(true);
    order.update_orderPiece("nested", std::move(inner));
    // Initialized (the clone keeps the flag), a plain order still has no rendering.
    EXPECT_EQ(pqtest::messageOf([&] { (void)order.get_orderString(); }),
              "this must must not be called");
}

TEST(PQOrder, ShortNestedRenderingsStayInPlace) {
    // "{}" fits inside its string object: the writer must not keep a view of
    // a rendering that moves as more are made.
    PQOrder order = logOrder();
    for (const char* key : {"a", "b", "c", "d", "e"}) {
        order.add_orderPiece(key, std::make_unique<PQ_UTILS::PQJsonObject>());
    }
    EXPECT_EQ(textOf(order), "action=log&a={}&b={}&c={}&d={}&e={}&//");
}

TEST(PQOrder, OnlyTheLanguageChangeOrderTracesItsLife) {
    const pqtest::ScopedLogLevel level(PQ_DEBUG::PQLogType_PQUTILS, 3);
    const pqtest::LogCapture capture;
    { const PQOrder plain = logOrder(); }
    EXPECT_TRUE(capture.records().empty());
    {
        const PQOrder language(PQ_UTILS::PQReceivedOrderType_log,
                               PQ_UTILS::PQOrderType_ORDER_CHANGELANGUAGE);
    }
    const auto records = capture.records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].source, "PQOrder");
    EXPECT_EQ(records[0].text.rfind("creating PQOrder ORDER_CHANGELANGUAGE - log - ", 0), 0U);
    EXPECT_EQ(records[1].source, "~PQOrder");
    EXPECT_EQ(records[1].text.rfind("destructing PQOrder ORDER_CHANGELANGUAGE - log - ", 0), 0U);
}

TEST(PQOrder, OnlyNestedJsonOrdersHaveALocalTextOrAValue) {
    PQOrder order(PQ_UTILS::PQReceivedOrderType_log, PQ_UTILS::PQOrderType_ORDER_NORMAL);
    order.add_orderPiece("k", "v=1");
    EXPECT_EQ(*order.get_orderString_Debug().getStringSource(), "action=log&k=v--equ--1&//");
    PQ_UTILS::PQSourceOrderPieceWrapper out;
    EXPECT_THROW((void)order.get_localOrderString(), PQException);
    EXPECT_THROW((void)order.get_localOrderString_noEscape(), PQException);
    EXPECT_THROW(order.get_localOrderString(out), PQException);
    EXPECT_THROW(order.get_localOrderString_noEscape(out), PQException);
    EXPECT_THROW((void)order.get_pieceValue(), PQException);

    // A text piece gives its text as it is, whichever form is asked.
    const PQOrderPiece piece("k", "a=b");
    EXPECT_EQ(*piece.get_localOrderString().getStringSource(), "a=b");
    piece.get_localOrderString(out);
    piece.get_localOrderString_noEscape(out);
    EXPECT_EQ(*out.getStringSource(), "a=ba=b");
}
