#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts with a message, so that the fuzzer keeps the input.
#define FUZZ_CHECK(condition)                                                           \
  do {                                                                                  \
    if (!(condition)) {                                                                 \
      std::fprintf(stderr, "%s:%d: %s doesn't hold\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                     \
    }                                                                                   \
  } while (false)
