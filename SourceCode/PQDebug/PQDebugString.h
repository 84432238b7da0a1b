#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "PQDebug/PQDebugTypes.h"

namespace PQ_DEBUG {

// Number/text conversions of the debug library. "Wstring" and "String" name
// the same narrow kstring here: the wide/narrow conversions copy. Renderings
// are plain decimal and never depend on the locale.
class PQDebugString {
public:
    [[nodiscard]] static kstring fromIntToWstring(int value);
    [[nodiscard]] static kstring fromIntToWstring(long value);
    [[nodiscard]] static kstring fromIntToWstring(long long value);
    [[nodiscard]] static kstring fromLongLongToWstring(long long value);
    [[nodiscard]] static kstring fromULongLongToWstring(unsigned long long value);
    [[nodiscard]] static kstring fromUnsignedIntToWstring(unsigned int value);
    [[nodiscard]] static kstring fromIntToString(int value);

    // Fixed notation with `precision` digits after the point (0 when
    // negative, at most 30), rounded to nearest; "nan", "inf" and "-inf" for
    // the special values:
    //   fromDoubleToWstring(3.14159, 2) -> "3.14"
    [[nodiscard]] static kstring fromDoubleToWstring(double value, int precision);

    // Reads like atoi: leading blanks, an optional sign, then decimal digits
    // up to the first other character; 0 when there are none. Saturates to
    // the int range instead of overflowing:
    //   " -12ab" -> -12, "x1" -> 0, "99999999999" -> INT_MAX
    [[nodiscard]] static int fromWstringToInt(const kstring& text);

    [[nodiscard]] static kstring fromWstringToString(const kstring& text);
    [[nodiscard]] static kstring fromStringToWstring(const kstring& text);
    // New copies, owned by the caller.
    [[nodiscard]] static std::unique_ptr<kstring> fromStringToWstring_ptr(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> fromStringToKstring_ptr(const kstring& text);

    // Appends `text` to `out` on one line: line feed, carriage return and
    // tab as \n, \r, \t, other control bytes as \xhh; the rest as it is.
    static void appendOneLine(kstring& out, std::string_view text);
};

} // namespace PQ_DEBUG
