#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace PQ_UTILS {

class PQSecuredString;

// What PQStringRef and PQSecuredStringRef share: a non-owning view (start,
// length) of bytes that must outlive it and need not be zero-terminated.
// A length of 0 is empty whatever the start; a non-zero length with a null
// start is a broken view, reported as the null variable "m_startPointeur"
// by what must read it. `View` is the view type itself.
template <class View> class PQByteView {
public:
    // The empty view: null start, length 0.
    constexpr PQByteView() noexcept = default;
    constexpr PQByteView(const char* start, std::uint64_t length) noexcept
        : m_startPointeur(start), m_length(length) {}

    [[nodiscard]] bool empty() const noexcept { return m_length == 0; }
    [[nodiscard]] std::uint64_t size() const noexcept { return m_length; }
    [[nodiscard]] const char* data() const noexcept { return m_startPointeur; }
    // The viewed bytes; nothing for an empty view, whatever its start. A
    // view that may be broken must be checked first.
    [[nodiscard]] std::string_view bytes() const noexcept {
        return empty() ? std::string_view() : std::string_view(m_startPointeur, m_length);
    }

    // Two null views are equal; a null view and a non-null empty one are not
    // (the starts are compared before the lengths).
    [[nodiscard]] bool operator==(const View& other) const;
    [[nodiscard]] bool operator!=(const View& other) const;

    // Against the content, by the view's own rule for a kstring
    // ("originString" if there is none).
    [[nodiscard]] bool operator==(const PQSecuredString& other) const;
    [[nodiscard]] bool operator!=(const PQSecuredString& other) const;

    // Shorter first; equal lengths ordered bytewise as signed bytes, so bytes
    // of 0x80 and above sort before ASCII. This order keys containers.
    //   "b" < "aa";  "\xE9" < "a"
    [[nodiscard]] bool operator<(const View& str) const;

    // The byte at `position`, which must be inside the view.
    [[nodiscard]] char at(std::size_t position) const;
    // `length` bytes from `pos`. A sub-view as long as the whole view is
    // refused (length < size() is required); of an empty view only (0, 0),
    // which gives the null view.
    [[nodiscard]] View substr_ref(std::size_t pos, std::size_t length) const;
    // From `pos` to the end; pos == size() gives an empty view just past the
    // end. Of an empty view only 0, which gives the null view.
    [[nodiscard]] View substr_ref(std::size_t pos) const;

protected:
    const char* m_startPointeur = nullptr;
    std::uint64_t m_length = 0;
};

class PQStringRef;
class PQSecuredStringRef;
extern template class PQByteView<PQStringRef>;
extern template class PQByteView<PQSecuredStringRef>;

} // namespace PQ_UTILS
