#include "support/Singleton.h"

#include "support/FailingNew.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

class Plain : public SingletonTemplate<Plain> {
public:
    Plain() { ++s_made; }
    static inline int s_made = 0;
};

class Shared : public SingletonTemplate<Shared> { };

class Unwilling : public SingletonTemplate<Unwilling> {
public:
    Unwilling()
    {
        if (s_refuse)
            throw std::runtime_error("not now");
    }
    static inline bool s_refuse = true;
};

} // namespace

TEST(Singleton, IsMadeAtTheFirstUseAndOnce)
{
    EXPECT_EQ(Plain::ExistingInstance(), nullptr);
    Plain* const first = Plain::GetInstance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(Plain::GetInstance(), first);
    EXPECT_EQ(Plain::ExistingInstance(), first);
    EXPECT_EQ(Plain::s_made, 1);
    EXPECT_TRUE(SingletonRegistry::contains(first));
    delete first;
}

TEST(Singleton, DestroyingItTakesItOutOfTheRegistryAndTheNextUseMakesAnother)
{
    Plain* const first = Plain::GetInstance();
    delete first;
    EXPECT_FALSE(SingletonRegistry::contains(first));
    EXPECT_EQ(Plain::ExistingInstance(), nullptr);
    const int made = Plain::s_made;
    delete Plain::GetInstance();
    EXPECT_EQ(Plain::s_made, made + 1);
}

TEST(Singleton, AnotherObjectOfTheClassLeavesTheInstanceAlone)
{
    Plain* const instance = Plain::GetInstance();
    {
        const Plain other;
    }
    EXPECT_EQ(Plain::ExistingInstance(), instance);
    EXPECT_TRUE(SingletonRegistry::contains(instance));
    delete instance;
}

TEST(Singleton, AThrowingConstructorGivesNullAndTheNextCallTriesAgain)
{
    EXPECT_EQ(Unwilling::GetInstance(), nullptr);
    EXPECT_EQ(Unwilling::GetInstance(), nullptr);
    Unwilling::s_refuse = false;
    Unwilling* const instance = Unwilling::GetInstance();
    EXPECT_NE(instance, nullptr);
    delete instance;
}

TEST(Singleton, AFailedAllocationGivesNull)
{
    for (const long allowed : {0, 1}) { // of the object, then of its entry in the registry
        const FailingNew failing(allowed);
        EXPECT_EQ(Plain::GetInstance(), nullptr);
    }
    EXPECT_NE(Plain::GetInstance(), nullptr);
    delete Plain::GetInstance();
}

TEST(Singleton, ThreadsThatAskAtOnceGetTheSameOne)
{
    // Again and again: the moment at which it is made is short.
    for (int round = 0; round < 100; ++round) {
        std::vector<Shared*> seen(8);
        std::vector<std::thread> threads;
        for (Shared*& mine : seen)
            threads.emplace_back([&mine] { mine = Shared::GetInstance(); });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(std::set<Shared*>(seen.begin(), seen.end()).size(), 1u);
        delete Shared::GetInstance();
    }
}
