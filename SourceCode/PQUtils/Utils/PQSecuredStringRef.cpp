#include "PQUtils/Utils/PQSecuredStringRef.h"

#include <cstddef>

#include "PQUtils/Utils/PQByteViewInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecureMemory.h"
#include "PQUtils/Utils/PQSecuredString.h"
#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

// The two traces of an empty search, told apart in the logs by their ends.
constexpr const char* kEmptyNeedleTrace = "Please Create a case to TK after having identified a "
                                          "reproducible scneario if possible. 123456709876546";
constexpr const char* kBothEmptyTrace = "Please Create a case to TK after having identified a "
                                        "reproducible scneario if possible. 76498797987556476";

} // namespace

PQSecuredStringRef::PQSecuredStringRef(const PQSecuredString& source) {
    const kstring* const text = source.getStringSource();
    m_startPointeur = text->data();
    m_length = text->size();
}

bool PQSecuredStringRef::operator!=(const kstring& text) const {
    if (m_startPointeur == nullptr) {
        return !text.empty();
    }
    return internal::viewsDiffer(m_startPointeur, m_length, text.data(), text.size());
}

bool PQSecuredStringRef::operator==(const kstring& text) const { return !(*this != text); }

bool PQSecuredStringRef::operator<(const PQSecuredString& other) const {
    const kstring* const originString = other.content();
    PQ_CHECK_NULL(originString);
    return *this < PQSecuredStringRef(originString->data(), originString->size());
}

std::size_t PQSecuredStringRef::find(const char* needle) const {
    if (empty()) {
        return kstring::npos;
    }
    PQ_CHECK_NULL(m_startPointeur);
    return PQString::charFind(m_startPointeur, needle, m_length);
}

std::size_t PQSecuredStringRef::find(const kstring& needle) const { return find(needle.c_str()); }

std::size_t PQSecuredStringRef::find(const kstring& needle, std::size_t pos) const {
    if (empty() || pos > m_length) {
        return kstring::npos;
    }
    PQ_CHECK_NULL(m_startPointeur);
    return PQString::charFind(m_startPointeur + pos, needle.c_str(), m_length - pos);
}

std::size_t PQSecuredStringRef::find(const PQSecuredStringRef& str) const {
    PQ_CHECK_VIEW(*this);
    if (!empty() && !str.empty()) {
        PQ_CHECK_NULL(str.m_startPointeur);
        const PQWipedString needle(kstring(str.m_startPointeur, str.m_length));
        return PQString::charFind(m_startPointeur, needle.get().c_str(), m_length);
    }
    if (empty() && !str.empty()) {
        return kstring::npos;
    }
    // An empty needle: found at 0. The product wants to hear of the case, and
    // checks the standard search agrees.
    traceMessageFrom(__func__, empty() ? kBothEmptyTrace : kEmptyNeedleTrace);
    PQWipedString copy;
    appendTo_secure(copy.get());
    const std::size_t retour1 = copy.get().find(kstring());
    const std::size_t retour2 = 0;
    PQ_ASSERT(retour1 == retour2);
    return retour1;
}

std::size_t PQSecuredStringRef::find_ns(const kstring& needle) const {
    if (empty()) {
        return kstring::npos;
    }
    PQ_CHECK_NULL(m_startPointeur);
    return PQString::charFind_ns(m_startPointeur, needle.c_str(), m_length);
}

void PQSecuredStringRef::appendTo_log(kstring& out) const { appendTo_secure(out); }

void PQSecuredStringRef::appendTo_secure(kstring& out) const {
    PQ_CHECK_VIEW(*this);
    if (!empty()) {
        out.append(m_startPointeur, m_length);
    }
}

} // namespace PQ_UTILS
