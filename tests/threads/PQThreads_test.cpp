// The library used from several threads at once: logging, failures raised,
// treated and logged, malformed pieces reported, orders rendered and read.
// Built again under ThreadSanitizer (the tsan preset), where a data race
// fails the run.

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
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

// Orders (their state, pieces and texts come from per-thread pools) built on
// some threads and freed on another, while that one builds and frees its
// own: the blocks move between threads through the shared store.
TEST(PQThreads, OrdersBuiltOnOneThreadAndFreedOnAnother) {
    constexpr int kBuilders = 2;
    constexpr int kOrdersEach = 300;
    std::mutex lock;
    std::condition_variable ready;
    std::deque<std::unique_ptr<PQOrder>> handedOver;
    int buildersLeft = kBuilders;

    std::vector<std::thread> builders;
    builders.reserve(kBuilders);
    for (int b = 0; b < kBuilders; ++b) {
        builders.emplace_back([&, b] {
            for (int i = 0; i < kOrdersEach; ++i) {
                auto order =
                    std::make_unique<PQOrder>(PQReceivedOrderType_log, PQOrderType_ORDER_NORMAL);
                // Appended rather than "k" + ..., which GCC 12 at -O3 misreads
                // as an overlapping copy (-Wrestrict).
                std::string value = "secret value ";
                value += std::to_string(b * 100000 + i);
                for (int p = 0; p < 10; ++p) {
                    std::string key = "k";
                    key += std::to_string(p);
                    order->add_orderPiece(key, value);
                }
                const std::lock_guard<std::mutex> guard(lock);
                handedOver.push_back(std::move(order));
                ready.notify_one();
            }
            const std::lock_guard<std::mutex> guard(lock);
            --buildersLeft;
            ready.notify_one();
        });
    }

    int freed = 0;
    int checked = 0;
    std::thread freer([&] {
        for (;;) {
            std::unique_ptr<PQOrder> order;
            {
                std::unique_lock<std::mutex> guard(lock);
                ready.wait(guard, [&] { return !handedOver.empty() || buildersLeft == 0; });
                if (handedOver.empty()) {
                    return;
                }
                order = std::move(handedOver.front());
                handedOver.pop_front();
            }
            // Each order arrives whole, then dies here; meanwhile this thread
            // takes blocks of its own.
            const PQSecuredString text = order->get_orderString();
            checked += text.getStringSource()->find("k9=secret value ") != kstring::npos ? 1 : 0;
            order.reset();
            ++freed;
        }
    });
    for (std::thread& builder : builders) {
        builder.join();
    }
    freer.join();
    EXPECT_EQ(freed, kBuilders * kOrdersEach);
    EXPECT_EQ(checked, freed);
}
