#pragma once

namespace PQ_UTILS {

// Start and stop of the utility library, called by the host application.
class PQInit {
public:
    // Starts the debug library, sets the string constants and builds the
    // three order vocabularies. Only the first call does anything, even if
    // it fails: a failure propagates to the host and is not retried.
    static void init();
    // Frees the three vocabulary tables, then stops the debug library. A
    // later lookup builds its table again; a later init() does nothing.
    static void clean();

    // A flag for the host's own shutdown; the library never reads it.
    static void signalCleaningHasBegin();
    static void signalCleaningHasStopped();
    [[nodiscard]] static bool hasCleaningBegun();
};

} // namespace PQ_UTILS
