#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {

void PQString::initialyze_public() {
    m_sEmptyString.clear();
    m_sEmptyVector.clear();
}

} // namespace PQ_UTILS
