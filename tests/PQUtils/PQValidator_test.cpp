#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/PQDebugString.h"
#include "PQUtils/Utils/PQCreditCardNumberValidator.h"
#include "PQUtils/Utils/PQPasswordValidator.h"

using PQ_UTILS::PQCreditCardNumberValidator;
using PQ_UTILS::PQPasswordValidator;
using Card = PQCreditCardNumberValidator;

namespace {

// Each test starts from the default policy and leaves it so.
class PasswordPolicy : public ::testing::Test {
protected:
    void TearDown() override {
        PQPasswordValidator::set_minChar(8);
        PQPasswordValidator::set_maxChar(-1);
        PQPasswordValidator::set_maxSpecialChar(-1);
        PQPasswordValidator::m_maxLowerCaseAlphaChar = -1;
        PQPasswordValidator::set_forbiddenChars({});
    }

    static unsigned int errorOf(const std::string& password) {
        unsigned int error = 0xDEAD;
        const bool valid = PQPasswordValidator::isValidPassword(password, error);
        EXPECT_EQ(valid, error == 0) << password;
        return error;
    }
};

// The checksum word for word: each character read alone by the debug
// library, every second one from the end doubled and its digits added.
bool luhnAsWritten(const std::string& number) {
    const auto digitAt = [&](std::size_t i) {
        return PQ_DEBUG::PQDebugString::fromWstringToInt(number.substr(i, 1));
    };
    int sum = 0;
    const auto n = static_cast<long>(number.size());
    for (long i = n - 1; i >= 0; i -= 2) {
        sum += digitAt(static_cast<std::size_t>(i));
    }
    for (long i = n - 2; i >= 0; i -= 2) {
        const int doubled = 2 * digitAt(static_cast<std::size_t>(i));
        sum += doubled > 9 ? doubled / 10 + doubled % 10 : (doubled > 0 ? doubled : 0);
    }
    return sum % 10 == 0;
}

} // namespace

TEST_F(PasswordPolicy, DefaultPolicyErrorBits) {
    struct Case {
        const char* password;
        unsigned int error;
    };
    const Case cases[] = {
        {"Abcdefg1", 0},
        {"abcdefg1", 0x200000},
        {"ABCDEFGH", 0x1000 | 0x80000},
        {"Ab1", 0x400},
        {"", 0x400 | 0x1000 | 0x4000 | 0x80000 | 0x200000},
        {"Abcdef g1", 0}, // a blank is special, and specials are unlimited
        {"\xC3\xA9"
         "Abcde1",
         0}, // two special bytes make the length 8
        {"\xC3\xA9"
         "Abcd1",
         0x400},
        {"12345678", 0x4000 | 0x80000 | 0x200000},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(errorOf(c.password), c.error) << c.password;
    }
}

TEST_F(PasswordPolicy, LimitsForbiddenBytesAndAccessors) {
    PQPasswordValidator::set_forbiddenChars({'#'});
    EXPECT_EQ(errorOf("Abcdefg1#"), PQPasswordValidator::kForbiddenChar);
    EXPECT_EQ(PQPasswordValidator::get_forbiddenChars(), std::vector<char>{'#'});
    // A forbidden byte of 0x80 or above, and a zero byte, are bytes like any.
    PQPasswordValidator::set_forbiddenChars({'\xA9', '\0'});
    EXPECT_EQ(errorOf("Abcdefg1\xC3\xA9"), PQPasswordValidator::kForbiddenChar);
    EXPECT_EQ(errorOf(std::string("Abcdefg1\0", 9)), PQPasswordValidator::kForbiddenChar);
    PQPasswordValidator::set_forbiddenChars({});

    PQPasswordValidator::set_maxChar(8);
    EXPECT_EQ(PQPasswordValidator::get_maxChar(), 8);
    EXPECT_EQ(errorOf("Abcdefg1"), 0U); // a count equal to a limit is allowed
    EXPECT_EQ(errorOf("Abcdefgh1"), PQPasswordValidator::kTooLong);

    // Maxima of 0 count; a negative minimum is no limit, whatever its size.
    PQPasswordValidator::set_maxSpecialChar(0);
    PQPasswordValidator::m_maxLowerCaseAlphaChar = 0;
    PQPasswordValidator::set_minChar(-100);
    EXPECT_EQ(errorOf("A!b2"),
              PQPasswordValidator::kTooManySpecials | PQPasswordValidator::kTooManyLowerCase);
}

TEST(PQPasswordValidator, DetailsAndTheEmptyGetError) {
    const std::pair<const char*, unsigned int> cases[] = {
        {"aB3!", 31}, {"123", 2}, {"", 0}, {"abc", 1 | 8}, {"\xC3\xA9", 4}, {"Z", 1 | 16}};
    for (const auto& [password, expected] : cases) {
        unsigned int details = 0xDEAD;
        PQPasswordValidator::getPasswordDetails(password, details);
        EXPECT_EQ(details, expected) << password;
    }
    unsigned int error = 0x1234;
    PQPasswordValidator::getError(error);
    EXPECT_EQ(error, 0x1234U);
}

TEST(PQCreditCardNumberValidator, BrandsByPrefixThenLengthWithTheChecksumApart) {
    const struct {
        const char* number;
        Card::CREDITCARD_TYPE brand;
        bool valid;
    } cases[] = {
        // Published test numbers.
        {"4111111111111111", Card::CREDITCARD_VISA, true},
        {"4012888888881881", Card::CREDITCARD_VISA, true},
        {"5555555555554444", Card::CREDITCARD_MASTERCARD, true},
        {"5105105105105100", Card::CREDITCARD_MASTERCARD, true},
        {"378282246310005", Card::CREDITCARD_AMEX, true},
        {"371449635398431", Card::CREDITCARD_AMEX, true},
        {"6011111111111117", Card::CREDITCARD_DISCOVER, true},
        {"6011000990139424", Card::CREDITCARD_DISCOVER, true},
        {"30569309025904", Card::CREDITCARD_DINERSCLUB, true},
        {"38520000023237", Card::CREDITCARD_DINERSCLUB, true},
        {"3530111333300000", Card::CREDITCARD_JCB, true},
        {"3566002020360505", Card::CREDITCARD_JCB, true},
        // A Mastercard of the 2-series: the table knows no prefix "2" of
        // length 16, so the length alone names it VISA.
        {"2223003122003222", Card::CREDITCARD_VISA, true},
        // The table's three passes: prefix and length, prefix, length.
        {"5500000000000004", Card::CREDITCARD_MASTERCARD, true},
        {"340000000000009", Card::CREDITCARD_AMEX, true},
        {"6011000000000004", Card::CREDITCARD_DISCOVER, true},
        {"30000000000004", Card::CREDITCARD_DINERSCLUB, true},
        {"3600000000000000", Card::CREDITCARD_JCB, false},      // "36" at 16 is JCB's "3"
        {"36000000000000", Card::CREDITCARD_DINERSCLUB, false}, // ... and Diners at 14
        {"201400000000000", Card::CREDITCARD_UNNAMED, false},
        {"4111111111111112", Card::CREDITCARD_VISA, false},    // a bad checksum still has a brand
        {"4111", Card::CREDITCARD_VISA, false},                // by prefix alone
        {"4111 1111 1111 1111", Card::CREDITCARD_VISA, false}, // blanks count 0, shift the digits
        {"4111 1111 1111 11 11", Card::CREDITCARD_VISA, true},
        {"3", Card::CREDITCARD_JCB, false},
        {"9999999999999999", Card::CREDITCARD_VISA, false}, // by length alone
        {"999999999999999", Card::CREDITCARD_AMEX, false},
        {"99999999999999", Card::CREDITCARD_DINERSCLUB, false},
        {"99999", Card::CREDITCARD_NONE, false},
        {"", Card::CREDITCARD_NONE, true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Card::getCardType(c.number), c.brand) << c.number;
        EXPECT_EQ(Card::isCardNumberValid(c.number), c.valid) << c.number;
    }
    EXPECT_EQ(Card::m_sCardTypeInfos.size(), 9U);
    Card::initializeCardTypes(); // once only
    EXPECT_EQ(Card::m_sCardTypeInfos.size(), 9U);
}

TEST(PQCreditCardNumberValidator, LuhnAsWrittenOnAnyCharacters) {
    for (int c = 0; c < 256; ++c) {
        const std::string one(1, static_cast<char>(c));
        EXPECT_EQ(Card::isCardNumberValid(one), luhnAsWritten(one)) << c;
    }
    std::mt19937 random(7);
    const std::string alphabet = "0123456789 -+x\xC3";
    for (int round = 0; round < 2000; ++round) {
        std::string number(random() % 24, ' ');
        for (char& c : number) {
            c = alphabet[random() % alphabet.size()];
        }
        ASSERT_EQ(Card::isCardNumberValid(number), luhnAsWritten(number)) << number;
    }
}

TEST(PQCreditCardNumberValidator, BrandNamesBothWays) {
    const std::pair<Card::CREDITCARD_TYPE, const char*> named[] = {
        {Card::CREDITCARD_MASTERCARD, "PAYMENT_TYPE_MASTERCARD"},
        {Card::CREDITCARD_VISA, "PAYMENT_TYPE_VISA"},
        {Card::CREDITCARD_AMEX, "PAYMENT_TYPE_AMEX"},
        {Card::CREDITCARD_DISCOVER, "PAYMENT_TYPE_DISCOVER"},
        {Card::CREDITCARD_DINERSCLUB, "PAYMENT_TYPE_DINERSCLUB"},
        {Card::CREDITCARD_JCB, "PAYMENT_TYPE_JCB"},
    };
    for (const auto& [type, name] : named) {
        EXPECT_EQ(Card::getWstringFromCardType(type), name);
        EXPECT_EQ(Card::getCardTypeFromWstring(name), type);
    }
    // Without a name, a card is stored as a VISA card.
    EXPECT_EQ(Card::getWstringFromCardType(Card::CREDITCARD_NONE), "PAYMENT_TYPE_VISA");
    EXPECT_EQ(Card::getWstringFromCardType(Card::CREDITCARD_UNNAMED), "PAYMENT_TYPE_VISA");
    EXPECT_EQ(Card::getWstringFromCardType(static_cast<Card::CREDITCARD_TYPE>(-1)),
              "PAYMENT_TYPE_VISA");
    for (const char* other : {"payment_type_visa", "", "PAYMENT_TYPE_VISA ", "PAYMENT_TYPE_"}) {
        EXPECT_EQ(Card::getCardTypeFromWstring(other), Card::CREDITCARD_NONE) << other;
    }
}
