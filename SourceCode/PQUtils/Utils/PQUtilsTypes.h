#pragma once

#include "PQDebug/PQDebugTypes.h"
#include "PQDebug/PQException.h"

namespace PQ_UTILS {

// The debug library's vocabulary, as the utility library uses it.
using PQ_DEBUG::kstring;
using PQ_DEBUG::PQException;
using PQ_DEBUG::PQLogType;
using PQ_DEBUG::PQNullPointerException;

} // namespace PQ_UTILS
