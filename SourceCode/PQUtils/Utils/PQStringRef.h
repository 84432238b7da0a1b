#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "PQUtils/Utils/PQByteView.h"
#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

class PQSecuredString;

// A non-owning view into ordinary text (see PQByteView for what all views
// share). Its searches give what std::string::find gives on a copy of the
// viewed bytes, counted from the view's start. Unlike PQSecuredStringRef, a
// null view compared with a text is a failure, not a match of the empty text.
class PQStringRef : public PQByteView<PQStringRef> {
public:
    using PQByteView::PQByteView;
    // Views the text's bytes.
    explicit PQStringRef(const kstring& text) noexcept : PQByteView(text.data(), text.size()) {}
    PQStringRef(const kstring&& text) = delete; // would dangle
    // Views the secured string's content.
    explicit PQStringRef(const PQSecuredString& source);
    PQStringRef(const PQSecuredString&& source) = delete; // would dangle
    explicit PQStringRef(const PQSecuredStringRef& view) noexcept
        : PQByteView(view.data(), view.size()) {}

    using PQByteView::operator==;
    using PQByteView::operator!=;

    // Same bytes. A null start fails, whatever the length.
    [[nodiscard]] bool operator==(const kstring& text) const;
    [[nodiscard]] bool operator!=(const kstring& text) const;

    // Position of `needle` (zero-terminated for the char* form) in the
    // viewed bytes, from `pos`; npos when there is none. An empty needle is
    // found at `pos` (at most size()).
    [[nodiscard]] std::size_t find(const char* needle) const;
    [[nodiscard]] std::size_t find(const kstring& needle) const;
    [[nodiscard]] std::size_t find(const kstring& needle, std::size_t pos) const;
    [[nodiscard]] std::size_t find(const PQStringRef& needle) const;

    // A new text holding the viewed bytes.
    [[nodiscard]] std::unique_ptr<kstring> getStringSource_cpy() const;
};

} // namespace PQ_UTILS
