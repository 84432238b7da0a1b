// Word splitting, space collapsing and dates: words are never empty nor hold
// a blank, no run of spaces survives, and a date reads as three numbers or
// not at all. A zero byte is refused, with the library's failure.

#include <regex>

#include "PQDebug/PQException.h"
#include "PQFuzz.h"
#include "PQUtils/Utils/PQString.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQString;
    pqfuzz::startLibrary();
    const std::string text = pqfuzz::textOf(data, size);
    const bool hasZero = text.find('\0') != std::string::npos;
    try {
        const auto words = PQString::toWords(text);
        pqfuzz::check(words != nullptr || text.empty(), "only an empty text has no words");
        for (const std::string& word : words ? *words : std::vector<std::string>()) {
            pqfuzz::check(!word.empty() && word.find_first_of(" \t") == std::string::npos,
                          "a word is not empty and holds no blank");
        }
        pqfuzz::check(PQString::removeDoubleSpaces(text)->find("  ") == std::string::npos,
                      "no run of spaces survives");
        pqfuzz::check(!hasZero, "a zero byte is refused");
    } catch (const PQ_DEBUG::PQException&) {
        pqfuzz::check(hasZero, "only a zero byte is refused");
    }
    const auto [date, format] = pqfuzz::split(text);
    const std::string formatted = PQString::getFormatedDateString(date, format);
    static const std::regex kDate("[0-9]{1,4}-[0-9]{1,2}-[0-9]{1,2}");
    pqfuzz::check(formatted.empty() || std::regex_match(formatted, kDate),
                  "a date is year-month-day");
    return 0;
}
