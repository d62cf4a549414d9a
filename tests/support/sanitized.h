// tests/support/sanitized.h - whether the address sanitizer watches.
//
// It reserves more address space than any limit leaves, so that tests which make memory scarce cannot run with it.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define MURV_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MURV_TEST_SANITIZED 1
#endif
#endif
