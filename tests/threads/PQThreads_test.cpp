// The library used from several threads at once: logging, failures raised,
// treated and logged, malformed pieces reported, orders rendered and read.
// Built again under ThreadSanitizer (the tsan preset), where a data race
// fails the run.

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQException.h"
#include "PQUtils/PQUtils.h"
#include "support/TestSupport.h"

using namespace PQ_UTILS;

TEST(PQThreads, LogThrowAndParseFromManyThreadsAtOnce) {
    PQInit::init(); // once, before the threads: start-up is single-threaded
    (void)PQCreditCardNumberValidator::getCardType("4");
    const pqtest::LogCapture log(0);
    constexpr int kThreads = 4;
    constexpr int kRounds = 200;
    std::vector<int> failures(kThreads);
    {
        std::vector<std::thread> threads;
        threads.reserve(kThreads);
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([t, &failures] {
                std::list<kstring> keys{"a"};
                for (int i = 0; i < kRounds; ++i) {
                    PQ_DEBUG::PQDebug::LogToConsoleAndFileNow(0, 2, "thread", "record", false, 1);
                    try {
                        (void)PQUtil::getRankedElement(&keys, 2); // "list too short"
                    } catch (const PQ_DEBUG::PQException&) {
                        ++failures[t];
                    }
                    PQOrder order(PQReceivedOrderType_log, PQOrderType_ORDER_NORMAL);
                    order.add_orderPiece("n", std::to_string(i));
                    const auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
                        PQSourceOrderWrapper(*order.get_orderString().getStringSource() + "&bad"),
                        true);
                    EXPECT_EQ(pieces->size(), 2U);
                    EXPECT_TRUE(PQCreditCardNumberValidator::isCardNumberValid("4111111111111111"));
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    for (const int count : failures) {
        EXPECT_EQ(count, kRounds);
    }
    // Per round: the record, the failure's treatment, the malformed piece.
    EXPECT_GE(log.count(), static_cast<std::size_t>(kThreads * kRounds * 3));
}
