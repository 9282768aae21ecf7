#include "support/FailingNew.h"

#include <cstdlib>
#include <new>

namespace {

constexpr long kUnlimited = -1;
thread_local long t_allowed = kUnlimited;

void* allocate(std::size_t size)
{
    if (t_allowed != kUnlimited && t_allowed-- == 0)
        throw std::bad_alloc();
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

FailingNew::FailingNew(long allowed)
{
    t_allowed = allowed;
}
FailingNew::~FailingNew()
{
    t_allowed = kUnlimited;
}

void* operator new(std::size_t size)
{
    return allocate(size);
}
void* operator new[](std::size_t size)
{
    return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return t_allowed == kUnlimited ? std::malloc(size ? size : 1) : nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept
{
    return operator new(size, tag);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
