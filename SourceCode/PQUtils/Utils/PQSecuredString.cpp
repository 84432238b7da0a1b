#include "PQUtils/Utils/PQSecuredString.h"

#include <algorithm>
#include <utility>

#include "PQUtils/Utils/PQBlockPoolInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

// A text object in a block of the pool (every secured string has one), made
// from `args`. WipingDelete gives it back.
template <class... Args> kstring* newText(Args&&... args) {
    void* const block = internal::poolAllocate(sizeof(kstring));
    try {
        return ::new (block) kstring(std::forward<Args>(args)...);
    } catch (...) {
        internal::poolRelease(block, sizeof(kstring));
        throw;
    }
}

} // namespace

void PQSecuredString::WipingDelete::operator()(kstring* text) const noexcept {
    secureWipe(*text);
    text->~kstring();
    internal::poolRelease(text, sizeof(kstring)); // which wipes the string object too
}

PQSecuredString::PQSecuredString() : m_sourceString(newText()) {}

PQSecuredString::PQSecuredString(const kstring& text) : m_sourceString(newText(text)) {}

PQSecuredString::PQSecuredString(kstring&& text) : m_sourceString(newText(std::move(text))) {
    secureWipe(text); // NOLINT(bugprone-use-after-move): wipes what the move left behind
}

PQSecuredString::PQSecuredString(const PQSecuredString& other)
    : PQIdentifiable(other), m_sourceString(newText(*other.getStringSource())) {}

PQSecuredString& PQSecuredString::operator=(const PQSecuredString& other) {
    if (this != &other) {
        // The old text is wiped as its owner lets it go.
        m_sourceString.reset(newText(*other.getStringSource()));
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
        std::unique_ptr<kstring, WipingDelete> grown(newText());
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
