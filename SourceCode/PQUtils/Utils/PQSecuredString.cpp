#include "PQUtils/Utils/PQSecuredString.h"

#include <algorithm>
#include <utility>

#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

} // namespace

void PQSecuredString::WipingDelete::operator()(kstring* text) const noexcept {
    secureWipe(*text);
    delete text; // NOLINT(cppcoreguidelines-owning-memory): the deleter of m_sourceString
}

PQSecuredString::PQSecuredString() : m_sourceString(new kstring) {}

PQSecuredString::PQSecuredString(const kstring& text) : m_sourceString(new kstring(text)) {}

PQSecuredString::PQSecuredString(kstring&& text) : m_sourceString(new kstring(std::move(text))) {
    secureWipe(text); // NOLINT(bugprone-use-after-move): wipes what the move left behind
}

PQSecuredString::PQSecuredString(const PQSecuredString& other)
    : PQIdentifiable(other), m_sourceString(new kstring(*other.getStringSource())) {}

PQSecuredString& PQSecuredString::operator=(const PQSecuredString& other) {
    if (this != &other) {
        // The old text is wiped as its owner lets it go.
        m_sourceString.reset(new kstring(*other.getStringSource()));
    }
    return *this;
}

PQSecuredString::~PQSecuredString() = default;

void PQSecuredString::appendText(std::string_view text) { roomFor(text.size()).append(text); }

kstring& PQSecuredString::roomFor(std::size_t extra) {
    if (!m_sourceString) {
        // Reported as the append that the room is made for.
        throw frame::nullPointer("m_sourceString.get()", {"appendText", pqSourceFile, __LINE__});
    }
    kstring& content = *m_sourceString;
    if (content.capacity() - content.size() < extra) {
        // Growing in place would free the old buffer unwiped.
        std::unique_ptr<kstring, WipingDelete> grown(new kstring);
        grown->reserve(std::max(2 * content.capacity(), content.size() + extra));
        grown->append(content);
        m_sourceString = std::move(grown);
    }
    return *m_sourceString;
}

const kstring* PQSecuredString::getStringSource() const try {
    PQ_CHECK_NULL(m_sourceString.get());
    return m_sourceString.get();
}
PQ_CATCH_AND_TREAT

const kstring* PQSecuredString::getStringLog() const try {
    PQ_CHECK_NULL(m_sourceString.get());
    return m_sourceString.get();
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
