#include "PQUtils/Utils/PQUtil.h"

#include <array>
#include <string_view>

#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

// A constant and its bytes; a row without bytes copies the constant named by
// `copyOf`.
struct ConstantRow {
    kstring* constant;
    std::string_view bytes;
    const kstring* copyOf;
};

} // namespace

void PQUtil::initializePublic() try {
    const std::array<ConstantRow, 18> rows{{
        {&euro, "\xE2\x82\xAC", nullptr},
        {&pound, "\xC2\xA3", nullptr},
        {&yen, "\xC2\xA5", nullptr},
        {&yuan, {}, &yen},
        {&inr, "\xE2\x82\xB9", nullptr},
        {&krw, "\xE2\x82\xA9", nullptr},
        {&uah, "\xE2\x82\xB4", nullptr},
        {&thb, "\xE0\xB8\xBF", nullptr},
        {&pln, "z\xC5\x82", nullptr},
        {&ruble, "\xD1\x80\xD1\x83\xD0\xB1.", nullptr},
        {&little_o_number, "\xC2\xB0", nullptr},
        {&eacute, "\xC3\xA9", nullptr},
        {&ecirc, "\xC3\xAA", nullptr},
        {&egrave, "\xC3\xA8", nullptr},
        {&agrave, "\xC3\xA0", nullptr},
        {&ccdil, "\xC3\xA7", nullptr},
        {&ugrave, "\xC3\xC9", nullptr},
        {&special_space, "\x1F", nullptr},
    }};
    for (const ConstantRow& row : rows) {
        if (row.copyOf != nullptr) {
            *row.constant = *row.copyOf;
        } else {
            row.constant->assign(row.bytes);
        }
    }
} catch (...) {
    traceMessageFrom("initializePublic", "probleme dans initializePublic()");
    throw;
}

} // namespace PQ_UTILS
