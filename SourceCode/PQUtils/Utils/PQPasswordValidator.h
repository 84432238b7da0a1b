#pragma once

#include <utility>
#include <vector>

#include "PQUtils/Utils/PQIdentity.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// Checks passwords against the process-wide policy: a minimum and a maximum
// count per class of byte, and forbidden bytes. Classes are per byte: digits
// 0-9, letters A-Z and a-z, and special for every other byte (blanks,
// punctuation, control bytes, each byte of a multi-byte UTF-8 character).
// A negative limit is no limit. The policy is shared and unlocked: set it
// once, before validating from several threads.
class PQPasswordValidator : public PQIdentifiable {
public:
    PQ_IDENTITY(PQPasswordValidator)

    // Error bits of isValidPassword, several at once.
    static constexpr unsigned int kTooShort = 0x400;
    static constexpr unsigned int kTooLong = 0x800;
    static constexpr unsigned int kTooFewDigits = 0x1000;
    static constexpr unsigned int kTooManyDigits = 0x2000;
    static constexpr unsigned int kTooFewLetters = 0x4000;
    static constexpr unsigned int kTooManyLetters = 0x8000;
    static constexpr unsigned int kTooFewSpecials = 0x10000;
    static constexpr unsigned int kTooManySpecials = 0x20000;
    static constexpr unsigned int kForbiddenChar = 0x40000;
    static constexpr unsigned int kTooFewLowerCase = 0x80000;
    static constexpr unsigned int kTooManyLowerCase = 0x100000;
    static constexpr unsigned int kTooFewUpperCase = 0x200000;
    static constexpr unsigned int kTooManyUpperCase = 0x400000;

    // Detail bits of getPasswordDetails.
    static constexpr unsigned int kHasLetter = 1;
    static constexpr unsigned int kHasDigit = 2;
    static constexpr unsigned int kHasSpecial = 4;
    static constexpr unsigned int kHasLowerCase = 8;
    static constexpr unsigned int kHasUpperCase = 16;

    // True when `password` breaks no rule; `error` gets the bit of every
    // broken rule (0 when valid). No allocation.
    //   defaults: "Abcdefg1" -> 0, "abcdefg1" -> kTooFewUpperCase
    static bool isValidPassword(kstring const& password, unsigned int& error);
    // `details` gets the bits of the classes that `password` holds; the
    // policy plays no part. "aB3!" -> 31, "123" -> kHasDigit.
    static void getPasswordDetails(kstring const& password, unsigned int& details);
    // Does nothing: `error` is left as it was.
    static void getError(unsigned int& error);

    // The setters store the value as given, unchecked.
    [[nodiscard]] static int get_minChar() { return m_minChar; }
    static void set_minChar(int value) { m_minChar = value; }
    [[nodiscard]] static int get_maxChar() { return m_maxChar; }
    static void set_maxChar(int value) { m_maxChar = value; }
    [[nodiscard]] static int get_minNumber() { return m_minNumber; }
    static void set_minNumber(int value) { m_minNumber = value; }
    [[nodiscard]] static int get_maxNumber() { return m_maxNumber; }
    static void set_maxNumber(int value) { m_maxNumber = value; }
    [[nodiscard]] static int get_minAlphaChar() { return m_minAlphaChar; }
    static void set_minAlphaChar(int value) { m_minAlphaChar = value; }
    [[nodiscard]] static int get_maxAlphaChar() { return m_maxAlphaChar; }
    static void set_maxAlphaChar(int value) { m_maxAlphaChar = value; }
    [[nodiscard]] static int get_minSpecialChar() { return m_minSpecialChar; }
    static void set_minSpecialChar(int value) { m_minSpecialChar = value; }
    [[nodiscard]] static int get_maxSpecialChar() { return m_maxSpecialChar; }
    static void set_maxSpecialChar(int value) { m_maxSpecialChar = value; }
    [[nodiscard]] static std::vector<char> get_forbiddenChars() { return forbiddenChars; }
    static void set_forbiddenChars(std::vector<char> chars) { forbiddenChars = std::move(chars); }

    // The policy and its defaults. The lower- and upper-case limits have no
    // accessors; write them here.
    static inline int m_minChar = 8;
    static inline int m_maxChar = -1;
    static inline int m_minNumber = 1;
    static inline int m_maxNumber = -1;
    static inline int m_minAlphaChar = 1;
    static inline int m_maxAlphaChar = -1;
    static inline int m_minLowerCaseAlphaChar = 1;
    static inline int m_maxLowerCaseAlphaChar = -1;
    static inline int m_minUpperCaseAlphaChar = 1;
    static inline int m_maxUpperAlphaChar = -1;
    static inline int m_minSpecialChar = -1;
    static inline int m_maxSpecialChar = -1;
    static inline std::vector<char> forbiddenChars;
};

} // namespace PQ_UTILS
