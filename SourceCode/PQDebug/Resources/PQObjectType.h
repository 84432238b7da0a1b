#pragma once

namespace PQ_DEBUG {

// The classes of the utility library that report an identity, with the
// object type that their get_objectType() returns. Each row gives the
// enumerator PQObjectType_<name> and the table name "<name>".
// clang-format off
#define PQ_OBJECT_TYPE_CLASS_ROWS(ROW) \
    ROW(PQJsonArray, 101)               \
    ROW(PQJsonObject, 102)              \
    ROW(PQJsonString, 103)              \
    ROW(PQJsonOrder, 104)               \
    ROW(PQSecuredString, 105)           \
    ROW(PQSourceOrderWrapper, 106)      \
    ROW(PQSourceOrderPieceWrapper, 107) \
    ROW(PQOrder, 108)                   \
    ROW(PQOrder_p, 109)                 \
    ROW(PQOrderPiece, 110)              \
    ROW(PQReceivedOrder, 111)           \
    ROW(PQNumber, 112)                  \
    ROW(PQString, 113)                  \
    ROW(PQUtil, 114)                    \
    ROW(PQPasswordValidator, 115)
// clang-format on

// Identities of the system's classes, and identifiers of the name tables
// that the registry holds (PQConst.h).
enum PQObjectType : int {
    PQObjectType_PQObjectType = 60,
    PQObjectType_PQLoadingEventType = 66,
    PQObjectType_PQOrderType = 67,
    PQObjectType_PQReceivedOrderType = 68,
#define PQ_OBJECT_TYPE_ENUMERATOR(name, value) PQObjectType_##name = (value),
    PQ_OBJECT_TYPE_CLASS_ROWS(PQ_OBJECT_TYPE_ENUMERATOR)
#undef PQ_OBJECT_TYPE_ENUMERATOR
};

// Fills the PQObjectType table (identifier 60): class name <-> object type.
// Does nothing when the table already has entries.
void initialize_public_PQObjectType();

} // namespace PQ_DEBUG
