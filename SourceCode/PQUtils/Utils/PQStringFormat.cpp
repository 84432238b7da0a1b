#include <cstdint>
#include <string_view>

#include "PQDebug/PQDebugString.h"
#include "PQUtils/Utils/PQByteSearchInternal.h"
#include "PQUtils/Utils/PQByteViewInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

using PQ_DEBUG::PQDebugString;

// `length` bytes from `text`; no read at all when there are none, so a null
// text of length 0 is the empty text.
std::string_view bytesOf(const char* text, unsigned long length) {
    return length == 0 ? std::string_view() : std::string_view(text, length);
}

// The padding shared by FillWithSpaces and FillWithChars; `text` is not null
// unless `length` is 0. The pad is a signed 32-bit count: width - used -
// length modulo 2^32 (unsigned, so it cannot overflow), read as signed.
std::unique_ptr<kstring> padRight(const char* text, unsigned long length, char fill,
                                  unsigned long used, unsigned long width) {
    const auto pad = static_cast<std::int32_t>(static_cast<std::uint32_t>(width - used - length));
    if (pad <= 0) {
        return std::make_unique<kstring>(bytesOf(text, length));
    }
    // The padded text was built as a zero-terminated buffer holding the text
    // and then the pad: a zero byte inside the text ends it before the pad.
    const std::string_view kept = internal::untilZero(text, length);
    if (kept.size() != length) {
        return std::make_unique<kstring>(kept);
    }
    auto result = std::make_unique<kstring>();
    result->reserve(kept.size() + static_cast<std::size_t>(pad));
    result->append(kept).append(static_cast<std::size_t>(pad), fill);
    return result;
}

template <class Container>
std::unique_ptr<kstring> dumpLines(std::string_view title, const Container& elements) {
    auto result = std::make_unique<kstring>(title);
    for (const kstring& element : elements) {
        result->append(1, '\t').append(element).append(1, '\n');
    }
    return result;
}

} // namespace

std::unique_ptr<kstring> PQString::FillWithSpaces(const char* text, unsigned long length,
                                                  unsigned long used, unsigned long width) try {
    if (length != 0) {
        PQ_CHECK_NULL(text);
    }
    return padRight(text, length, ' ', used, width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::FillWithSpaces(const kstring& text, unsigned long used,
                                                  unsigned long width) try {
    return FillWithSpaces(text.data(), text.size(), used, width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::FillWithSpaces(const char* text, unsigned long length,
                                                  const unsigned long& width) try {
    return FillWithSpaces(text, length, 0UL, width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::FillWithSpaces(const PQSecuredStringRef& text,
                                                  const unsigned long& width) try {
    PQ_CHECK_VIEW(text);
    return FillWithSpaces(text.data(), text.size(), width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::FillWithSpaces(const kstring& text,
                                                  const unsigned long& width) try {
    return FillWithSpaces(text.data(), text.size(), width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::FillWithChars(const kstring& text, char fill, unsigned long used,
                                                 unsigned long width) try {
    return padRight(text.data(), text.size(), fill, used, width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::FillWithZeros(const kstring& text,
                                                 const unsigned long& width) try {
    return FillWithChars(text, '0', 0, width);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::obfuscateNumber(const kstring& number) try {
    const std::string_view digits(number);
    auto result = std::make_unique<kstring>();
    if (digits.size() == 15 || digits.size() == 17) {
        result->append("XXXX XXXXXX ").append(digits.substr(digits.size() - 5));
    } else if (digits.size() < 4) {
        result->append("XXXX XXXX XXXX XXXX");
    } else {
        result->append("XXXX XXXX XXXX ").append(digits.substr(digits.size() - 4));
    }
    return result;
}
PQ_CATCH_AND_TREAT

// Both are taken by value, as the interface declares.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
kstring PQString::getFormatedDateString(kstring date, kstring format) try {
    const std::unique_ptr<kstring> dashed = replace_pq(date, "/", "-", false);
    const std::unique_ptr<std::vector<kstring>> parts = splitString(*dashed, "-");
    if (parts->size() != 3) {
        return {};
    }
    std::size_t yearAt = 0;
    std::size_t dayAt = 0;
    if (format == "yyyy-M-d") {
        dayAt = 2;
    } else if (format == "d-M-yyyy") {
        yearAt = 2;
    } else {
        return {};
    }
    // Read as unsigned 32-bit: a negative part becomes too large and fails.
    const auto part = [&parts](std::size_t index) {
        return static_cast<std::uint32_t>(PQDebugString::fromWstringToInt((*parts)[index]));
    };
    const std::uint32_t year = part(yearAt);
    const std::uint32_t month = part(1);
    const std::uint32_t day = part(dayAt);
    if (year > 9999 || month > 12 || day < 1 || day > 31) {
        return {};
    }
    kstring formatted = PQDebugString::fromUnsignedIntToWstring(year);
    formatted.append(1, '-')
        .append(PQDebugString::fromUnsignedIntToWstring(month))
        .append(1, '-')
        .append(PQDebugString::fromUnsignedIntToWstring(day));
    return formatted;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<std::vector<kstring>> PQString::toWords(const kstring& text) try {
    if (text.empty()) {
        return nullptr;
    }
    const std::unique_ptr<kstring> collapsed =
        removeDoubleSpaces(*replace_pq(text, "\t", " ", false));
    const kstring* str = collapsed.get();
    auto words = std::make_unique<std::vector<kstring>>();
    std::size_t start = str->front() == ' ' ? 1 : 0;
    std::size_t safetyCounter = 0;
    for (std::size_t space = str->find(' ', start); space != kstring::npos;
         space = str->find(' ', start)) {
        ++safetyCounter;
        PQ_ASSERT(safetyCounter <= str->size());
        words->emplace_back(*str, start, space - start);
        start = space + 1;
    }
    if (start != str->size()) {
        words->emplace_back(*str, start);
    }
    return words;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::fromWordsToString(const std::vector<kstring>& words) try {
    return implode(words, " ");
}
PQ_CATCH_AND_TREAT

void PQString::build_wsTab(int nbTab, kstring& out) try {
    PQ_ASSERT(nbTab >= 0);
    out.append(static_cast<std::size_t>(nbTab), '\t');
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::build_wsTab_re(int nbTab) try {
    auto result = std::make_unique<kstring>();
    build_wsTab(nbTab, *result);
    return result;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDoubleSpaces(const char* text, unsigned long length) try {
    auto result = std::make_unique<kstring>();
    if (length == 0) {
        return result;
    }
    PQ_CHECK_NULL(text);
    result->reserve(length);
    const char* const end = text + length;
    for (const char* strTreatedIterator = text; strTreatedIterator != end; ++strTreatedIterator) {
        PQ_ASSERT(*strTreatedIterator != '\0');
        if (*strTreatedIterator != ' ' || result->empty() || result->back() != ' ') {
            result->push_back(*strTreatedIterator);
        }
    }
    return result;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDoubleSpaces(const kstring& text) try {
    return removeDoubleSpaces(text.data(), text.size());
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDoubleSpaces(const PQSecuredStringRef& text) try {
    PQ_CHECK_VIEW(text);
    return removeDoubleSpaces(text.data(), text.size());
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::dump(const std::list<kstring>* aList) try {
    PQ_CHECK_NULL(aList);
    return dumpLines("Dump of list<kstring>*\n", *aList);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::dump(const std::vector<kstring>* aVector) try {
    PQ_CHECK_NULL(aVector);
    return dumpLines("Dump of vector<kstring>*\n", *aVector);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::dump(const std::map<kstring, kstring>& aMap) try {
    auto result = std::make_unique<kstring>("Dump of map<kstring>*\n");
    for (const auto& [key, value] : aMap) {
        result->append(1, '\t').append(key).append("_____").append(value).append(1, '\n');
    }
    return result;
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
