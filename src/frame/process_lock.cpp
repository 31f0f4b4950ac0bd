#include "frame/process_lock.hpp"

#include <mutex>

#if !defined(_WIN32)
#include <pthread.h>

#include "frame/file_units.hpp"
#endif

namespace vialto {

namespace {

std::mutex mutex;

#if !defined(_WIN32)

void lock_before_fork() {
    mutex.lock();
}

void unlock_in_parent() {
    mutex.unlock();
}

// The calls that hold units run in the parent alone.
void unlock_in_child() {
    forget_units();
    mutex.unlock();
}

[[maybe_unused]] const int handlers =
    pthread_atfork(lock_before_fork, unlock_in_parent, unlock_in_child);

#endif

} // namespace

ProcessLock::ProcessLock() {
    mutex.lock();
}

ProcessLock::~ProcessLock() {
    mutex.unlock();
}

} // namespace vialto
