#include "PQUtils/Utils/PQNumber.h"

#include <cmath>

namespace PQ_UTILS {

bool PQNumber::isDoublesEqual(double a, double b, double epsilon) {
    return std::fabs(a - b) < epsilon;
}

} // namespace PQ_UTILS
