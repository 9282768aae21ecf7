#pragma once

/// Makes `new` fail, so that what a memory shortage does can be seen.

/// While it lives, the one allocation of this thread behind `allowed` others throws std::bad_alloc.
/// Only C++ allocations count; texts of Qt use malloc.
class FailingNew {
public:
    explicit FailingNew(long allowed);
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
};
