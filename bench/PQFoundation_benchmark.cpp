// The cost of the foundation's hot paths: naming order actions both ways, and
// the failure frame, both when nothing fails and when a failure crosses it.

#include <stdexcept>

#include <benchmark/benchmark.h>

#include "PQDebug/PQDebug.h"
#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQInit.h"

namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Bench/Frames";

void initOnce() {
    PQ_UTILS::PQInit::init();
    PQ_DEBUG::PQDebug::setLogSink([](const PQ_DEBUG::PQLogRecord&) {}); // measure, not print
}

void BM_ActionName(benchmark::State& state) {
    initOnce();
    for (auto _ : state) {
        benchmark::DoNotOptimize(PQ_DEBUG::getWstringFromIntT<PQ_UTILS::PQReceivedOrderType>(
            PQ_DEBUG::PQObjectType_PQReceivedOrderType,
            PQ_UTILS::PQReceivedOrderType_valueDescriptionsForAutoFill,
            &PQ_UTILS::initialize_public_PQReceivedOrderType));
    }
}
BENCHMARK(BM_ActionName);

void BM_ActionValue(benchmark::State& state) {
    initOnce();
    const PQ_UTILS::kstring name = "QuorvaneAPIRequest_signupFullDataSuccessResponse";
    for (auto _ : state) {
        benchmark::DoNotOptimize(PQ_DEBUG::getIntFromWstringT<PQ_UTILS::PQReceivedOrderType>(
            PQ_DEBUG::PQObjectType_PQReceivedOrderType, name,
            &PQ_UTILS::initialize_public_PQReceivedOrderType));
    }
}
BENCHMARK(BM_ActionValue);

int plain(int value) { return value * 3; }

int framed(int value) try {
    PQ_ASSERT(value >= 0);
    return value * 3;
}
PQ_CATCH_AND_TREAT

// A frame costs nothing until something fails.
void BM_FrameNothingFails(benchmark::State& state) {
    int value = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value = framed(value) & 0xff);
    }
}
BENCHMARK(BM_FrameNothingFails);

void BM_PlainCall(benchmark::State& state) {
    int value = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value = plain(value) & 0xff);
    }
}
BENCHMARK(BM_PlainCall);

int outerFrame(int value) try { return framed(value); }
PQ_CATCH_AND_TREAT

// A failure raised, treated by two frames (two records to a sink), caught.
void BM_FailureThroughTwoFrames(benchmark::State& state) {
    initOnce();
    for (auto _ : state) {
        try {
            benchmark::DoNotOptimize(outerFrame(-1));
        } catch (const PQ_UTILS::PQException& e) {
            benchmark::DoNotOptimize(e.get_line());
        }
    }
}
BENCHMARK(BM_FailureThroughTwoFrames);

} // namespace
