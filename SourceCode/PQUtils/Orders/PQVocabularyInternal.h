#pragma once

// What the sources of the order vocabularies share. Not installed.

#include <span>

#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Utils/PQFailure.h"

// The row of vocabulary `Type` for the entry `name` of its row list.
#define PQ_VOCABULARY_ROW(Type, name) PQ_DEBUG::PQVocabularyRow<Type>{Type##_##name, #name},

// The initialiser and the rows getter of vocabulary `Type`, whose rows are
// the array `kRows` of the including source: the initialiser fills the name
// table of the PQObjectType of the same name.
#define PQ_VOCABULARY_FUNCTIONS(Type)                                                              \
    void initialize_public_##Type() try {                                                          \
        PQ_DEBUG::fillNameTable<Type>(PQ_DEBUG::PQObjectType_##Type, &initialize_public_##Type,    \
                                      kRows);                                                      \
    }                                                                                              \
    PQ_CATCH_AND_TREAT_CONTEXT("initialize")                                                       \
                                                                                                   \
    std::span<const PQ_DEBUG::PQVocabularyRow<Type>> get_##Type##Rows() { return kRows; }
