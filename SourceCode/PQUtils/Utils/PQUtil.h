#pragma once

#include <list>
#include <map>

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// General helpers and the product's text constants.
class PQUtil : public PQIdentifiable {
public:
    PQ_IDENTITY(PQUtil)

    // Fills the constants below (empty until then), in their order; running
    // it again gives the same values. A failure is traced, then propagates.
    static void initializePublic();

    // The entry of `scores` with the rank-th highest value (rank 1 is the
    // highest; equal values keep the map's key order); end() for rank 0 or
    // past the last entry. `scores` must not be null.
    //   {"a":2, "b":5, "c":5}: rank 1 -> "b", 2 -> "c", 3 -> "a"
    [[nodiscard]] static std::map<kstring, double>::iterator
    getRankedElement(std::map<kstring, double>* scores, unsigned int rank);
    // A copy of the rank-th element (from 1); fails with "list too short"
    // for rank 0 or past the end.
    [[nodiscard]] static kstring getRankedElement(std::list<kstring>* keys, unsigned int rank);

    // The part of `url` before its first "?" (all of it without one).
    [[nodiscard]] static kstring getRequestWithoutArgs(kstring const& url);
    // Decodes percent escapes, each "%" followed by (up to) two characters
    // read by charFromHex, the search starting again from the start after
    // each: a "%" that decoding makes is decoded in turn ("%2541" -> "A").
    // "+" stays. Linear in the text.
    [[nodiscard]] static kstring urlDecode(kstring const& text);
    // The character whose code `hex` gives, read as a formatted stream reads
    // a hexadecimal int (blanks skipped, a sign and a "0x" taken, reading
    // stopping at the first other character), truncated to a char; 0 when
    // the text holds no digit.
    [[nodiscard]] static char charFromHex(kstring hex);
    // |a - b| <= 1.0 (coarse) or 0.0011; false for NaN.
    [[nodiscard]] static bool arePricesEqual(double const& a, double const& b, bool coarse);
    // The variable's value, or "" when it is not set. A name that is empty
    // or holds "=" or a zero byte names no variable: "".
    [[nodiscard]] static kstring getEnvironmentVariable(kstring const& name);
    // The host's name, as the debug library's platform part gives it.
    [[nodiscard]] static kstring getComputerName();
    // The product's run-time built values: never stored whole, made on each
    // call from fixed pieces and PQDebug::get_miscValue().
    [[nodiscard]] static kstring get_value();
    [[nodiscard]] static kstring get_value_ios();
    [[nodiscard]] static kstring get_value_old();

    // UTF-8 bytes of currency signs and accented letters.
    static inline kstring euro;
    static inline kstring pound;
    static inline kstring yen;
    static inline kstring yuan; // the same sign as yen
    static inline kstring inr;
    static inline kstring krw;
    static inline kstring uah;
    static inline kstring thb;
    static inline kstring pln;   // "z" then U+0142: the zloty abbreviation
    static inline kstring ruble; // the abbreviated ruble with its full stop
    static inline kstring little_o_number;
    static inline kstring eacute;
    static inline kstring ecirc;
    static inline kstring egrave;
    static inline kstring agrave;
    static inline kstring ccdil;
    // Kept as the product has always stored it: C3 C9, which is not valid
    // UTF-8 (nor the encoding of U+00F9); texts compared with it expect it.
    static inline kstring ugrave;
    static inline kstring special_space; // the unit separator 0x1F
};

} // namespace PQ_UTILS
