#include "PQUtils/Utils/PQByteView.h"

#include <algorithm>

#include "PQUtils/Utils/PQByteViewInternal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecuredString.h"
#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "PQUtils/Utils/PQStringRef.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

} // namespace

template <class View> bool PQByteView<View>::operator!=(const View& other) const {
    return internal::viewsDiffer(m_startPointeur, m_length, other.m_startPointeur, other.m_length);
}

template <class View> bool PQByteView<View>::operator==(const View& other) const {
    return !(*this != other);
}

template <class View> bool PQByteView<View>::operator!=(const PQSecuredString& other) const {
    const kstring* const originString = other.content();
    PQ_CHECK_NULL(originString);
    return static_cast<const View&>(*this) != *originString;
}

template <class View> bool PQByteView<View>::operator==(const PQSecuredString& other) const {
    return !(*this != other);
}

template <class View> bool PQByteView<View>::operator<(const View& str) const {
    if (empty()) {
        return !str.empty();
    }
    if (str.empty()) {
        return false;
    }
    PQ_CHECK_NULL(m_startPointeur);
    PQ_CHECK_NULL(str.m_startPointeur);
    if (m_length != str.m_length) {
        return m_length < str.m_length;
    }
    if (m_startPointeur == str.m_startPointeur) {
        return false;
    }
    const char* const end = m_startPointeur + m_length;
    const auto [mine, theirs] = std::mismatch(m_startPointeur, end, str.m_startPointeur);
    return mine != end && static_cast<signed char>(*mine) < static_cast<signed char>(*theirs);
}

template <class View> char PQByteView<View>::at(std::size_t position) const {
    // NOLINTNEXTLINE(modernize-use-nullptr): the condition's text is the failure message
    PQ_ASSERT(m_startPointeur != NULL && position < m_length);
    return m_startPointeur[position];
}

template <class View> View PQByteView<View>::substr_ref(std::size_t pos, std::size_t length) const {
    if (empty()) {
        PQ_ASSERT(length == 0);
        PQ_ASSERT(pos == 0);
        return {};
    }
    // NOLINTNEXTLINE(modernize-use-nullptr): the condition's text is the failure message
    PQ_ASSERT(m_startPointeur != NULL && length < m_length && pos + length <= m_length);
    PQ_ASSERT(pos <= m_length); // pos + length must not have wrapped round
    return {m_startPointeur + pos, length};
}

template <class View> View PQByteView<View>::substr_ref(std::size_t pos) const {
    if (empty()) {
        PQ_ASSERT(pos == 0);
        return {};
    }
    // NOLINTNEXTLINE(modernize-use-nullptr): the condition's text is the failure message
    PQ_ASSERT(m_startPointeur != NULL && pos <= m_length);
    return {m_startPointeur + pos, m_length - pos};
}

template class PQByteView<PQStringRef>;
template class PQByteView<PQSecuredStringRef>;

} // namespace PQ_UTILS
