#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <vector>

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

class PQSecuredStringRef;
class PQStringRef;

// Static string utilities of the library: searching, replacing and the
// order-text escapes, formatting for display and logs, Base64 and the
// simple cipher, splitting, trimming, case and number conversions.
//
// New text is handed to the caller as a std::unique_ptr<kstring>. Every
// operation runs in the library's failure frame: whatever it raises is
// logged under its name and passed on as a PQException. Every operation is
// linear in the length of its input.
class PQString : public PQIdentifiable {
public:
    PQ_IDENTITY(PQString)

    // Sets the shared empty defaults (called by PQInit::init; they are
    // already empty when the library is loaded).
    static void initialyze_public();

    // Shared empty defaults, for operations that return a reference.
    [[nodiscard]] static const kstring& get_m_sEmptyString() noexcept { return m_sEmptyString; }
    [[nodiscard]] static const std::vector<kstring>& get_m_sEmptyVector() noexcept {
        return m_sEmptyVector;
    }

    // --- Bounded searches ---------------------------------------------------

    // Finds the zero-terminated `needle` in the zero-terminated `haystack`;
    // a match counts when it starts in the first `length` bytes, even if it
    // ends beyond them. Returns its position, or kstring::npos.
    //   charFind("abcdef", "cde", 3) -> 2
    [[nodiscard]] static std::size_t charFind(const char* haystack, const char* needle,
                                              std::size_t length);
    // The same, but the match must lie wholly in the first `length` bytes,
    // as if the haystack ended there (it need not be terminated there, and
    // the buffer is never written to).
    //   charFind_ns("abcdef", "cde", 3) -> npos
    [[nodiscard]] static std::size_t charFind_ns(const char* haystack, const char* needle,
                                                 std::size_t length);

    // --- Replacement --------------------------------------------------------

    // A copy of `source` where `from` is replaced by `to`, left to right,
    // without overlaps and without searching the inserted text again (only
    // the first match when `onlyFirst`). Both texts are searched as
    // zero-terminated: nothing matches after a zero byte of `source`, whose
    // remainder is still copied whole, and `from` ends at its first zero
    // byte (a `from` that starts with one matches nothing). An empty `from`
    // raises a PQException (" L\"\" is not permitted").
    //   replace_pq("aaa", "a", "aa", false) -> "aaaaaa"
    [[nodiscard]] static std::unique_ptr<kstring>
    replace_pq(const kstring& source, const kstring& from, const kstring& to, bool onlyFirst);
    // As replace_pq, but every byte counts, zero bytes included.
    [[nodiscard]] static std::unique_ptr<kstring>
    replace_pq_new(const kstring& source, const kstring& from, const kstring& to, bool onlyFirst);
    // Replaces every `from` in `text` by `to`, in place, left to right, never
    // searching the inserted text again. An empty `from` does nothing.
    static void self_replace(kstring& text, const kstring& from, const kstring& to);

    // --- Order-text escapes -------------------------------------------------
    // Each pair turns a character text into its token ("remove") and back
    // ("restore"), through replace_pq.

    // "//" <-> "--dbsl--" (two forward slashes, not a backslash).
    [[nodiscard]] static std::unique_ptr<kstring> removeDbleSlashes(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> restoreDbleSlashes(const kstring& text);
    // "=" <-> "--equ--"
    [[nodiscard]] static std::unique_ptr<kstring> removeEquals(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> restoreEquals(const kstring& text);
    // "&" <-> "--amp--"
    [[nodiscard]] static std::unique_ptr<kstring> removeAmpersand(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> restoreAmpersand(const kstring& text);
    // ":" <-> "--dblpt--"
    [[nodiscard]] static std::unique_ptr<kstring> removeDblePoints(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> restoreDblePoints(const kstring& text);
    // "@" <-> "--arob--"; the list forms change every element in place and
    // raise a null-pointer failure ("Vector is NULL") for a null list.
    [[nodiscard]] static std::unique_ptr<kstring> removeArobase(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> restoreArobase(const kstring& text);
    static void removeArobase(std::vector<kstring>* list);
    static void restoreArobase(std::vector<kstring>* list);

    // The escaping of the order writer: "=", then "&", then "//" become their
    // tokens. The names are inverted with respect to the pairs above, on
    // purpose: "restore" escapes here.
    //   restorePQEntities("a=b&c//d") -> "a--equ--b--amp--c--dbsl--d"
    [[nodiscard]] static std::unique_ptr<kstring> restorePQEntities(const kstring& text);
    // The unescaping of the order reader: "--equ--", then "--amp--", then
    // "--dbsl--" become their characters, each pass over the result of the
    // one before. A value that held a token text does not come back:
    //   removePQEntities("--amp--equ--") -> "--amp="
    [[nodiscard]] static std::unique_ptr<kstring> removePQEntities(const kstring& text);
    // restorePQEntities done in place with self_replace (so zero bytes do not
    // stop it), returning the escaped text.
    [[nodiscard]] static kstring restorePQEntities_2(kstring text);
    // Puts a backslash before every double quote.
    [[nodiscard]] static std::unique_ptr<kstring> escapeDoubleQuotes(const kstring& text);
    // Reads a value exported in CSV, in one pass: "\r\n" becomes "\n", a
    // doubled quote one quote, and "\/" a slash.
    [[nodiscard]] static std::unique_ptr<kstring> unescapeValueFromCSV(const kstring& text);

    // --- Formatting ---------------------------------------------------------

    // The first `length` bytes of `text`, then spaces up to `width`, counting
    // `used` columns as already taken. A longer text is never cut. The pad is
    // width - used - length taken as a signed 32-bit number (none when
    // negative). With a pad, a zero byte in the text ends the result there,
    // before the pad: ("ab\0cd", 5, 0, 8) -> "ab".
    //   FillWithSpaces("abc", 3, 0, 5) -> "abc  "
    [[nodiscard]] static std::unique_ptr<kstring>
    FillWithSpaces(const char* text, unsigned long length, unsigned long used, unsigned long width);
    [[nodiscard]] static std::unique_ptr<kstring>
    FillWithSpaces(const kstring& text, unsigned long used, unsigned long width);
    [[nodiscard]] static std::unique_ptr<kstring>
    FillWithSpaces(const char* text, unsigned long length, const unsigned long& width);
    [[nodiscard]] static std::unique_ptr<kstring> FillWithSpaces(const PQSecuredStringRef& text,
                                                                 const unsigned long& width);
    [[nodiscard]] static std::unique_ptr<kstring> FillWithSpaces(const kstring& text,
                                                                 const unsigned long& width);
    // As FillWithSpaces, padding with `fill`.
    [[nodiscard]] static std::unique_ptr<kstring>
    FillWithChars(const kstring& text, char fill, unsigned long used, unsigned long width);
    // Pads with "0" on the right, after the text (kept as the product uses it):
    //   FillWithZeros("12", 5) -> "12000"
    [[nodiscard]] static std::unique_ptr<kstring> FillWithZeros(const kstring& text,
                                                                const unsigned long& width);

    // Masks a card number but for its end, whatever its characters:
    // 15 or 17 long: "XXXX XXXXXX " + the last 5; shorter than 4:
    // "XXXX XXXX XXXX XXXX"; any other length: "XXXX XXXX XXXX " + the last 4.
    [[nodiscard]] static std::unique_ptr<kstring> obfuscateNumber(const kstring& number);

    // Checks a date given as "yyyy-M-d" or "d-M-yyyy" (`format`; "/" counts
    // as "-") and gives it as "yyyy-M-d" without leading zeros; the empty text
    // for a date that does not read (year above 9999, month above 12, day
    // outside 1..31, a negative part, not three parts, another format).
    //   getFormatedDateString("31/12/2024", "d-M-yyyy") -> "2024-12-31"
    [[nodiscard]] static kstring getFormatedDateString(kstring date, kstring format);

    // The words of `text`, separated by runs of spaces and tabs; no empty
    // word. An empty text gives a null pointer; a zero byte fails.
    [[nodiscard]] static std::unique_ptr<std::vector<kstring>> toWords(const kstring& text);
    // The words joined by one space.
    [[nodiscard]] static std::unique_ptr<kstring>
    fromWordsToString(const std::vector<kstring>& words);

    // Appends `nbTab` tabs to `out`; a negative count fails "nbTab >= 0".
    static void build_wsTab(int nbTab, kstring& out);
    [[nodiscard]] static std::unique_ptr<kstring> build_wsTab_re(int nbTab);

    // Collapses each run of spaces (0x20 only) to one space, leading and
    // trailing runs included. A zero byte in the first `length` bytes fails.
    [[nodiscard]] static std::unique_ptr<kstring> removeDoubleSpaces(const char* text,
                                                                     unsigned long length);
    [[nodiscard]] static std::unique_ptr<kstring> removeDoubleSpaces(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring>
    removeDoubleSpaces(const PQSecuredStringRef& text);

    // A title line, then one line per element: "\t" + element (+ "_____" +
    // value for a map). A null list or vector raises a null-pointer failure.
    [[nodiscard]] static std::unique_ptr<kstring> dump(const std::list<kstring>* aList);
    [[nodiscard]] static std::unique_ptr<kstring> dump(const std::vector<kstring>* aVector);
    [[nodiscard]] static std::unique_ptr<kstring> dump(const std::map<kstring, kstring>& aMap);

    // --- Base64 and the cipher ----------------------------------------------

    // Standard Base64 (RFC 4648, with "=" padding, no line breaks) of the
    // first `length` bytes of `data`; more bytes than `data` holds fails.
    //   toBase64("foobar", 6) -> "Zm9vYmFy"
    [[nodiscard]] static std::unique_ptr<kstring> toBase64(const kstring& data,
                                                           unsigned long length);
    // `data` XORed with the library's key, which repeats every 199 bytes;
    // applied twice it gives `data` back. Any byte may come out, zero too.
    [[nodiscard]] static std::unique_ptr<kstring> simpleCipher(const kstring& data);

    // --- Splitting, joining, trimming, case ---------------------------------

    // The pieces of `text` between the occurrences of `separator`, in order,
    // empty pieces kept: n separators give n + 1 pieces, so the result is
    // never empty. An empty separator fails.
    //   splitString("a&&b", "&") -> {"a", "", "b"};  splitString("", "&") -> {""}
    [[nodiscard]] static std::unique_ptr<std::vector<kstring>>
    splitString(const kstring& text, const kstring& separator);
    // The same as views into the viewed text, which must outlive them.
    [[nodiscard]] static std::unique_ptr<std::vector<PQStringRef>>
    splitString(const PQStringRef& text, const kstring& separator);
    [[nodiscard]] static std::unique_ptr<std::vector<PQSecuredStringRef>>
    splitString(const PQSecuredStringRef& text, const kstring& separator);

    // The pieces joined by `glue`; inverse of splitString.
    //   implode({"a", "", "b"}, "&") -> "a&&b"
    [[nodiscard]] static std::unique_ptr<kstring> implode(const std::vector<kstring>& pieces,
                                                          const kstring& glue);

    // Without the leading and/or trailing ASCII white space (space, \t, \n,
    // \v, \f, \r). The view forms give a view into the same text.
    [[nodiscard]] static std::unique_ptr<kstring> trim(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> trimLeft(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> trimRight(const kstring& text);
    [[nodiscard]] static PQStringRef trim(const PQStringRef& text);
    [[nodiscard]] static PQSecuredStringRef trim(const PQSecuredStringRef& text);

    // ASCII letters changed, every other byte (UTF-8 included) kept.
    [[nodiscard]] static std::unique_ptr<kstring> toLowerCase(const kstring& text);
    [[nodiscard]] static std::unique_ptr<kstring> toUpperCase(const kstring& text);

    // --- Numbers and text ---------------------------------------------------
    // None depends on the locale: the decimal point is always ".".

    // Reads like atoi, saturating to the int range (PQDebugString's reading).
    //   fromWstringToInt(" -12ab") -> -12
    [[nodiscard]] static int fromWstringToInt(const kstring& text);
    // Reads like atof: leading white space, then the longest decimal number
    // (sign, digits, point, exponent; "inf" and "nan" too); 0 when there is
    // none, +-infinity beyond the range of double, 0 below it.
    //   fromWstringToDouble(" 2.5e1x") -> 25
    [[nodiscard]] static double fromWstringToDouble(const kstring& text);
    // Fixed notation, `precision` digits after the point (0..30), rounded:
    //   fromDoubleToWstring(3.14159, 2) -> "3.14"
    [[nodiscard]] static kstring fromDoubleToWstring(double const& value, int precision);
    // Whether the whole text is an int: an optional sign then decimal digits,
    // nothing else, within the int range.  isInt("12a") -> false
    [[nodiscard]] static bool isInt(const kstring& text);
    // Whether the whole text is a finite decimal number: an optional sign,
    // digits with an optional point and fraction (a digit on one side at
    // least), an optional exponent; no blanks, no "inf", "nan" or hex.
    //   isDouble("-1.5e3") -> true, isDouble("1.") -> true, isDouble(".") -> false
    [[nodiscard]] static bool isDouble(const kstring& text);

private:
    static inline kstring m_sEmptyString;
    static inline std::vector<kstring> m_sEmptyVector;
};

} // namespace PQ_UTILS
