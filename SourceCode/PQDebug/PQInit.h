#pragma once

namespace PQ_DEBUG {

// Start and stop of the debug library. The utility library's PQInit calls
// both; a host that uses the debug library alone calls them itself.
class PQInit {
public:
    // Builds the PQObjectType table. Only the first call does anything.
    static void init();
    // Frees the PQObjectType table (rebuilt on its next use) and flushes the
    // log output.
    static void clean();
};

} // namespace PQ_DEBUG
