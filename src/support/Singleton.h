#pragma once

#include <atomic>
#include <memory>
#include <mutex>

/// One object per class for the whole process, made at its first use and never destroyed by the
/// framework: a class derives from SingletonTemplate of itself and is reached by GetInstance.

class ISingleton {
public:
    ISingleton() = default;
    virtual ~ISingleton() = default;
    ISingleton(const ISingleton&) = delete;
    ISingleton& operator=(const ISingleton&) = delete;
};

/// The library's list of its singletons, in the order they were made. It owns none of them.
namespace SingletonRegistry {
void add(ISingleton* instance);
/// Takes out every entry equal to `instance`.
void remove(ISingleton* instance);
bool contains(ISingleton* instance);
} // namespace SingletonRegistry

template <typename T> class SingletonTemplate : public ISingleton {
public:
    /// The one instance, made by the first call. Null only while its construction fails: what the
    /// constructor throws is swallowed, and the next call tries again. Callable from any thread.
    static T* GetInstance()
    {
        if (T* made = s_instance.load(std::memory_order_acquire))
            return made;
        const std::lock_guard lock(s_mutex);
        if (!s_instance.load(std::memory_order_relaxed))
            make();
        return s_instance.load(std::memory_order_relaxed);
    }

    /// The instance if there is one; makes none.
    static T* ExistingInstance() { return s_instance.load(std::memory_order_acquire); }

    ~SingletonTemplate() override
    {
        const std::lock_guard lock(s_mutex);
        // An object that somebody made without GetInstance is not the one instance.
        if (this != s_root)
            return;
        SingletonRegistry::remove(s_root);
        s_root = nullptr;
        s_instance.store(nullptr, std::memory_order_release);
    }

private:
    static void make() noexcept
    {
        try {
            auto made = std::make_unique<T>();
            SingletonRegistry::add(made.get());
            s_root = made.get();
            s_instance.store(made.release(), std::memory_order_release);
        } catch (...) {
            // The caller gets null.
        }
    }

    // Ready before any constructor of a static object runs.
    static inline std::atomic<T*> s_instance = nullptr;
    // Recursive: a constructor that throws leads to the destructor above with the lock held.
    static inline std::recursive_mutex s_mutex;
    static inline ISingleton* s_root = nullptr; // s_instance, as the registry knows it
};
