#pragma once

// Every public header of the debug library and of the utility library.

#include "PQDebug/PQCOMPtr.h"
#include "PQDebug/PQDebug.h"
#include "PQDebug/PQDebugString.h"
#include "PQDebug/PQDebugTypes.h"
#include "PQDebug/PQException.h"
#include "PQDebug/PQInit.h"
#include "PQDebug/PQUtil_macosx.h"
#include "PQDebug/Resources/PQAdvancedConst.h"
#include "PQDebug/Resources/PQConst.h"
#include "PQDebug/Resources/PQObjectType.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQInit.h"
#include "PQUtils/Utils/PQString.h"
#include "PQUtils/Utils/PQUtil.h"
#include "PQUtils/Utils/PQUtilsTypes.h"
