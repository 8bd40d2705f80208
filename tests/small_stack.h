// Runs a test's body on a thread with little stack.

#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>

namespace morandel::tests {

#if defined(__SANITIZE_ADDRESS__)
// Frames are several times as large under the sanitizers.
constexpr std::size_t small_stack = std::size_t{2} * 1024 * 1024;
#elif defined(__GNUC__) && !defined(__OPTIMIZE__)
// And larger where nothing is optimised.
constexpr std::size_t small_stack = std::size_t{256} * 1024;
#else
constexpr std::size_t small_stack = std::size_t{64} * 1024;
#endif

inline void run_on_small_stack(void* (*body)(void*)) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, small_stack), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, body, nullptr), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

}  // namespace morandel::tests
