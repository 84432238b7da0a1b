#pragma once

// What the sources of the JSON nodes share: their source file names, the
// failure macros and the escaping of string values. Not installed.

#include <array>
#include <string_view>

#include "PQUtils/Orders/PQSourceOrderPieceWrapper.h"
#include "PQUtils/Utils/PQFailure.h"

// The members that the JSON node classes define alike: the default and copy
// constructors, the destructor, clone() and the two renderings, as `shape`
// (a PQJsonOrder::Shape). Each frame is still named after its member.
#define PQ_JSON_NODE_MEMBERS(Class, shape)                                                         \
    Class::Class() try : PQJsonOrder(PQReceivedOrderType_NO_TYPE) {}                               \
    PQ_CATCH_AND_TREAT                                                                             \
                                                                                                   \
    Class::Class(const Class& other) try : PQJsonOrder(other) {}                                   \
    PQ_CATCH_AND_TREAT                                                                             \
                                                                                                   \
    Class::~Class() = default;                                                                     \
                                                                                                   \
    std::unique_ptr<PQOrder> Class::clone() const try {                                            \
        checkCloneable(PQ_FRAME_SITE());                                                           \
        return std::make_unique<Class>(*this);                                                     \
    }                                                                                              \
    PQ_CATCH_AND_TREAT                                                                             \
                                                                                                   \
    void Class::get_localOrderString(PQSourceOrderPieceWrapper& out) const try {                   \
        render(shape, out, true);                                                                  \
    }                                                                                              \
    PQ_CATCH_AND_TREAT                                                                             \
                                                                                                   \
    void Class::get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const try {          \
        render(shape, out, false);                                                                 \
    }                                                                                              \
    PQ_CATCH_AND_TREAT

namespace PQ_UTILS::internal {

// The source file that each JSON class reports its failures from.
inline constexpr const char* kJsonOrderSource =
    "CppLibrairies/SourceCode/PQUtils/Orders/PQJsonOrder";
inline constexpr const char* kJsonObjectSource =
    "CppLibrairies/SourceCode/PQUtils/Orders/Json/PQJsonObject";
inline constexpr const char* kJsonArraySource =
    "CppLibrairies/SourceCode/PQUtils/Orders/Json/PQJsonArray";
inline constexpr const char* kJsonStringSource =
    "CppLibrairies/SourceCode/PQUtils/Orders/Json/PQJsonString";

// A byte of a string value and how the writer escapes it.
struct JsonEscape {
    char raw;
    std::string_view escaped;
};

// In the order the writer applies them: the backslash first, so that the
// backslashes the other rows add are not doubled. Each escape is a backslash
// and one byte. A single quote is left as it is, and "\\'" is never read back.
inline constexpr std::array<JsonEscape, 7> kJsonEscapes{{{'\\', "\\\\"},
                                                         {'"', "\\\""},
                                                         {'\n', "\\n"},
                                                         {'\t', "\\t"},
                                                         {'\v', "\\v"},
                                                         {'\r', "\\r"},
                                                         {'\f', "\\f"}}};

// Undoes the escapes of `text`, in one pass, giving what replacing every
// match of each row, left to right, gives when the rows are taken the
// control characters first, then the double quote, the backslash last. In a
// run of backslashes, the last one goes with the byte after it when the two
// are an escape of another row; those left pair up from the left, each pair
// read as one backslash, a lone last one kept. A stored backslash,
// backslash, "n" thus reads back as a backslash and a line feed.
//   "a\\\\\\n" (a, three backslashes, n) -> "a\\\n" (a, backslash, line feed)
[[nodiscard]] PQSecuredString unescapedJson(std::string_view text);

} // namespace PQ_UTILS::internal
