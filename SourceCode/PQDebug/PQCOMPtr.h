#pragma once

namespace PQ_DEBUG {

// A non-owning handle on an object of the platform's component model. T is
// a pointer type; the handle neither adds nor releases references.
template <class T> class PQCOMPtr {
public:
    PQCOMPtr() = default;
    explicit PQCOMPtr(T pointer) : m_pointer(pointer) {}
    [[nodiscard]] T get() const { return m_pointer; }

private:
    T m_pointer = nullptr;
};

} // namespace PQ_DEBUG
