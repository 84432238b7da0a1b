#pragma once

#include "PQUtils/Utils/PQIdentity.h"

namespace PQ_UTILS {

// Numeric helpers.
class PQNumber : public PQIdentifiable {
public:
    PQ_IDENTITY(PQNumber)

    // |a - b| < epsilon, strictly (PQUtil::arePricesEqual is inclusive);
    // false for NaN.
    [[nodiscard]] static bool isDoublesEqual(double a, double b, double epsilon);
};

} // namespace PQ_UTILS
