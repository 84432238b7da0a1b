#include "PQUtils/Utils/PQStringRef.h"

#include <cstring>
#include <string_view>

#include "PQUtils/Utils/PQByteSearchInternal.h"
#include "PQUtils/Utils/PQByteViewInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecuredString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

} // namespace

PQStringRef::PQStringRef(const PQSecuredString& source) {
    if (const kstring* const text = source.content()) {
        m_startPointeur = text->data();
        m_length = text->size();
    }
}

bool PQStringRef::operator!=(const kstring& text) const {
    PQ_CHECK_NULL(m_startPointeur);
    return internal::viewsDiffer(m_startPointeur, m_length, text.data(), text.size());
}

bool PQStringRef::operator==(const kstring& text) const { return !(*this != text); }

// The searches read the viewed bytes in place, with the results of
// std::string::find on a copy of them.

std::size_t PQStringRef::find(const char* needle) const {
    PQ_CHECK_NULL(needle);
    PQ_CHECK_VIEW(*this);
    return internal::findBytes(bytes(), needle);
}

std::size_t PQStringRef::find(const kstring& needle) const { return find(needle, 0); }

std::size_t PQStringRef::find(const kstring& needle, std::size_t pos) const {
    PQ_CHECK_VIEW(*this);
    return internal::findBytes(bytes(), needle, pos);
}

std::size_t PQStringRef::find(const PQStringRef& needle) const {
    PQ_CHECK_VIEW(*this);
    PQ_CHECK_VIEW(needle);
    return internal::findBytes(bytes(), needle.bytes());
}

std::unique_ptr<kstring> PQStringRef::getStringSource_cpy() const {
    PQ_CHECK_VIEW(*this);
    return std::make_unique<kstring>(bytes());
}

} // namespace PQ_UTILS
