#include "support/Lock.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <vector>

static_assert(std::has_virtual_destructor_v<CSLock>);
static_assert(std::has_virtual_destructor_v<CSAutoLock>);

TEST(CSLock, TheHoldingThreadMayTakeItAgain)
{
    CSLock lock;
    const CSAutoLock outer(lock);
    const CSAutoLock inner(lock);
}

TEST(CSAutoLock, LetsOneThreadInAtATime)
{
    CSLock lock;
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 10'000; ++i) {
                const CSAutoLock held(lock);
                ++count;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 40'000);
}
