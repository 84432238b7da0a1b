#pragma once

#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// Measures how long a received order has been waiting. Implemented and owned
// by the library's users; a counter must outlive every order that points to
// it.
class PQITimeCounter {
public:
    virtual ~PQITimeCounter();
    virtual void start() = 0;
    // The age in milliseconds; negative is an error.
    virtual long long getElapsedMsecs() const = 0;
    virtual void restart() = 0;
    // Names the counter in failure reports.
    virtual const kstring& getDescription() const = 0;
};

} // namespace PQ_UTILS
