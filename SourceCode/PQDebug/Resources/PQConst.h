#pragma once

// The registry between enumeration values and their names. Each enumeration
// has a table identifier (a PQObjectType) and an initialisation function that
// fills its table; tables are built on first use, freed by cleanMaps, and
// rebuilt on their next use after that.
//
// Not thread-safe while a table is being built or freed: build the tables
// from one thread at start (PQ_UTILS::PQInit::init does), after which
// lookups only read.

#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "PQDebug/PQDebugString.h"
#include "PQDebug/PQDebugTypes.h"
#include "PQDebug/PQException.h"
#include "PQDebug/Resources/PQAdvancedConst.h"
#include "PQDebug/Resources/PQObjectType.h"

namespace PQ_DEBUG {

using PQInitializationFunction = void (*)();

// One row of a vocabulary: a value and its name.
template <class T> struct PQVocabularyRow {
    T value;
    const char* name;
};

namespace detail {

inline constexpr const char* kPQConstFile = "../../SourceCode/PQDebug/Resources/PQConst.h";

template <class T> int decimalOf(T value) {
    return static_cast<int>(static_cast<std::underlying_type_t<T>>(value));
}

[[noreturn]] inline void throwValueNotValid(const char* function, int line, std::string message) {
    throw PQException(PQExceptionType_BAS_EXCEPTION, kPQConstFile, function, line,
                      std::move(message), PQException::get_PQ_EX_ANORMAL(), true, false,
                      PQLogType_EXCEPTION, false);
}

// The table of `tableId` in `registry`. A missing or freed table is created
// empty, registered, and filled by `initializationFunction`; the empty table
// stays registered when that fails.
template <class Map>
Map& getOrCreateTable(PQNameRegistry& registry, PQObjectType tableId,
                      PQInitializationFunction initializationFunction) {
    // std::map nodes never move: `slot` stays valid while the function
    // below fills the registry.
    PQNameTablePointer& slot = registry[tableId];
    if (Map* existing = slot.template getAs<Map>()) {
        return *existing;
    }
    slot = PQNameTablePointer::make<Map>();
    if (initializationFunction == nullptr) {
        throw std::runtime_error("initializationFunction == NULL");
    }
    initializationFunction();
    Map* filled = slot.template getAs<Map>();
    if (filled == nullptr || filled->empty()) {
        throw std::runtime_error("newMap->empty()");
    }
    return *filled;
}

} // namespace detail

// The value-to-name table of `tableId`, created on first use.
template <class T>
std::map<T, kstring>& get_intToWstringMap(PQObjectType tableId,
                                          PQInitializationFunction initializationFunction) {
    return detail::getOrCreateTable<std::map<T, kstring>>(PQAdvancedConst::get_intToWstringMap_g(),
                                                          tableId, initializationFunction);
}

// The same table, read-only.
template <class T>
const std::map<T, kstring>&
get_intToWstringMap_const(PQObjectType tableId, PQInitializationFunction initializationFunction) {
    return get_intToWstringMap<T>(tableId, initializationFunction);
}

// The name-to-value table of `tableId`, created on first use.
template <class T>
std::map<kstring, T>& get_wstringToIntMap(PQObjectType tableId,
                                          PQInitializationFunction initializationFunction) {
    return detail::getOrCreateTable<std::map<kstring, T>>(PQAdvancedConst::get_wstringToIntMap_g(),
                                                          tableId, initializationFunction);
}

// The name of `value`, pointing into the table (valid until the table is
// freed). An unknown value throws PQException:
//   "Value not valid : '10' - type: 67"
template <class T>
[[nodiscard]] const kstring* getWstringFromIntT(PQObjectType tableId, T value,
                                                PQInitializationFunction initializationFunction) {
    const std::map<T, kstring>& table = get_intToWstringMap<T>(tableId, initializationFunction);
    const auto found = table.find(value);
    if (found == table.end()) {
        detail::throwValueNotValid(
            "getWstringFromIntT", 489,
            "Value not valid : '" + PQDebugString::fromIntToWstring(detail::decimalOf(value)) +
                "' - type: " + PQDebugString::fromIntToWstring(detail::decimalOf(tableId)));
    }
    return &found->second;
}

// The value named `name` (case-sensitive). An unknown name throws
// PQException; the apostrophe after the name is doubled, as the log readers
// of the product expect:
//   "Value not valid : 'Nothing'' - type: 60' tablesize=15"
template <class T>
[[nodiscard]] T getIntFromWstringT(PQObjectType tableId, const kstring& name,
                                   PQInitializationFunction initializationFunction) {
    const std::map<kstring, T>& table = get_wstringToIntMap<T>(tableId, initializationFunction);
    const auto found = table.find(name);
    if (found == table.end()) {
        detail::throwValueNotValid(
            "getIntFromWstringT", 330,
            "Value not valid : '" + name + "'" + "' - type: " +
                PQDebugString::fromIntToWstring(detail::decimalOf(tableId)) + "' tablesize=" +
                PQDebugString::fromLongLongToWstring(static_cast<long long>(table.size())));
    }
    return found->second;
}

// Frees both tables of `tableId`; their registry keys stay, with null
// pointers, and the next lookup builds them again. Absent tables are skipped.
template <class T> void cleanMaps(PQObjectType tableId) {
    static_assert(std::is_enum_v<T>, "name tables are keyed by an enumeration");
    for (PQNameRegistry* registry :
         {&PQAdvancedConst::get_wstringToIntMap_g(), &PQAdvancedConst::get_intToWstringMap_g()}) {
        if (const auto found = registry->find(tableId); found != registry->end()) {
            found->second.reset();
        }
    }
}

// The body shared by every table initialiser: when the value-to-name table
// of `tableId` is empty, assigns every row in order, then builds the reverse.
template <class T>
void fillNameTable(PQObjectType tableId, PQInitializationFunction self,
                   std::span<const PQVocabularyRow<T>> rows) {
    std::map<T, kstring>& table = get_intToWstringMap<T>(tableId, self);
    if (!table.empty()) {
        return;
    }
    for (const PQVocabularyRow<T>& row : rows) {
        table[row.value] = row.name;
    }
    PQAdvancedConst::reverseMap(tableId);
}

} // namespace PQ_DEBUG
