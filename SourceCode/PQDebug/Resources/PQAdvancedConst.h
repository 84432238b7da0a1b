#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "PQDebug/PQDebugTypes.h"
#include "PQDebug/Resources/PQObjectType.h"

namespace PQ_DEBUG {

// Owns one name table of the registry behind an untyped pointer, remembering
// its type so that it is freed, reversed and read back only as what it is.
// A null pointer means the table was freed.
class PQNameTablePointer {
public:
    PQNameTablePointer() = default;
    PQNameTablePointer(const PQNameTablePointer&) = delete;
    PQNameTablePointer& operator=(const PQNameTablePointer&) = delete;
    PQNameTablePointer(PQNameTablePointer&& other) noexcept
        : m_table(other.m_table), m_ops(other.m_ops) {
        other.m_table = nullptr;
    }
    PQNameTablePointer& operator=(PQNameTablePointer&& other) noexcept {
        if (this != &other) {
            reset();
            m_table = other.m_table;
            m_ops = other.m_ops;
            other.m_table = nullptr;
        }
        return *this;
    }
    ~PQNameTablePointer() { reset(); }

    // A new empty table of type Map (a std::map between an enumeration and
    // its names, either way).
    template <class Map> [[nodiscard]] static PQNameTablePointer make() {
        PQNameTablePointer pointer;
        pointer.m_table = new Map(); // owned here, freed by reset()
        pointer.m_ops = &kOps<Map>;
        return pointer;
    }

    [[nodiscard]] void* get() const noexcept { return m_table; }
    explicit operator bool() const noexcept { return m_table != nullptr; }

    // The table as a Map; null when freed. Throws std::logic_error when the
    // table is of another type.
    template <class Map> [[nodiscard]] Map* getAs() const {
        if (m_table == nullptr) {
            return nullptr;
        }
        if (*m_ops->type != typeid(Map)) {
            throw std::logic_error(std::string("name table read as the wrong type: ") +
                                   m_ops->type->name());
        }
        return static_cast<Map*>(m_table);
    }

    // Frees the table; the pointer is null afterwards.
    void reset() noexcept {
        if (m_table != nullptr) {
            m_ops->destroy(m_table);
            m_table = nullptr;
        }
    }

    // Makes `reverse` the exact inverse of this value-to-name table (creating
    // it when null). Throws std::logic_error when this is a name-to-value table.
    void buildReverse(PQNameTablePointer& reverse) const {
        if (m_table == nullptr || m_ops->reverse == nullptr) {
            throw std::logic_error("reverseMap: not a value-to-name table");
        }
        m_ops->reverse(m_table, reverse);
    }

private:
    struct Ops {
        const std::type_info* type;
        void (*destroy)(void*);
        void (*reverse)(const void*, PQNameTablePointer&);
    };

    template <class Map> static void destroyTable(void* table) { delete static_cast<Map*>(table); }

    template <class Map> static void reverseTable(const void* table, PQNameTablePointer& reverse) {
        using Value = typename Map::key_type;
        using Reverse = std::map<kstring, Value>;
        if (!reverse) {
            reverse = make<Reverse>();
        }
        Reverse& names = *reverse.getAs<Reverse>();
        names.clear();
        for (const auto& [value, name] : *static_cast<const Map*>(table)) {
            names[name] = value;
        }
    }

    // Only a value-to-name table can be reversed.
    template <class Map> static constexpr auto reverserOf() {
        using Reverser = void (*)(const void*, PQNameTablePointer&);
        if constexpr (std::is_same_v<typename Map::mapped_type, kstring>) {
            return Reverser{&reverseTable<Map>};
        } else {
            return Reverser{nullptr};
        }
    }

    template <class Map>
    static inline const Ops kOps{&typeid(Map), &destroyTable<Map>, reverserOf<Map>()};

    void* m_table = nullptr;
    const Ops* m_ops = nullptr;
};

using PQNameRegistry = std::map<PQObjectType, PQNameTablePointer>;

// The registry between enumeration values and their names: one table per
// PQObjectType identifier, in each direction.
class PQAdvancedConst {
public:
    // PQObjectType -> table from value to name.
    [[nodiscard]] static PQNameRegistry& get_intToWstringMap_g();
    // PQObjectType -> table from name to value.
    [[nodiscard]] static PQNameRegistry& get_wstringToIntMap_g();
    // Fills the name-to-value table of `tableId` as the exact inverse of its
    // value-to-name table. Throws std::logic_error when that table is missing.
    static void reverseMap(PQObjectType tableId);
};

} // namespace PQ_DEBUG
