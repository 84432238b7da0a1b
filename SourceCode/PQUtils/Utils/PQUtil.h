#pragma once

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// General helpers and the product's text constants.
class PQUtil : public PQIdentifiable {
    PQ_IDENTITY(PQUtil)

    // Fills the constants below (empty until then), in their order; running
    // it again gives the same values. A failure is traced, then propagates.
    static void initializePublic();

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
