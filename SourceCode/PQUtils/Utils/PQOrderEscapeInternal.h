#pragma once

// The order-text escapes: the tokens that stand for the bytes order text
// reserves, and the one-walk escaping and unescaping of a value that the
// order writer, the order reader, the JSON order and PQString share. Not
// installed.

#include <array>
#include <cstddef>
#include <string_view>

#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS::internal {

// A character text of order text and the token that stands for it inside a
// value.
struct EscapeToken {
    std::string_view character;
    std::string_view token;
};

inline constexpr EscapeToken kDoubleSlash{"//", "--dbsl--"};
inline constexpr EscapeToken kEquals{"=", "--equ--"};
inline constexpr EscapeToken kAmpersand{"&", "--amp--"};
inline constexpr EscapeToken kDoublePoint{":", "--dblpt--"};
inline constexpr EscapeToken kArobase{"@", "--arob--"};
// Only for JSON text sent in an order.
inline constexpr EscapeToken kLineFeed{"\n", "--endl--"};

// The order writer's escapes, applied in this order (the reader undoes them
// in the same order).
inline constexpr std::array<EscapeToken, 3> kOrderEscapes{kEquals, kAmpersand, kDoubleSlash};

// Text that is being built may be secret, and std::string leaves its old
// buffer unwiped when it grows. These grow it by a new buffer, at least
// twice as large (so that appending stays linear), and wipe the one left.
// They never ask for less than the capacity: libc++ 13 (Emscripten's)
// shrinks on such a reserve, which would move the text unwiped.
void reserveWiped(kstring& out, std::size_t room);
inline void appendWiped(kstring& out, std::string_view bytes) {
    if (bytes.size() > out.capacity() - out.size()) {
        reserveWiped(out, bytes.size());
    }
    out.append(bytes);
}

// Room to make for the escaped form of `size` bytes when they are not
// counted: enough for text with a few special bytes; denser text grows.
[[nodiscard]] constexpr std::size_t orderEscapedRoom(std::size_t size) noexcept {
    return size + size / 4;
}

// The order writer's escaping of a value ("=" -> "--equ--", "&" -> "--amp--",
// "//" -> "--dbsl--"; bytes after a zero byte copied as they are), appended
// to `out`: the same output as PQString::restorePQEntities. With
// `lineFeeds`, a line feed also becomes "--endl--" (as replace_pq would make
// it after the three others), for JSON text sent in an order.
// orderEscapedBound is a bound on the bytes appended: each special byte
// (even after a zero byte) counted as growing by 7, the most any does ("="
// and "&" grow by 6).
// appendOrderEscaped first makes room for `room` more bytes in `out`, then
// grows it as it must, with reserveWiped: no copy of the text is left
// unwiped, whatever `room` is. `path` is for the tests, which run the block
// scanner's paths side by side; by default the fastest this processor runs.
[[nodiscard]] std::size_t orderEscapedBound(std::string_view value,
                                            bool lineFeeds = false) noexcept;
void appendOrderEscaped(kstring& out, std::string_view value, std::size_t room,
                        bool lineFeeds = false, BlockPath path = bestPath());
// The reader's unescaping of a value, appended to `out` in one pass (room
// for the value made first, as restoring only shortens): the
// same output as PQString::removePQEntities, that is "--equ--" restored
// first, then "--amp--", then "--dbsl--", each pass over the text the one
// before left, up to the first zero byte.
void appendOrderUnescaped(kstring& out, std::string_view value, BlockPath path = bestPath());

} // namespace PQ_UTILS::internal
