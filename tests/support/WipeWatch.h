#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "PQUtils/Utils/PQSecureMemory.h"

namespace pqtest {

// Records the texts wiped while it lives: the size of each, and whether
// every byte of it was zero. One watch at a time.
class WipeWatch {
public:
    struct Seen {
        bool allZero;
        std::size_t size;
    };
    WipeWatch() {
        seen().clear();
        PQ_UTILS::setWipeObserver(&record);
    }
    WipeWatch(const WipeWatch&) = delete;
    WipeWatch& operator=(const WipeWatch&) = delete;
    ~WipeWatch() { PQ_UTILS::setWipeObserver(nullptr); }

    static std::vector<Seen>& seen() {
        static std::vector<Seen> wipes;
        return wipes;
    }
    static bool allZero() {
        return std::all_of(seen().begin(), seen().end(), [](const Seen& s) { return s.allZero; });
    }

private:
    static void record(const char* data, std::size_t size) {
        seen().push_back({std::all_of(data, data + size, [](char c) { return c == 0; }), size});
    }
};

} // namespace pqtest
