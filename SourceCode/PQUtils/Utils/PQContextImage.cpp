#include "PQUtils/Utils/PQContextImage.h"

namespace PQ_UTILS {

PQContextImage::PQContextImage(
    PQ_DEBUG::PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*>& page1,
    PQ_DEBUG::PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*>& page2,
    PQ_DEBUG::PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*>& page3, PQ_MAINLIB::PQContext* context,
    PQ_MAINLIB::PQContextManager* contextManager, PQ_EXTERN::PQIdentifier const& identifier1,
    PQ_EXTERN::PQIdentifier const& identifier2,
    PQ_MAINLIB::PQNavigationController* navigationController, PQ_MAINLIB::PQComToWB* comToWB,
    PQ_MAINLIB::PQInformerController* informerController,
    PQ_MAINLIB::PQViewController* viewController,
    PQ_MAINLIB::PQPurchaseUserControlsController* purchaseUserControlsController,
    PQ_MAINLIB::PQNavigationStepManager* navigationStepManager,
    PQ_MAINLIB::PQOutManager* outManager, PQ_MAINLIB::PQInManager* inManager,
    PQ_MAINLIB::PQIPurchaseDataController* purchaseDataController,
    PQ_MAINLIB::PQTabController* tabController,
    PQ_MAINLIB::PQMeaningDataController* meaningDataController, PQ_MAINLIB::PQIExtension* extension,
    PQ_DEBUG::PQCOMPtr<PQ_MAINLIB::PQInstances*>& instances,
    // The product's callers hand their own list over by reference.
    // NOLINTNEXTLINE(modernize-pass-by-value)
    std::vector<PQ_MAINLIB::PQContextAction*> const& contextActions)
    : meaningPage1(page1.get()), meaningPage2(page2.get()), meaningPage3(page3.get()),
      identifier1(identifier1), context(context), identifier2(identifier2),
      navigationController(navigationController), comToWB(comToWB), contextManager(contextManager),
      informerController(informerController), viewController(viewController),
      purchaseUserControlsController(purchaseUserControlsController),
      navigationStepManager(navigationStepManager), outManager(outManager), inManager(inManager),
      purchaseDataController(purchaseDataController), tabController(tabController),
      meaningDataController(meaningDataController), extension(extension),
      contextActions(contextActions), instances(instances.get()) {}

} // namespace PQ_UTILS
