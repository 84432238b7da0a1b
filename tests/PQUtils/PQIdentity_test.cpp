#include "PQUtils/Utils/PQIdentity.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "PQDebug/Resources/PQObjectType.h"
#include "PQUtils/Utils/PQCreditCardNumberValidator.h"
#include "PQUtils/Utils/PQNumber.h"
#include "PQUtils/Utils/PQPasswordValidator.h"
#include "PQUtils/Utils/PQString.h"
#include "PQUtils/Utils/PQUtil.h"
#include "support/TestSupport.h"

using PQ_UTILS::PQIdentifiable;

namespace identity_test {

// Stand-ins named like two library classes, to show the mechanism on a
// hierarchy before the real order classes exist.
class PQOrder : public PQIdentifiable {
public:
    PQ_IDENTITY(PQOrder)
};

class PQJsonObject : public PQOrder {
public:
    PQ_IDENTITY(PQJsonObject)
};

} // namespace identity_test

TEST(PQIdentity, DerivedObjectReportsItsOwnTypeThroughABasePointer) {
    const std::unique_ptr<identity_test::PQOrder> order =
        std::make_unique<identity_test::PQJsonObject>();
    EXPECT_EQ(order->get_className_nonStatic(), "PQJsonObject");
    EXPECT_EQ(order->get_className_nonStatic_string(), "PQJsonObject");
    EXPECT_EQ(order->get_objectType(), PQ_DEBUG::PQObjectType_PQJsonObject);
    EXPECT_EQ(identity_test::PQOrder().get_objectType(), PQ_DEBUG::PQObjectType_PQOrder);
}

TEST(PQIdentity, UtilityClassesCarryTheTrio) {
    EXPECT_EQ(PQ_UTILS::PQString().get_objectType(), PQ_DEBUG::PQObjectType_PQString);
    EXPECT_EQ(PQ_UTILS::PQUtil().get_className_nonStatic(), "PQUtil");
    EXPECT_EQ(PQ_UTILS::PQNumber().get_objectType(), PQ_DEBUG::PQObjectType_PQNumber);
    EXPECT_EQ(PQ_UTILS::PQPasswordValidator().get_objectType(),
              PQ_DEBUG::PQObjectType_PQPasswordValidator);
    // Named, but not one of the registered types (as any class may be): its
    // type is the lookup failure.
    const PQ_UTILS::PQCreditCardNumberValidator cards;
    EXPECT_EQ(cards.get_className_nonStatic(), "PQCreditCardNumberValidator");
    EXPECT_EQ(pqtest::messageOf([&] { (void)cards.get_objectType(); }),
              "Value not valid : 'PQCreditCardNumberValidator'' - type: 60' tablesize=15");
}
