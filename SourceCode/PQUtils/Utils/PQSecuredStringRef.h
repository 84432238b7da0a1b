#pragma once

#include <cstddef>
#include <cstdint>

#include "PQUtils/Utils/PQByteView.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

class PQSecuredString;

// A non-owning view into secured text (see PQByteView for what all views
// share). It differs from PQStringRef on purpose: a null view equals the
// empty text, find(text, pos) counts from `pos`, and the plain searches read
// like C's strstr, so the bytes after the view must be readable up to a zero
// byte (views of a PQSecuredString always are).
class PQSecuredStringRef : public PQByteView<PQSecuredStringRef> {
public:
    using PQByteView::PQByteView;
    // Views the secured string's content.
    explicit PQSecuredStringRef(const PQSecuredString& source);
    PQSecuredStringRef(const PQSecuredString&& source) = delete; // would dangle

    using PQByteView::operator==;
    using PQByteView::operator!=;
    using PQByteView::operator<;

    // Same bytes. A null view equals exactly the empty text.
    [[nodiscard]] bool operator==(const kstring& text) const;
    [[nodiscard]] bool operator!=(const kstring& text) const;
    // Against the content, as against a view of it ("originString" if none).
    [[nodiscard]] bool operator<(const PQSecuredString& other) const;

    // Position of the zero-terminated `needle`, searched as C's strstr from
    // the view's start: a match must start inside the view but may end
    // beyond it (PQString::charFind). npos when there is none.
    //   view of "abc" in "abcdef": find("cde") -> 2
    [[nodiscard]] std::size_t find(const char* needle) const;
    [[nodiscard]] std::size_t find(const kstring& needle) const;
    // The same from `pos`, the result counted from `pos`, not from the start:
    //   view of "abcdef": find("cd", 2) -> 0
    [[nodiscard]] std::size_t find(const kstring& needle, std::size_t pos) const;
    // The same with the viewed bytes of `str` as the needle. An empty `str`
    // is found at 0, and the call writes a trace line: the product wants to
    // hear of the case.
    [[nodiscard]] std::size_t find(const PQSecuredStringRef& str) const;
    // The match must lie wholly inside the view (PQString::charFind_ns):
    //   view of "abc" in "abcdef": find_ns("cde") -> npos
    [[nodiscard]] std::size_t find_ns(const kstring& needle) const;

    // Append the real viewed characters to `out`. The two names state the
    // caller's intent; neither masks.
    void appendTo_log(kstring& out) const;
    void appendTo_secure(kstring& out) const;

    // The empty view, null start.
    static const PQSecuredStringRef m_psEmptySecuredString;
};

inline constexpr PQSecuredStringRef PQSecuredStringRef::m_psEmptySecuredString{};

} // namespace PQ_UTILS
