#pragma once

// PQ_TEST_ASAN is defined when this build runs under AddressSanitizer
// (GCC and Clang say so each their own way).
#if defined(__SANITIZE_ADDRESS__)
#define PQ_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PQ_TEST_ASAN 1
#endif
#endif
