// The one lock of the library, around what the calls of all threads share: the table of file units,
// and the platform's local time. It is held for moments; no analysis runs under it, and no file is
// opened, written or closed.
#pragma once

namespace vialto {

// Locks for the life of the object. A thread that forks the process has taken the lock, too, so
// that the forked process has no call of another thread's halfway through what it guards.
class ProcessLock {
public:
    ProcessLock();
    ~ProcessLock();
    ProcessLock(const ProcessLock&) = delete;
    ProcessLock& operator=(const ProcessLock&) = delete;
};

} // namespace vialto
