#include "platform/mutex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

namespace {

vm_mutex garbage() {
    vm_mutex mutex;
    std::memset(&mutex, 0x5a, sizeof mutex);
    return mutex;
}

TEST(Mutex, RefusesNull) {
    EXPECT_EQ(vm_mutex_init(nullptr), -2);
    EXPECT_EQ(vm_mutex_lock(nullptr), -2);
    EXPECT_EQ(vm_mutex_unlock(nullptr), -2);
    vm_mutex_set_invalid(nullptr);
    vm_mutex_destroy(nullptr);
}

TEST(Mutex, DoesNothingWhileMarkedInvalid) {
    vm_mutex mutex = garbage();
    vm_mutex_set_invalid(&mutex);
    EXPECT_EQ(vm_mutex_lock(&mutex), -2);
    EXPECT_EQ(vm_mutex_unlock(&mutex), -2);
    vm_mutex_destroy(&mutex);
    EXPECT_EQ(vm_mutex_lock(&mutex), -2);
}

TEST(Mutex, IsUnusableWhenItWasNeverMarkedOrMade) {
    vm_mutex mutex = garbage();
    EXPECT_EQ(vm_mutex_lock(&mutex), -2);
    EXPECT_EQ(vm_mutex_unlock(&mutex), -2);
}

/// A thread checker reports the very misuse that some of these tests are about.
constexpr bool kThreadsAreChecked =
#if defined(__SANITIZE_THREAD__)
    true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

TEST(Mutex, IsTakenSeveralTimesByOneThread) {
    vm_mutex mutex = garbage();
    ASSERT_EQ(vm_mutex_init(&mutex), 1);
    EXPECT_EQ(vm_mutex_lock(&mutex), 1);
    EXPECT_EQ(vm_mutex_lock(&mutex), 1);
    EXPECT_EQ(vm_mutex_unlock(&mutex), 1);
    EXPECT_EQ(vm_mutex_unlock(&mutex), 1);
    vm_mutex_destroy(&mutex);
}

TEST(Mutex, IsNotGivenBackOnceTooOften) {
    if (kThreadsAreChecked)
        GTEST_SKIP() << "the thread checker would report it";
    vm_mutex mutex = garbage();
    ASSERT_EQ(vm_mutex_init(&mutex), 1);
    ASSERT_EQ(vm_mutex_lock(&mutex), 1);
    EXPECT_EQ(vm_mutex_unlock(&mutex), 1);
    EXPECT_EQ(vm_mutex_unlock(&mutex), -2);
    vm_mutex_destroy(&mutex);
}

TEST(Mutex, IsNotGivenBackByAnotherThread) {
    if (kThreadsAreChecked)
        GTEST_SKIP() << "the thread checker would report it";
    vm_mutex mutex = garbage();
    ASSERT_EQ(vm_mutex_init(&mutex), 1);
    ASSERT_EQ(vm_mutex_lock(&mutex), 1);
    int result = 0;
    std::thread([&] { result = vm_mutex_unlock(&mutex); }).join();
    EXPECT_EQ(result, -2);
    EXPECT_EQ(vm_mutex_unlock(&mutex), 1);
    vm_mutex_destroy(&mutex);
}

TEST(Mutex, CanBeDestroyedTwiceAndMadeAgain) {
    vm_mutex mutex = garbage();
    ASSERT_EQ(vm_mutex_init(&mutex), 1);
    vm_mutex_destroy(&mutex);
    vm_mutex_destroy(&mutex);
    EXPECT_EQ(vm_mutex_lock(&mutex), -2);
    ASSERT_EQ(vm_mutex_init(&mutex), 1);
    EXPECT_EQ(vm_mutex_lock(&mutex), 1);
    EXPECT_EQ(vm_mutex_unlock(&mutex), 1);
    vm_mutex_destroy(&mutex);
}

TEST(Mutex, KeepsThreadsApart) {
    vm_mutex mutex = garbage();
    ASSERT_EQ(vm_mutex_init(&mutex), 1);
    constexpr int kThreads = 4;
    constexpr int kRounds = 2000;
    int counted = 0; // not atomic: only the mutex protects it
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                vm_mutex_lock(&mutex);
                vm_mutex_lock(&mutex);
                ++counted;
                vm_mutex_unlock(&mutex);
                vm_mutex_unlock(&mutex);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counted, kThreads * kRounds);
    vm_mutex_destroy(&mutex);
}

} // namespace
