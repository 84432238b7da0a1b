// JSON string values: written between quotes, and read back as given when
// they hold no backslash (the reader undoes "\n" before "\\").

#include "PQFuzz.h"
#include "PQUtils/Orders/Json/PQJsonString.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQJsonString;
    pqfuzz::startLibrary();
    const std::string value = pqfuzz::textOf(data, size);
    (void)PQJsonString(value).get_pieceValue(); // outside text read directly
    PQ_UTILS::PQSourceOrderPieceWrapper out;
    PQJsonString(value).get_localOrderString_noEscape(out);
    const std::string& written = *out.getStringSource();
    pqfuzz::check(written.size() >= 2 && written.front() == '"' && written.back() == '"',
                  "a string is written between quotes");
    if (value.find('\\') == std::string::npos) {
        const std::string inner = written.substr(1, written.size() - 2);
        pqfuzz::check(*PQJsonString(inner).get_pieceValue().getStringSource() == value,
                      "escaping is undone");
    }
    return 0;
}
