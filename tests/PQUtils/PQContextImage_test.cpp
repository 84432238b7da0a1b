#include "PQUtils/Utils/PQContextImage.h"

#include <array>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

// The product's classes that the record points to, as far as this test
// needs them: objects that tell whether they are still alive.
namespace PQ_MAINLIBDATA {
class PQMeaningPage {
public:
    int alive = 1;
};
} // namespace PQ_MAINLIBDATA

namespace PQ_EXTERN {
class PQIdentifier {
public:
    int alive = 1;
};
} // namespace PQ_EXTERN

namespace PQ_MAINLIB {
class PQContextAction {
public:
    int alive = 1;
};
} // namespace PQ_MAINLIB

using PQ_DEBUG::PQCOMPtr;
using PQ_UTILS::PQContextImage;

namespace {

// A distinct address for every pointer parameter, never dereferenced.
template <class T> T* slot(std::array<char, 32>& slots, std::size_t i) {
    return reinterpret_cast<T*>(
        &slots.at(i)); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

} // namespace

TEST(PQContextImage, FieldsTakeTheirParametersAndOwnOnlyTheirContainers) {
    namespace M = PQ_MAINLIB;
    std::array<char, 32> s{};
    auto pages = std::make_unique<PQ_MAINLIBDATA::PQMeaningPage[]>(3);
    PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*> page1(&pages[0]);
    PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*> page2(&pages[1]);
    PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*> page3(&pages[2]);
    PQCOMPtr<M::PQInstances*> instances(slot<M::PQInstances>(s, 20));
    const PQ_EXTERN::PQIdentifier first;
    const PQ_EXTERN::PQIdentifier second;
    auto action = std::make_unique<M::PQContextAction>();
    std::vector<M::PQContextAction*> actions{action.get()};

    auto image = std::make_unique<PQContextImage>(
        page1, page2, page3, slot<M::PQContext>(s, 4), slot<M::PQContextManager>(s, 5), first,
        second, slot<M::PQNavigationController>(s, 8), slot<M::PQComToWB>(s, 9),
        slot<M::PQInformerController>(s, 10), slot<M::PQViewController>(s, 11),
        slot<M::PQPurchaseUserControlsController>(s, 12), slot<M::PQNavigationStepManager>(s, 13),
        slot<M::PQOutManager>(s, 14), slot<M::PQInManager>(s, 15),
        slot<M::PQIPurchaseDataController>(s, 16), slot<M::PQTabController>(s, 17),
        slot<M::PQMeaningDataController>(s, 18), slot<M::PQIExtension>(s, 19), instances, actions);

    EXPECT_EQ(image->meaningPage1, &pages[0]);
    EXPECT_EQ(image->meaningPage3, &pages[2]);
    EXPECT_EQ(&image->identifier1, &first);
    EXPECT_EQ(&image->identifier2, &second);
    EXPECT_EQ(image->context, slot<M::PQContext>(s, 4));
    EXPECT_EQ(image->contextManager, slot<M::PQContextManager>(s, 5));
    EXPECT_EQ(image->navigationController, slot<M::PQNavigationController>(s, 8));
    EXPECT_EQ(image->comToWB, slot<M::PQComToWB>(s, 9));
    EXPECT_EQ(image->purchaseUserControlsController,
              slot<M::PQPurchaseUserControlsController>(s, 12));
    EXPECT_EQ(image->extension, slot<M::PQIExtension>(s, 19));
    EXPECT_EQ(image->instances, slot<M::PQInstances>(s, 20));
    EXPECT_TRUE(image->meaningPagesByName.empty());
    EXPECT_EQ(image->reserved1 | image->reserved2, 0U);

    // The record keeps its own copy of the list.
    actions.clear();
    ASSERT_EQ(image->contextActions.size(), 1U);
    EXPECT_EQ(image->contextActions[0], action.get());

    // Freed with its containers; what it points to lives on (the sanitizer
    // would see a read of freed memory).
    image->meaningPagesByName["page"] = &pages[1];
    image.reset();
    EXPECT_EQ(action->alive + pages[0].alive + pages[1].alive + first.alive, 4);
}
