// A process that forks between its calls goes on in both halves, whatever other threads are at.
#if !defined(_WIN32)

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

#include "frame/file_units.hpp"
#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

// Writes a file that begins with the local time.
bool plan_is_made() {
    std::int32_t points = 0;
    tProfAnalysis analysis{};
    tProfinfo profiles[2] = {};
    profiles[0].x_sampleinterval = 0.025F;
    profiles[1].x_sampleinterval = 0.025F;
    return CC_CoeffArray(&points, &analysis, profiles, nullptr) == vialto_success;
}

// What holds in a forked process; one that hangs is ended, and then nothing holds.
bool holds_in_fork(const std::function<bool()>& claim) {
    constexpr unsigned patience = 20; // seconds
    const pid_t child = fork();
    if (child == 0) {
        alarm(patience);
        _exit(claim() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(Fork, LeavesBothHalvesWorkingWhileOtherThreadsCall) {
    const TemporaryDirectory directory;
    std::atomic<bool> over = false;
    std::thread other([&] {
        while (!over) {
            EXPECT_TRUE(plan_is_made());
        }
    });
    for (int fork = 0; fork < 100; ++fork) {
        EXPECT_TRUE(holds_in_fork(plan_is_made));
        EXPECT_TRUE(plan_is_made());
    }
    over = true;
    other.join();
}

TEST(Fork, GivesTheUnitsOfCallsThatStayBehindBackInTheChildAlone) {
    const TemporaryDirectory directory;
    const std::int32_t unit = io_tmp_file("file.txt");
    EXPECT_TRUE(holds_in_fork([&] {
        const bool free = open_file(unit) == nullptr && io_tmp_file("file.txt") == unit;
        close_unit(unit);
        return free;
    }));
    EXPECT_NE(open_file(unit), nullptr);
    EXPECT_EQ(io_tmp_file("file.txt"), no_unit);
    close_unit(unit);
}

} // namespace
} // namespace vialto::test

#endif
