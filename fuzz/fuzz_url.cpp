// URL decoding and hexadecimal reading: decoding never lengthens the text
// and means what the literal restarting loop means; charFromHex reads as a
// formatted stream does.

#include "PQFuzz.h"
#include "PQUtils/Utils/PQUtil.h"
#include "support/HexReference.h"

namespace {

std::string restartingDecode(std::string text) {
    for (std::size_t percent = text.find('%'); percent != std::string::npos;
         percent = text.find('%')) {
        const std::string hex = text.substr(percent + 1, 2);
        text.replace(percent, 1 + hex.size(), 1, PQ_UTILS::PQUtil::charFromHex(hex));
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQUtil;
    pqfuzz::startLibrary();
    const std::string text = pqfuzz::textOf(data, size);
    const std::string decoded = PQUtil::urlDecode(text);
    pqfuzz::check(decoded.size() <= text.size(), "decoding never lengthens");
    if (text.size() <= 512) { // the reference is quadratic
        pqfuzz::check(decoded == restartingDecode(text), "decoding restarts from the start");
    }
    const std::string hex = text.substr(0, 40);
    pqfuzz::check(PQUtil::charFromHex(hex) == pqtest::hexAsStreamReads(hex),
                  "charFromHex reads as a stream");
    return 0;
}
