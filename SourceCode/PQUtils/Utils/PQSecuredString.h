#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// A text with sensitive content (a password, a card number). It owns its
// characters and wipes them (the whole capacity) before they are freed.
//
// It does not mask anything itself: getStringLog() gives the real content,
// like getStringSource(). A caller that must not show the value shows
// m_sStandardSecureString instead.
class PQSecuredString : public PQIdentifiable {
public:
    PQ_IDENTITY(PQSecuredString)

    // Owns a new empty text.
    PQSecuredString();
    // Owns a new copy of `text`.
    explicit PQSecuredString(const kstring& text);
    // Takes `text` over; what stays behind in it (a short text lives inside
    // the string object) is wiped.
    explicit PQSecuredString(kstring&& text);
    // Owns a new copy of the other's content.
    PQSecuredString(const PQSecuredString& other);
    // Takes a copy of the other's content; the old content is wiped.
    PQSecuredString& operator=(const PQSecuredString& other);
    // Takes the other's content over; the other is left without any (its
    // readers then fail as for a null content) and the old content is wiped.
    PQSecuredString(PQSecuredString&& other) noexcept = default;
    PQSecuredString& operator=(PQSecuredString&& other) noexcept = default;
    ~PQSecuredString() override;

    // The owned text, the real content. A null-pointer failure for
    // "m_sourceString.get()" if there is none.
    [[nodiscard]] const kstring* getStringSource() const;
    // The same object as getStringSource(): real content, not masked.
    [[nodiscard]] const kstring* getStringLog() const;

    // The text that stands for a secured value wherever it must be masked.
    // Made when the library is loaded; it fits in the string object, so
    // nothing is allocated.
    static inline const kstring m_sStandardSecureString{"*******"}; // NOLINT(cert-err58-cpp)
    // A secured string with empty content.
    static const PQSecuredString m_psEmptySecuredString;

protected:
    // Appends `text` to the content. When the content must grow, it moves to
    // a larger buffer and the old one is wiped.
    void appendText(std::string_view text);
    // The content, with room for `extra` more bytes: when it must grow, it
    // moves to a buffer twice as large, or as large as needed if that is
    // more, and the old one is wiped. Appending up to `extra` bytes to it
    // then never moves it; a caller only ever adds text to it. Fails as
    // appendText does when there is none.
    [[nodiscard]] kstring& roomFor(std::size_t extra);
    // The content, or null when there is none; never fails.
    [[nodiscard]] const kstring* content() const noexcept { return m_sourceString.get(); }

private:
    // The views compare with the content and name its absence themselves.
    template <class View> friend class PQByteView;
    friend class PQSecuredStringRef;
    friend class PQStringRef;

    struct WipingDelete {
        void operator()(kstring* text) const noexcept;
    };
    std::unique_ptr<kstring, WipingDelete> m_sourceString;
};

// Made when the library is loaded: only a failure to allocate its empty text
// could throw, and a process that cannot allocate that cannot start.
inline const PQSecuredString PQSecuredString::m_psEmptySecuredString{}; // NOLINT(cert-err58-cpp)

} // namespace PQ_UTILS
