#include "PQUtils/Utils/PQContextImage.h"

#include <array>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

// The one class of the product's that the test needs whole: the record keeps
// identifiers by reference.
namespace PQ_EXTERN {
class PQIdentifier {};
} // namespace PQ_EXTERN

using PQ_DEBUG::PQCOMPtr;
using PQ_UTILS::PQContextImage;
namespace M = PQ_MAINLIB;

namespace {

// A distinct address for every pointer parameter, never dereferenced: the
// sanitizer would report a free of any of them.
std::array<char, 24> slots{};
template <class T> T* slot(std::size_t i) {
    return reinterpret_cast<T*>(
        &slots.at(i)); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

} // namespace

TEST(PQContextImage, FieldsTakeTheirParametersAndOwnOnlyTheirContainers) {
    PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*> page1(slot<PQ_MAINLIBDATA::PQMeaningPage>(1));
    PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*> page2(slot<PQ_MAINLIBDATA::PQMeaningPage>(2));
    PQCOMPtr<PQ_MAINLIBDATA::PQMeaningPage*> page3(slot<PQ_MAINLIBDATA::PQMeaningPage>(3));
    PQCOMPtr<M::PQInstances*> instances(slot<M::PQInstances>(20));
    const PQ_EXTERN::PQIdentifier first;
    const PQ_EXTERN::PQIdentifier second;
    std::vector<M::PQContextAction*> actions{slot<M::PQContextAction>(21)};

    auto image = std::make_unique<PQContextImage>(
        page1, page2, page3, slot<M::PQContext>(4), slot<M::PQContextManager>(5), first, second,
        slot<M::PQNavigationController>(8), slot<M::PQComToWB>(9),
        slot<M::PQInformerController>(10), slot<M::PQViewController>(11),
        slot<M::PQPurchaseUserControlsController>(12), slot<M::PQNavigationStepManager>(13),
        slot<M::PQOutManager>(14), slot<M::PQInManager>(15), slot<M::PQIPurchaseDataController>(16),
        slot<M::PQTabController>(17), slot<M::PQMeaningDataController>(18),
        slot<M::PQIExtension>(19), instances, actions);

    EXPECT_EQ(image->meaningPage3, slot<PQ_MAINLIBDATA::PQMeaningPage>(3));
    EXPECT_EQ(&image->identifier1, &first);
    EXPECT_EQ(&image->identifier2, &second);
    EXPECT_EQ(image->context, slot<M::PQContext>(4));
    EXPECT_EQ(image->extension, slot<M::PQIExtension>(19));
    EXPECT_EQ(image->instances, slot<M::PQInstances>(20));
    EXPECT_TRUE(image->meaningPagesByName.empty());
    EXPECT_EQ(image->reserved1 | image->reserved2, 0U);

    // The record keeps its own copy of the list.
    actions.clear();
    EXPECT_EQ(image->contextActions, std::vector{slot<M::PQContextAction>(21)});

    // Freed with its containers, and nothing it points to.
    image->meaningPagesByName["page"] = slot<PQ_MAINLIBDATA::PQMeaningPage>(2);
    image.reset();
}
