#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

/// Runs with the rights of nobody where the tests run as root, whom no permission stops.
class WithoutRoot {
public:
    WithoutRoot()
        : m_changed(::geteuid() == 0 && ::seteuid(nobody) == 0)
    {
    }
    ~WithoutRoot()
    {
        if (m_changed && ::seteuid(0) != 0)
            ADD_FAILURE() << "the rights of root did not come back";
    }
    WithoutRoot(const WithoutRoot&) = delete;
    WithoutRoot& operator=(const WithoutRoot&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    const bool m_changed;
};
