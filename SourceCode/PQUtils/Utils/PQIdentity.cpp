#include "PQUtils/Utils/PQIdentity.h"

#include "PQDebug/PQDebugString.h"
#include "PQDebug/Resources/PQConst.h"

namespace PQ_UTILS {

std::string PQIdentifiable::get_className_nonStatic_string() const {
    return PQ_DEBUG::PQDebugString::fromWstringToString(get_className_nonStatic());
}

PQ_DEBUG::PQObjectType PQIdentifiable::get_objectType() const {
    return PQ_DEBUG::getIntFromWstringT<PQ_DEBUG::PQObjectType>(
        PQ_DEBUG::PQObjectType_PQObjectType, get_className_nonStatic(),
        &PQ_DEBUG::initialize_public_PQObjectType);
}

PQIdentifiable::~PQIdentifiable() = default;

} // namespace PQ_UTILS
