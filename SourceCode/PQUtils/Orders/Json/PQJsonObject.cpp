#include "PQUtils/Orders/Json/PQJsonObject.h"

#include <algorithm>
#include <utility>

#include "PQUtils/Orders/Json/PQJsonInternal.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = internal::kJsonObjectSource;

} // namespace

PQ_JSON_NODE_MEMBERS(PQJsonObject, Shape::Object)

bool PQJsonObject::isJSonObject() const { return true; }

void PQJsonObject::addValue(const kstring& key, std::unique_ptr<PQJsonOrder> pieceValue) try {
    PQ_CHECK_NULL(pieceValue.get());
    PQJsonOrder::addValue(key, std::move(pieceValue));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue(const kstring& key, kstring value) try {
    PQJsonOrder::addValue(key, std::move(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue_noCheck(const kstring& key, std::unique_ptr<PQJsonOrder> value) try {
    PQJsonOrder::addValue_noCheck(key, std::move(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue_noCheck(const kstring& key, kstring value) try {
    PQJsonOrder::addValue_noCheck(key, std::move(value));
}
PQ_CATCH_AND_TREAT

const PQOrderPiece* PQJsonObject::member(const kstring& key) const {
    const auto& pieces = get_listOrderPiece();
    const auto found = std::find_if(pieces.begin(), pieces.end(),
                                    [&key](const auto& piece) { return piece->get_key() == key; });
    return found == pieces.end() ? nullptr : found->get();
}

bool PQJsonObject::hasChildren() const { return !get_listOrderPiece().empty(); }

PQJsonOrder* PQJsonObject::getChildValue(const kstring& key) const try {
    const PQOrderPiece* const piece = member(key);
    return piece == nullptr ? nullptr : jsonNodeOf(*piece);
}
PQ_CATCH_AND_TREAT

kstring PQJsonObject::getChildValue_nostring(const kstring& key) const try {
    const PQOrderPiece* const piece = member(key);
    return piece == nullptr ? kstring() : *piece->get_pieceValue().getStringSource();
}
PQ_CATCH_AND_TREAT

std::vector<kstring> PQJsonObject::getKeys() const try {
    std::vector<kstring> keys;
    keys.reserve(get_listOrderPiece().size());
    for (const std::unique_ptr<PQOrderPiece>& piece : get_listOrderPiece()) {
        keys.push_back(piece->get_key());
    }
    return keys;
}
PQ_CATCH_AND_TREAT

bool PQJsonObject::childExists(const kstring& key) const try { return member(key) != nullptr; }
PQ_CATCH_AND_TREAT

void PQJsonObject::updateValue(const kstring& key, std::unique_ptr<PQJsonOrder> value) try {
    PQJsonOrder::updateValue(key, std::move(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::updateValue(const kstring& key, kstring value) try {
    PQJsonOrder::updateValue(key, std::move(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::removeValue(const kstring& key) try { PQJsonOrder::removeValue(key); }
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue(const kstring& key, bool value) try {
    addValue_nostring(key, valueText(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue(const kstring& key, int value) try {
    addValue_nostring(key, valueText(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue(const kstring& key, double value) try {
    addValue_nostring(key, valueText(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::updateValue(const kstring& key, bool value) try {
    updateValue_nostring(key, valueText(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::updateValue(const kstring& key, int value) try {
    updateValue_nostring(key, valueText(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::updateValue(const kstring& key, double value) try {
    updateValue_nostring(key, valueText(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::addValue(const kstring& key, const char* value) try {
    PQ_CHECK_NULL(value);
    addValue(key, kstring(value));
}
PQ_CATCH_AND_TREAT

void PQJsonObject::updateValue(const kstring& key, const char* value) try {
    PQ_CHECK_NULL(value);
    updateValue(key, kstring(value));
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
