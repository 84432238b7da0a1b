#pragma once

#include <string>

#include "PQDebug/Resources/PQObjectType.h"

namespace PQ_UTILS {

// The identity every class of the library reports about itself: its class
// name and its PQObjectType. The three operations come first in the virtual
// table of every such class, then the destructor. A class states its name
// once, with PQ_IDENTITY; the two other operations derive from it, so a
// derived object seen through a base pointer reports its own type.
class PQIdentifiable {
public:
    // The unqualified class name: "PQOrder".
    [[nodiscard]] virtual std::string get_className_nonStatic() const = 0;
    // The same name through the debug library's narrow-string conversion.
    [[nodiscard]] virtual std::string get_className_nonStatic_string() const;
    // The object type registered under get_className_nonStatic() in the
    // PQObjectType table; PQException when the name is not registered.
    [[nodiscard]] virtual PQ_DEBUG::PQObjectType get_objectType() const;
    virtual ~PQIdentifiable();

protected:
    PQIdentifiable() = default;
    PQIdentifiable(const PQIdentifiable&) = default;
    PQIdentifiable(PQIdentifiable&&) = default;
    PQIdentifiable& operator=(const PQIdentifiable&) = default;
    PQIdentifiable& operator=(PQIdentifiable&&) = default;
};

} // namespace PQ_UTILS

// Gives a class derived from PQIdentifiable its name. Put it first in the
// public section of the class body.
#define PQ_IDENTITY(ClassName)                                                                     \
    [[nodiscard]] std::string get_className_nonStatic() const override { return #ClassName; }
