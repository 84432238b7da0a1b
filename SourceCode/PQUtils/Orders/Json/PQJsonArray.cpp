#include "PQUtils/Orders/Json/PQJsonArray.h"

#include <utility>

#include "PQUtils/Orders/Json/PQJsonInternal.h"
#include "PQUtils/Orders/Json/PQJsonString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = internal::kJsonArraySource;

} // namespace

PQ_JSON_NODE_MEMBERS(PQJsonArray, Shape::Array)

bool PQJsonArray::isJSonArray() const { return true; }

bool PQJsonArray::hasChildren() const { return !get_listOrderPiece().empty(); }

std::vector<PQJsonOrder*> PQJsonArray::getChildrenValue() const try {
    std::vector<PQJsonOrder*> children;
    children.reserve(get_listOrderPiece().size());
    for (const std::unique_ptr<PQOrderPiece>& piece : get_listOrderPiece()) {
        PQJsonOrder* const castedOrder = jsonNodeOf(*piece);
        PQ_CHECK_NULL(castedOrder);
        children.push_back(castedOrder);
    }
    return children;
}
PQ_CATCH_AND_TREAT

void PQJsonArray::removeValue(const kstring& value) try { delete_orderPieceValue(value); }
PQ_CATCH_AND_TREAT

std::size_t PQJsonArray::size() const { return get_listOrderPiece().size(); }

void PQJsonArray::addValue(std::unique_ptr<PQJsonOrder> value) try {
    add_orderPiece_noCheck(kstring(), std::unique_ptr<PQOrder>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonArray::addValue(kstring value) try {
    addValue(std::make_unique<PQJsonString>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonArray::addValue(bool value) try { addValue_nostring(kstring(), valueText(value)); }
PQ_CATCH_AND_TREAT

void PQJsonArray::addValue(int value) try { addValue_nostring(kstring(), valueText(value)); }
PQ_CATCH_AND_TREAT

void PQJsonArray::addValue(double value) try { addValue_nostring(kstring(), valueText(value)); }
PQ_CATCH_AND_TREAT

void PQJsonArray::addValue(const char* value) try {
    PQ_CHECK_NULL(value);
    addValue(kstring(value));
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
