// What diagnostic files promise where files are as POSIX has them.
#if !defined(_WIN32)

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "frame/event.hpp"
#include "frame/file_units.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

TEST(DiagnosticFile, PipeIsNeitherOpenedNorWaitedFor) {
    const test::TemporaryDirectory directory;
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string expected =
        "102 2 io_tmp_file: error opening a new file - " + pipe + ", iostat = 6";
    EXPECT_EQ(io_tmp_file("pipe"), failure);
    EXPECT_EQ(test::summary_of_current_event(), expected);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    reset_event();
    EXPECT_EQ(io_tmp_file("pipe"), failure);
    EXPECT_EQ(test::summary_of_current_event(), expected);
    close(reader);
}

TEST(DiagnosticFile, IsNotInheritedByProgramsThatTheHostStarts) {
    const test::TemporaryDirectory directory;
    const std::int32_t unit = io_tmp_file("file.txt");
    EXPECT_EQ(fcntl(open_file(unit)->descriptor, F_GETFD), FD_CLOEXEC);
    close_unit(unit);
}

} // namespace
} // namespace vialto

#endif
