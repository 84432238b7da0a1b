#pragma once

#include <vector>

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// Static string utilities of the library.
class PQString : public PQIdentifiable {
    PQ_IDENTITY(PQString)

    // Sets the shared empty defaults (called by PQInit::init; they are
    // already empty when the library is loaded).
    static void initialyze_public();

    // Shared empty defaults, for operations that return a reference.
    [[nodiscard]] static const kstring& get_m_sEmptyString() noexcept { return m_sEmptyString; }
    [[nodiscard]] static const std::vector<kstring>& get_m_sEmptyVector() noexcept {
        return m_sEmptyVector;
    }

private:
    static inline kstring m_sEmptyString;
    static inline std::vector<kstring> m_sEmptyVector;
};

} // namespace PQ_UTILS
