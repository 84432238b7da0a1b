#pragma once

#include <cstddef>

#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// Overwrites `size` bytes at `data` with zeros, in a way the optimiser keeps
// even when the memory is freed right after.
void secureWipe(void* data, std::size_t size) noexcept;

// How this build wipes: "explicit_bzero" or "memset_s" (the C library's),
// or "volatile" (memset through a volatile pointer, where the C library
// has neither). For tests and audits.
[[nodiscard]] const char* secureWipeMethod() noexcept;

// Wipes every byte that `text` holds or held: its whole capacity (a short
// text lives inside the string object itself), then leaves it empty. Use it
// wherever secret text dies.
void secureWipe(kstring& text) noexcept;

// Room for `size` bytes in `text`, never less than it has. A reserve below
// the capacity shrinks the string in some standard libraries (libc++ 13, as
// in Emscripten): the text would move and leave its old copy unwiped.
inline void reserveAtLeast(kstring& text, std::size_t size) {
    if (size > text.capacity()) {
        text.reserve(size);
    }
}

// A function told of each text wipe, after the zeros are written and before
// the memory can be freed, with the wiped bytes. For tests and audits; at
// most one, none by default (nullptr removes it).
using PQWipeObserver = void (*)(const char* data, std::size_t size);
void setWipeObserver(PQWipeObserver observer) noexcept;

// A text that wipes itself when it dies: for temporary copies of secrets.
class PQWipedString {
public:
    PQWipedString() = default;
    explicit PQWipedString(kstring text) noexcept : m_text(std::move(text)) {}
    PQWipedString(const PQWipedString&) = delete;
    PQWipedString& operator=(const PQWipedString&) = delete;
    ~PQWipedString() { secureWipe(m_text); }

    [[nodiscard]] kstring& get() noexcept { return m_text; }
    [[nodiscard]] const kstring& get() const noexcept { return m_text; }

private:
    kstring m_text;
};

} // namespace PQ_UTILS
