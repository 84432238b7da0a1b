#include "PQDebug/Resources/PQObjectType.h"

#include <array>

#include "PQDebug/Resources/PQConst.h"

namespace PQ_DEBUG {
namespace {

constexpr std::array kObjectTypeRows{
#define PQ_OBJECT_TYPE_ROW(name, value) PQVocabularyRow<PQObjectType>{PQObjectType_##name, #name},
    PQ_OBJECT_TYPE_CLASS_ROWS(PQ_OBJECT_TYPE_ROW)
#undef PQ_OBJECT_TYPE_ROW
};

} // namespace

void initialize_public_PQObjectType() {
    fillNameTable<PQObjectType>(PQObjectType_PQObjectType, &initialize_public_PQObjectType,
                                kObjectTypeRows);
}

} // namespace PQ_DEBUG
