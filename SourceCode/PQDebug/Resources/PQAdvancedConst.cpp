#include "PQDebug/Resources/PQAdvancedConst.h"

#include "PQDebug/PQDebugString.h"

namespace PQ_DEBUG {

// The registries are never destroyed, so that objects destroyed at exit can
// still name their values; PQInit::clean frees the tables of a tidy host.
PQNameRegistry& PQAdvancedConst::get_intToWstringMap_g() {
    static auto* const registry = new PQNameRegistry();
    return *registry;
}

PQNameRegistry& PQAdvancedConst::get_wstringToIntMap_g() {
    static auto* const registry = new PQNameRegistry();
    return *registry;
}

void PQAdvancedConst::reverseMap(PQObjectType tableId) {
    const PQNameRegistry& values = get_intToWstringMap_g();
    const auto found = values.find(tableId);
    if (found == values.end() || !found->second) {
        throw std::logic_error("reverseMap: no value-to-name table for type " +
                               PQDebugString::fromIntToWstring(static_cast<int>(tableId)));
    }
    found->second.buildReverse(get_wstringToIntMap_g()[tableId]);
}

} // namespace PQ_DEBUG
