#include "support/Singleton.h"

#include <algorithm>
#include <list>

namespace SingletonRegistry {
namespace {

struct Registry {
    std::mutex mutex;
    std::list<ISingleton*> instances;
};

Registry& registry()
{
    static Registry registry;
    return registry;
}

// Made while the library is loaded, so that it outlives every other static object that uses it.
[[maybe_unused]] const Registry& s_early = registry();

} // namespace

void add(ISingleton* instance)
{
    const std::lock_guard lock(registry().mutex);
    registry().instances.push_back(instance);
}

void remove(ISingleton* instance)
{
    const std::lock_guard lock(registry().mutex);
    registry().instances.remove(instance);
}

bool contains(ISingleton* instance)
{
    const std::lock_guard lock(registry().mutex);
    const auto& all = registry().instances;
    return std::find(all.begin(), all.end(), instance) != all.end();
}

} // namespace SingletonRegistry
