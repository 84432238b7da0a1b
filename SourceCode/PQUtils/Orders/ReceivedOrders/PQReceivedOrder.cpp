#include "PQUtils/Orders/ReceivedOrders/PQReceivedOrder.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "PQUtils/Orders/PQOrderTextInternal.h"
#include "PQUtils/Utils/PQByteSearchInternal.h"
#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQReceivedOrder";

using internal::findBytes;

// prefix + the order text, for the context of a parser's report.
kstring reportOf(std::string_view prefix, const PQSourceOrderWrapper& source) {
    const kstring& text = *source.getStringLog();
    kstring report;
    report.reserve(prefix.size() + text.size());
    report.append(prefix).append(text);
    return report;
}

// The report context shared by every bad element of one parse: built on the
// first failure, so that a well-formed order costs nothing and a hostile one
// with many bad elements costs one copy of itself, not one per element.
class PQElementReport {
public:
    explicit PQElementReport(const PQSourceOrderWrapper& source) : m_source(source) {}

    const kstring& text() {
        if (!m_text) {
            m_text.emplace(reportOf("getOrderPiecesFromOrder_2 - order: ", m_source));
        }
        return m_text->get();
    }

private:
    const PQSourceOrderWrapper& m_source;
    std::optional<PQWipedString> m_text; // holds the clear order text
};

// The order text without its one trailing "//".
std::string_view withoutEndMark(std::string_view text) {
    if (text.size() >= 2 && text.substr(text.size() - 2) == "//") {
        text.remove_suffix(2);
    }
    return text;
}

// Every escape token starts with this, so a value without it has nothing
// to unescape.
constexpr std::string_view kTokenStart = "--";

// Why an element without exactly one "=" is dropped, for callers that
// show the drops.
constexpr std::string_view kNotKeyValue = "not key=value";

// Keeps the pieces in the reader's list, and the drops where asked.
class PieceListSink final : public internal::OrderTextSink {
public:
    PieceListSink(PQReceivedOrder::PieceList& pieces, bool removeEntities,
                  std::vector<PQDroppedElement>* dropped)
        : m_pieces(pieces), m_removeEntities(removeEntities), m_dropped(dropped) {}

    void expect(std::size_t elements) override { m_pieces.reserve(elements); }
    // The value is made once, where it is kept: no partial copy of it is
    // left behind.
    void piece(std::string_view key, std::string_view rawValue) override {
        kstring value;
        internal::appendOrderValue(value, rawValue, m_removeEntities);
        m_pieces.emplace_back(kstring(key), std::move(value));
    }
    void dropped(std::size_t index, std::string_view element, std::string_view reason) override {
        if (m_dropped != nullptr) {
            m_dropped->push_back({index, kstring(element), kstring(reason)});
        }
    }

private:
    PQReceivedOrder::PieceList& m_pieces;
    bool m_removeEntities;
    std::vector<PQDroppedElement>* m_dropped;
};

// The condition texts of the age checks with an output argument.
constexpr std::string_view kAgeNotNegative = "msecs >= 0";
constexpr std::string_view kAgeUnderLimit = "(unsigned int)msecs < msecsMax";

} // namespace

PQITimeCounter::~PQITimeCounter() = default;

// The condition texts of one form of the age check.
struct PQReceivedOrder::AgeCheckTexts {
    std::string_view notNegative;
    std::string_view underLimit;
};

PQReceivedOrder::PQReceivedOrder(PQReceivedOrderType type) : m_receivedOrderType(type) {}

PQReceivedOrder::PQReceivedOrder(const PQReceivedOrder& other) try
    : PQIdentifiable(other), m_orderStringReceived(other.m_orderStringReceived),
      m_userData1(other.m_userData1), m_userData2(other.m_userData2),
      m_receivedOrderType(other.m_receivedOrderType), m_counter(other.m_counter) {}
PQ_CATCH_AND_TREAT

PQReceivedOrder::~PQReceivedOrder() = default;

void PQReceivedOrder::performSpecificTreatments() {}

PQReceivedOrderType PQReceivedOrder::get_receivedOrderType() const { return m_receivedOrderType; }

PQReceivedOrder::PieceList* PQReceivedOrder::get_listOrderPiece() const {
    return m_listOrderPiece.get();
}

void PQReceivedOrder::set_listOrderPiece(std::unique_ptr<PieceList> list) {
    m_listOrderPiece = std::move(list);
}

PQSourceOrderWrapper PQReceivedOrder::get_orderStringReceived() const try {
    return m_orderStringReceived;
}
PQ_CATCH_AND_TREAT

void PQReceivedOrder::set_id(const kstring& id) try { m_id = id; }
PQ_CATCH_AND_TREAT

const kstring& PQReceivedOrder::get_id() const { return m_id; }

void PQReceivedOrder::setCounter(PQITimeCounter* counter) { m_counter = counter; }

std::unique_ptr<PQReceivedOrder::PieceList>
PQReceivedOrder::getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, bool removeEntities) {
    return getOrderPiecesFromOrder(source, removeEntities, nullptr);
}

std::unique_ptr<PQReceivedOrder::PieceList>
PQReceivedOrder::getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, bool removeEntities,
                                         std::vector<PQDroppedElement>& dropped) {
    return getOrderPiecesFromOrder(source, removeEntities, &dropped);
}

std::unique_ptr<PQReceivedOrder::PieceList>
PQReceivedOrder::getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, bool removeEntities,
                                         std::vector<PQDroppedElement>* dropped) try {
    auto pieces = std::make_unique<PieceList>();
    PieceListSink sink(*pieces, removeEntities, dropped);
    internal::getOrderPiecesFromOrder(source, sink);
    return pieces;
}
PQ_CATCH_AND_TREAT_CONTEXT(reportOf("getOrderPiecesFromOrder - order: ", source))

namespace internal {

void appendOrderValue(kstring& out, std::string_view rawValue, bool removeEntities) {
    if (removeEntities && findBytes(rawValue, kTokenStart) != std::string_view::npos) {
        reserveAtLeast(out, out.size() + rawValue.size()); // restoring only shortens
        appendOrderUnescaped(out, rawValue);
    } else {
        out.append(rawValue);
    }
}

void getOrderPiecesFromOrder(const PQSourceOrderWrapper& source, OrderTextSink& sink) try {
    const std::string_view text = withoutEndMark(*source.getStringSource());
    sink.expect(ByteSet("&").count(text) + 1);
    PQElementReport report(source);
    std::size_t index = 0;
    for (std::size_t start = 0; start <= text.size(); ++index) {
        const std::size_t end = std::min(findBytes(text, "&", start), text.size());
        const std::string_view element = text.substr(start, end - start);
        start = end + 1;
        if (element.empty() || element == "//") {
            continue;
        }
        try {
            const std::size_t equals = findBytes(element, "=");
            if (equals == std::string_view::npos ||
                findBytes(element, "=", equals + 1) != std::string_view::npos) {
                // Treated where it is found: a page can send many of these.
                PQException failure = frame::assertionFailure(
                    "key_value->size() == 2",
                    frame::precisions(kstring("blibli2 - ").append(element)), PQ_FRAME_SITE());
                frame::treatFinal(failure, true, report.text(), PQ_FRAME_SITE());
                sink.dropped(index, element, kNotKeyValue);
                continue;
            }
            try {
                sink.piece(element.substr(0, equals), element.substr(equals + 1));
            } catch (const std::exception& failure) {
                sink.dropped(index, element,
                             failure.what()); // and treated below, as every failure here
                throw;
            }
        }
        PQ_CATCH_AND_TREAT_FINAL(true, report.text())
    }
}
PQ_CATCH_AND_TREAT_CONTEXT(reportOf("getOrderPiecesFromOrder_3 - order: ", source))

} // namespace internal

kstring PQReceivedOrder::getOrderPieceValueFromOrder(const kstring& order, const kstring& key) try {
    const std::size_t posKey = findBytes(order, key);
    if (posKey == kstring::npos) {
        return {};
    }
    const std::size_t posValue = findBytes(order, "=", posKey);
    PQ_ASSERT(posValue != kstring::npos);
    const std::size_t posValueEnd = findBytes(order, "//", posValue);
    PQ_ASSERT(posValueEnd != kstring::npos);
    return order.substr(posValue + 1, posValueEnd - posValue - 1);
}
PQ_CATCH_AND_TREAT

const PQOrderPiece* PQReceivedOrder::get_orderPiece(const kstring& key) const try {
    if (!m_listOrderPiece) {
        throw std::runtime_error("Vector is NULL");
    }
    const auto found =
        std::find_if(m_listOrderPiece->begin(), m_listOrderPiece->end(),
                     [&key](const PQOrderPiece& piece) { return piece.get_key() == key; });
    return found == m_listOrderPiece->end() ? nullptr : &*found;
}
PQ_CATCH_AND_TREAT

const PQOrderPiece* PQReceivedOrder::get_orderPiece(const kstring& name, const kstring& index) const
    try {
    kstring key;
    key.reserve(name.size() + index.size() + 2);
    key.append(name).append(1, '[').append(index).append(1, ']');
    return get_orderPiece(key);
}
PQ_CATCH_AND_TREAT

void PQReceivedOrder::add_orderPiece(const kstring& key, const kstring& value) try {
    // Calling this before a list is installed is a caller's error; it fails
    // here rather than touching a null list.
    PQ_CHECK_NULL(m_listOrderPiece.get());
    m_listOrderPiece->emplace_back(key, value);
}
PQ_CATCH_AND_TREAT

PQSourceOrderPieceWrapper PQReceivedOrder::getValueFromKeyOptional(const kstring& key) const try {
    PQSourceOrderPieceWrapper value;
    if (const PQOrderPiece* const orderPiece = get_orderPiece(key)) {
        orderPiece->get_localOrderString(value);
    }
    return value;
}
PQ_CATCH_AND_TREAT

PQSourceOrderPieceWrapper PQReceivedOrder::getValueFromKeyOptional(const kstring& first,
                                                                   const kstring& second) const
    try {
    PQSourceOrderPieceWrapper value;
    if (const PQOrderPiece* const orderPiece = get_orderPiece(second, first)) {
        orderPiece->get_localOrderString(value);
    }
    return value;
}
PQ_CATCH_AND_TREAT

PQSourceOrderPieceWrapper PQReceivedOrder::getValueFromKeyRequired(const kstring& key) const try {
    const PQOrderPiece* const orderPiece = get_orderPiece(key);
    PQ_CHECK_NULL(orderPiece);
    PQSourceOrderPieceWrapper value;
    orderPiece->get_localOrderString(value);
    return value;
}
PQ_CATCH_AND_TREAT

// The one-argument form keeps its product spelling, "mssecs".
void PQReceivedOrder::verifyOrderNotTreatedSinceMoreThan(unsigned int msecsMax) const try {
    static constexpr AgeCheckTexts texts{"mssecs >= 0", "(unsigned int)mssecs < msecsMax"};
    long long mssecs = 0;
    checkAge(msecsMax, mssecs, texts, nullptr, __func__);
}
PQ_CATCH_AND_TREAT

void PQReceivedOrder::verifyOrderNotTreatedSinceMoreThan(unsigned int msecsMax,
                                                         long long& msecs) const try {
    static constexpr AgeCheckTexts texts{kAgeNotNegative, kAgeUnderLimit};
    checkAge(msecsMax, msecs, texts, nullptr, __func__);
}
PQ_CATCH_AND_TREAT

void PQReceivedOrder::assertOrderNotTreatedSinceMoreThan(unsigned int msecsMax, long long& msecs,
                                                         const kstring& from) const try {
    static constexpr AgeCheckTexts texts{kAgeNotNegative, kAgeUnderLimit};
    checkAge(msecsMax, msecs, texts, &from, __func__);
}
PQ_CATCH_AND_TREAT

// A failed check is reported through the final treatment and the caller goes
// on; only a failure of the counter itself (or of the report) propagates.
void PQReceivedOrder::checkAge(unsigned int msecsMax, long long& msecs, const AgeCheckTexts& texts,
                               const kstring* from, const char* function) const {
    if (m_counter == nullptr) {
        return;
    }
    msecs = m_counter->getElapsedMsecs();
    const frame::PQSite site{function, pqSourceFile, __LINE__};
    std::optional<PQException> failure;
    if (msecs < 0) {
        failure = frame::assertionFailure(texts.notNegative, {}, site);
        // The low 32 bits only: the product's comparison, kept as it is.
    } else if (static_cast<unsigned int>(msecs) >= msecsMax) {
        failure = frame::assertionFailure(texts.underLimit,
                                          kstring(" - ").append(m_counter->getDescription()), site);
    }
    if (!failure) {
        return;
    }
    kstring message = m_counter->getDescription();
    if (from != nullptr) {
        message.append(" - from:").append(*from);
    }
    frame::treatFinal(*failure, false, message, site);
}

} // namespace PQ_UTILS
