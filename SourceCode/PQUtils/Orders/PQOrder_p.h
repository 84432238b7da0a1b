#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "PQUtils/Orders/PQOrderPiece.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Utils/PQIdentity.h"

namespace PQ_UTILS {

class PQOrder;

// The state of a PQOrder, behind its handle. Not for use outside PQOrder.
class PQOrder_p : public PQIdentifiable {
public:
    PQ_IDENTITY(PQOrder_p)

    // `publicImp` is the order that owns this state; it must not be null.
    PQOrder_p(PQOrder* publicImp, PQReceivedOrderType action, PQOrderType type);
    PQOrder_p(const PQOrder_p&) = delete;
    PQOrder_p& operator=(const PQOrder_p&) = delete;
    ~PQOrder_p() override;

    // From the block pool: one per order.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size) noexcept;

    PQOrder* m_pPublicImp;
    const PQOrderType m_orderType;
    PQReceivedOrderType m_action;
    std::vector<std::unique_ptr<PQOrderPiece>> m_listOrderPiece;
    bool m_initialized = false;
};

} // namespace PQ_UTILS
