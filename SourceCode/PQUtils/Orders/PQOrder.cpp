#include "PQUtils/Orders/PQOrder.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQDebugString.h"
#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQOrderTextInternal.h"
#include "PQUtils/Orders/PQOrder_p.h"
#include "PQUtils/Utils/PQBlockPoolInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"
#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQOrder";

const kstring& actionName(PQReceivedOrderType action) {
    return *PQ_DEBUG::getWstringFromIntT<PQReceivedOrderType>(
        PQ_DEBUG::PQObjectType_PQReceivedOrderType, action, &initialize_public_PQReceivedOrderType);
}

const kstring& orderTypeName(PQOrderType type) {
    return *PQ_DEBUG::getWstringFromIntT<PQOrderType>(PQ_DEBUG::PQObjectType_PQOrderType, type,
                                                      &initialize_public_PQOrderType);
}

// Removes the first piece that `match` accepts; the others keep their order.
template <class Match>
void eraseFirst(std::vector<std::unique_ptr<PQOrderPiece>>& pieces, Match match) {
    const auto found = std::find_if(pieces.begin(), pieces.end(),
                                    [&match](const auto& each) { return match(*each); });
    if (found != pieces.end()) {
        pieces.erase(found);
    }
}

// Appends `piece`; a null one fails as "piece.get()", at `site`. A list is
// first given room for four: arrays and objects of a few pieces are spared
// the first regrowths of their list.
void appendPiece(std::vector<std::unique_ptr<PQOrderPiece>>& pieces,
                 std::unique_ptr<PQOrderPiece> piece, const frame::PQSite& site) {
    if (piece == nullptr) {
        throw frame::nullPointer("piece.get()", site);
    }
    constexpr std::size_t kFirstRoom = 4;
    if (pieces.capacity() == 0) {
        pieces.reserve(kFirstRoom);
    }
    pieces.push_back(std::move(piece));
}

// Set while a copy of a tree copies the pieces of its nested orders itself.
thread_local bool tl_copyingLevelByLevel = false;

// What a plain order answers when asked for a rendering only JSON orders have.
PQException notForAPlainOrder(const char* function) {
    return frame::failure("this must must not be called", {function, pqSourceFile, __LINE__});
}

} // namespace

PQOrder_p::PQOrder_p(PQOrder* publicImp, PQReceivedOrderType action, PQOrderType type) try
    : m_pPublicImp(publicImp), m_orderType(type), m_action(action) {
    PQ_CHECK_NULL(m_pPublicImp);
}
PQ_CATCH_AND_TREAT

PQOrder_p::~PQOrder_p() = default;

PQ_POOLED_ALLOCATION_OF(PQOrder_p)

PQOrder::PQOrder(PQOrderType type) : PQOrder(PQReceivedOrderType_NO_TYPE, type) {}

PQOrder::PQOrder(PQReceivedOrderType action, PQOrderType type) try
    : m_pPrivateImp(std::make_unique<PQOrder_p>(this, action, type)) {
    traceLife("PQOrder", "creating PQOrder ");
}
PQ_CATCH_AND_TREAT

PQOrder::PQOrder(const PQOrder& order) try
    : PQIdentifiable(order),
      m_pPrivateImp(std::make_unique<PQOrder_p>(this, order.m_pPrivateImp->m_action,
                                                order.m_pPrivateImp->m_orderType)) {
    m_pPrivateImp->m_initialized = order.m_pPrivateImp->m_initialized;
    if (!tl_copyingLevelByLevel) {
        copyTreeOf(order);
    }
    traceLife("PQOrder", "creating PQOrder ");
}
PQ_CATCH_AND_TREAT

void PQOrder::copyTreeOf(const PQOrder& original) {
    // Each nested order is cloned (so it keeps its class) while the flag
    // keeps the clone from copying pieces of its own; its pieces are copied
    // here in turn. A deeply nested tree is so copied without recursing
    // once per level.
    struct LevelByLevel {
        LevelByLevel() noexcept { tl_copyingLevelByLevel = true; }
        LevelByLevel(const LevelByLevel&) = delete;
        LevelByLevel& operator=(const LevelByLevel&) = delete;
        ~LevelByLevel() { tl_copyingLevelByLevel = false; }
    } const levelByLevel;
    std::vector<std::pair<PQOrder*, const PQOrder*>> pending{{this, &original}};
    while (!pending.empty()) {
        const auto [copy, source] = pending.back();
        pending.pop_back();
        auto& pieces = copy->m_pPrivateImp->m_listOrderPiece;
        pieces.reserve(source->m_pPrivateImp->m_listOrderPiece.size());
        for (const std::unique_ptr<PQOrderPiece>& piece : source->m_pPrivateImp->m_listOrderPiece) {
            pieces.push_back(std::make_unique<PQOrderPiece>(*piece));
            if (piece->m_orderPieceValue != nullptr) {
                pending.emplace_back(pieces.back()->m_orderPieceValue.get(),
                                     piece->m_orderPieceValue.get());
            }
        }
    }
}

std::unique_ptr<PQOrder> PQOrder::clone() const try {
    PQ_ASSERT(m_pPrivateImp->m_orderType == PQOrderType_ORDER_NORMAL ||
              m_pPrivateImp->m_orderType == PQOrderType_ORDER_AUTH_STATUS);
    return std::make_unique<PQOrder>(*this);
}
PQ_CATCH_AND_TREAT

PQOrder::~PQOrder() {
    try {
        traceLife("~PQOrder", "destructing PQOrder ");
    } catch (...) { // NOLINT(bugprone-empty-catch): a destructor must not throw
    }
    // Takes nested orders apart here, level by level, so that destroying a
    // deeply nested tree does not recurse once per level. Should this list
    // fail to grow, what is left is destroyed the ordinary way.
    try {
        std::vector<std::unique_ptr<PQOrderPiece>> doomed;
        doomed.swap(m_pPrivateImp->m_listOrderPiece);
        while (!doomed.empty()) {
            const std::unique_ptr<PQOrderPiece> piece = std::move(doomed.back());
            doomed.pop_back();
            if (piece->m_orderPieceValue != nullptr) {
                auto& inner = piece->m_orderPieceValue->m_pPrivateImp->m_listOrderPiece;
                // Grown geometrically: reserving the exact size each time
                // would copy the list once per nested order.
                doomed.insert(doomed.end(), std::make_move_iterator(inner.begin()),
                              std::make_move_iterator(inner.end()));
                inner.clear();
            }
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): a destructor must not throw
    }
}

PQOrder& PQOrder::operator=(const PQOrder& /*order*/) { throw frame::notAllowed(PQ_FRAME_SITE()); }

void PQOrder::traceLife(const char* source, const char* verb) const {
    if (m_pPrivateImp->m_orderType != PQOrderType_ORDER_CHANGELANGUAGE ||
        !PQ_DEBUG::PQDebug::mustLogDependingOnLogLevel(PQ_DEBUG::PQLogType_PQUTILS, 3)) {
        return;
    }
    kstring text = verb;
    text.append(orderTypeName(m_pPrivateImp->m_orderType))
        .append(" - ")
        .append(actionName(m_pPrivateImp->m_action))
        .append(" - ")
        .append(PQ_DEBUG::PQDebugString::fromULongLongToWstring(
            reinterpret_cast<std::uintptr_t>(this))); // NOLINT: the address is the identity
    PQ_DEBUG::PQDebug::LogToConsoleAndFileNow(PQ_DEBUG::PQDebug::get_ERRORCODE_NOTICE(),
                                              PQ_DEBUG::PQLogType_PQUTILS, source, text, false,
                                              __LINE__);
}

PQOrderPiece* PQOrder::findPiece(const std::string& key) const {
    const auto& pieces = m_pPrivateImp->m_listOrderPiece;
    const auto found = std::find_if(pieces.begin(), pieces.end(),
                                    [&key](const auto& piece) { return piece->get_key() == key; });
    return found == pieces.end() ? nullptr : found->get();
}

void PQOrder::add_orderPiece(std::unique_ptr<PQOrderPiece> piece) try {
    appendPiece(m_pPrivateImp->m_listOrderPiece, std::move(piece), PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

void PQOrder::add_orderPiece_noCheck(std::unique_ptr<PQOrderPiece> piece) try {
    appendPiece(m_pPrivateImp->m_listOrderPiece, std::move(piece), PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

void PQOrder::add_orderPiece(const std::string& key, const std::string& value) try {
    add_orderPiece(std::make_unique<PQOrderPiece>(key, value));
}
PQ_CATCH_AND_TREAT

void PQOrder::add_orderPiece_noCheck(const std::string& key, const std::string& value) try {
    add_orderPiece_noCheck(std::make_unique<PQOrderPiece>(key, value));
}
PQ_CATCH_AND_TREAT

void PQOrder::add_orderPiece(const std::string& key, std::unique_ptr<PQOrder> order) try {
    add_orderPiece(std::make_unique<PQOrderPiece>(key, std::move(order)));
}
PQ_CATCH_AND_TREAT

void PQOrder::add_orderPiece_noCheck(const std::string& key, std::unique_ptr<PQOrder> order) try {
    add_orderPiece_noCheck(std::make_unique<PQOrderPiece>(key, std::move(order)));
}
PQ_CATCH_AND_TREAT

void PQOrder::update_orderPiece(std::unique_ptr<PQOrderPiece> piece) try {
    PQ_CHECK_NULL(piece.get());
    PQOrderPiece* const found = findPiece(piece->get_key());
    if (found == nullptr) {
        kstring message = "Trying to update a value that does not exist for key: ";
        message.append(piece->get_key());
        throw frame::failure(std::move(message), PQ_FRAME_SITE());
    }
    if (piece->get_orderPieceType() != PQOrderPiece::TYPE_STRING) {
        PQ_CHECK_NULL(piece->m_orderPieceValue.get());
        found->m_orderPieceValue = piece->m_orderPieceValue->clone();
    } else {
        found->m_value = PQSourceOrderPieceWrapper(*piece->m_value.getStringSource());
    }
}
PQ_CATCH_AND_TREAT

void PQOrder::update_orderPiece(const std::string& key, const std::string& value) try {
    update_orderPiece(std::make_unique<PQOrderPiece>(key, value));
}
PQ_CATCH_AND_TREAT

void PQOrder::update_orderPiece(const std::string& key, std::unique_ptr<PQOrder> order) try {
    update_orderPiece(std::make_unique<PQOrderPiece>(key, std::move(order)));
}
PQ_CATCH_AND_TREAT

void PQOrder::delete_orderPiece(std::unique_ptr<PQOrderPiece> piece) try {
    PQ_CHECK_NULL(piece.get());
    eraseFirst(m_pPrivateImp->m_listOrderPiece,
               [&piece](const PQOrderPiece& each) { return each.get_key() == piece->get_key(); });
}
PQ_CATCH_AND_TREAT

void PQOrder::delete_orderPiece(const std::string& key) try {
    delete_orderPiece(std::make_unique<PQOrderPiece>(key, std::string()));
}
PQ_CATCH_AND_TREAT

void PQOrder::delete_orderPieceValue(std::unique_ptr<PQOrderPiece> piece) try {
    PQ_CHECK_NULL(piece.get());
    const PQSecuredString wanted = piece->get_pieceValue();
    eraseFirst(m_pPrivateImp->m_listOrderPiece, [&wanted](const PQOrderPiece& each) {
        return *each.get_pieceValue().getStringSource() == *wanted.getStringSource();
    });
}
PQ_CATCH_AND_TREAT

void PQOrder::delete_orderPieceValue(const std::string& value) try {
    delete_orderPieceValue(std::make_unique<PQOrderPiece>(std::string(), value));
}
PQ_CATCH_AND_TREAT

PQSecuredString PQOrder::get_orderString() const try {
    // Nested orders render through their own virtual operation; text values
    // are read in place.
    const auto& pieces = m_pPrivateImp->m_listOrderPiece;
    std::vector<PQSecuredString> nested;
    std::vector<internal::OrderTextPiece> texts;
    texts.reserve(pieces.size());
    for (const std::unique_ptr<PQOrderPiece>& piece : pieces) {
        texts.push_back(
            {piece->get_key(),
             piece->get_orderPieceType() == PQOrderPiece::TYPE_STRING
                 ? std::string_view(*piece->m_value.getStringSource())
                 : std::string_view(
                       *nested.emplace_back(piece->get_localOrderString()).getStringSource())});
    }
    PQWipedString text;
    internal::appendOrderText(text.get(), actionName(m_pPrivateImp->m_action), texts);
    return PQSecuredString(std::move(text.get()));
}
PQ_CATCH_AND_TREAT

PQSecuredString PQOrder::get_orderString_Debug() const try { return get_orderString(); }
PQ_CATCH_AND_TREAT

PQSecuredString PQOrder::get_localOrderString() const { throw notForAPlainOrder(__func__); }

PQSecuredString PQOrder::get_localOrderString_noEscape() const {
    throw notForAPlainOrder(__func__);
}

void PQOrder::get_localOrderString(PQSourceOrderPieceWrapper& /*out*/) const {
    throw notForAPlainOrder(__func__);
}

void PQOrder::get_localOrderString_noEscape(PQSourceOrderPieceWrapper& /*out*/) const {
    throw notForAPlainOrder(__func__);
}

PQSecuredString PQOrder::get_pieceValue() const { throw notForAPlainOrder(__func__); }

kstring PQOrder::get_action() const try { return actionName(m_pPrivateImp->m_action); }
PQ_CATCH_AND_TREAT

void PQOrder::set_action(PQReceivedOrderType action) { m_pPrivateImp->m_action = action; }

const PQOrderPiece* PQOrder::get_orderPiece(const std::string& key) const try {
    return findPiece(key);
}
PQ_CATCH_AND_TREAT

bool PQOrder::orderPieceExists(const std::string& key) const try {
    return findPiece(key) != nullptr;
}
PQ_CATCH_AND_TREAT

const std::vector<std::unique_ptr<PQOrderPiece>>& PQOrder::get_listOrderPiece() const {
    return m_pPrivateImp->m_listOrderPiece;
}

bool PQOrder::get_initialized() const { return m_pPrivateImp->m_initialized; }

void PQOrder::set_initialized(bool initialized) { m_pPrivateImp->m_initialized = initialized; }

PQOrderType PQOrder::get_orderType() const { return m_pPrivateImp->m_orderType; }

namespace internal {

void appendOrderText(kstring& out, std::string_view action,
                     std::span<const OrderTextPiece> pieces) {
    if (action.empty()) {
        return;
    }
    constexpr std::string_view kHead = "action=";
    constexpr std::string_view kEnd = "&//";
    std::size_t size = out.size() + kHead.size() + action.size() + kEnd.size();
    for (const OrderTextPiece& piece : pieces) {
        size += piece.key.size() + 2 + orderEscapedBound(piece.value);
    }
    reserveAtLeast(out, size);
    out.append(kHead).append(action);
    for (const OrderTextPiece& piece : pieces) {
        out.push_back('&');
        out.append(piece.key);
        out.push_back('=');
        // The whole text has its room already.
        appendOrderEscaped(out, piece.value, 0);
    }
    out.append(kEnd);
}

} // namespace internal

} // namespace PQ_UTILS
