#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "PQDebug/PQCOMPtr.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

// The product's classes that a context is made of. They live in other
// libraries; here they are only pointed to.
namespace PQ_MAINLIBDATA {
class PQMeaningPage;
} // namespace PQ_MAINLIBDATA

namespace PQ_EXTERN {
class PQIdentifier;
} // namespace PQ_EXTERN

namespace PQ_MAINLIB {
class PQContext;
class PQContextManager;
class PQNavigationController;
class PQComToWB;
class PQInformerController;
class PQViewController;
class PQPurchaseUserControlsController;
class PQNavigationStepManager;
class PQOutManager;
class PQInManager;
class PQIPurchaseDataController;
class PQTabController;
class PQMeaningDataController;
class PQIExtension;
class PQContextAction;
class PQInstances;
} // namespace PQ_MAINLIB

namespace PQ_UTILS {

// The objects that make up a context at one moment, carried as one value.
// It owns nothing it points to and extends no lifetime: it is valid only
// while every object it points to, and both identifiers, are alive. Its own
// containers (the action list and the page map) are freed with it.
struct PQContextImage {
    // The parameters come in the product's order, which is not the order of
    // the fields: the context manager is the fifth parameter, and the first
    // identifier is stored before the context. The handles' raw pointers are
    // kept; no reference is taken on them. `contextActions` is copied.
    PQContextImage(PQ_DEBUG::PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*>& page1,
                   PQ_DEBUG::PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*>& page2,
                   PQ_DEBUG::PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*>& page3,
                   PQ_MAINLIB::PQContext* context, PQ_MAINLIB::PQContextManager* contextManager,
                   PQ_EXTERN::PQIdentifier const& identifier1,
                   PQ_EXTERN::PQIdentifier const& identifier2,
                   PQ_MAINLIB::PQNavigationController* navigationController,
                   PQ_MAINLIB::PQComToWB* comToWB,
                   PQ_MAINLIB::PQInformerController* informerController,
                   PQ_MAINLIB::PQViewController* viewController,
                   PQ_MAINLIB::PQPurchaseUserControlsController* purchaseUserControlsController,
                   PQ_MAINLIB::PQNavigationStepManager* navigationStepManager,
                   PQ_MAINLIB::PQOutManager* outManager, PQ_MAINLIB::PQInManager* inManager,
                   PQ_MAINLIB::PQIPurchaseDataController* purchaseDataController,
                   PQ_MAINLIB::PQTabController* tabController,
                   PQ_MAINLIB::PQMeaningDataController* meaningDataController,
                   PQ_MAINLIB::PQIExtension* extension,
                   PQ_DEBUG::PQCOMPtr<PQ_MAINLIB::PQInstances*>& instances,
                   std::vector<PQ_MAINLIB::PQContextAction*> const& contextActions);

    PQ_MAINLIBDATA::PQMeaningPage* meaningPage1;
    PQ_MAINLIBDATA::PQMeaningPage* meaningPage2;
    PQ_MAINLIBDATA::PQMeaningPage* meaningPage3;
    PQ_EXTERN::PQIdentifier const& identifier1;
    PQ_MAINLIB::PQContext* context;
    PQ_EXTERN::PQIdentifier const& identifier2;
    PQ_MAINLIB::PQNavigationController* navigationController;
    PQ_MAINLIB::PQComToWB* comToWB;
    PQ_MAINLIB::PQContextManager* contextManager;
    PQ_MAINLIB::PQInformerController* informerController;
    PQ_MAINLIB::PQViewController* viewController;
    PQ_MAINLIB::PQPurchaseUserControlsController* purchaseUserControlsController;
    PQ_MAINLIB::PQNavigationStepManager* navigationStepManager;
    PQ_MAINLIB::PQOutManager* outManager;
    PQ_MAINLIB::PQInManager* inManager;
    PQ_MAINLIB::PQIPurchaseDataController* purchaseDataController;
    PQ_MAINLIB::PQTabController* tabController;
    PQ_MAINLIB::PQMeaningDataController* meaningDataController;
    PQ_MAINLIB::PQIExtension* extension;
    std::vector<PQ_MAINLIB::PQContextAction*> contextActions;
    PQ_MAINLIB::PQInstances* instances;
    // Empty when built; the pages are not owned.
    std::map<kstring, PQ_MAINLIBDATA::PQMeaningPage*> meaningPagesByName;
    // Zero when built; the product gives them no meaning here.
    std::uint64_t reserved1 = 0;
    std::uint64_t reserved2 = 0;
};

} // namespace PQ_UTILS
