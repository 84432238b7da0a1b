#pragma once

// What the sources of the JSON nodes share: their source file names and the
// escaping of string values. Not installed.

#include <array>
#include <cstddef>
#include <string_view>

#include "PQUtils/Orders/PQSourceOrderPieceWrapper.h"

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
// backslashes the other rows add are not doubled. A single quote is left as
// it is, and "\\'" is never read back.
inline constexpr std::array<JsonEscape, 7> kJsonEscapes{{{'\\', "\\\\"},
                                                         {'"', "\\\""},
                                                         {'\n', "\\n"},
                                                         {'\t', "\\t"},
                                                         {'\v', "\\v"},
                                                         {'\r', "\\r"},
                                                         {'\f', "\\f"}}};

// The rows of kJsonEscapes in the order the reader undoes them: the control
// characters, then the double quote, the backslash last. A stored backslash,
// backslash, "n" thus reads back as a backslash and a line feed.
inline constexpr std::array<std::size_t, 7> kJsonUnescapeOrder{2, 3, 4, 5, 6, 1, 0};

// Appends `text` to `out` with each byte of kJsonEscapes escaped, in one
// pass. No escaped form holds a byte that a later row replaces, so this is
// the text that replacing row after row would give.
void appendJsonEscaped(PQSourceOrderPieceWrapper& out, std::string_view text);

// Undoes the escapes of `text` in place, row after row in
// kJsonUnescapeOrder, each replacing every match left to right.
void unescapeJson(kstring& text);

} // namespace PQ_UTILS::internal
