// Files beyond 2 GB on 32-bit platforms, too.
#define _FILE_OFFSET_BITS 64 // NOLINT: the platform's own name

#include "frame/text_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace vialto {

namespace {

#if defined(_WIN32)
constexpr int platform_flags = O_TEXT | O_NOINHERIT;
#else
constexpr int platform_flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
#endif

constexpr int readable_and_writable = 0666; // by whom the host's mask lets
constexpr std::size_t largest_write = 1U << 30U;

// A file that is cut to nothing is written to the disk when it is closed, by ext4 among others:
// that takes a hundred times as long as the whole call. So it is cut to the length of the text that
// is then written over what is left.
void drop_former_text(TextFile& file, std::size_t length) {
    if (file.holds_former_text) {
        file.holds_former_text = false;
        [[maybe_unused]] const int ignored = ftruncate(file.descriptor, static_cast<off_t>(length));
    }
}

} // namespace

int open_text_file(const char* path, TextFile& file) {
    const int descriptor = open(path, O_WRONLY | O_CREAT | platform_flags, readable_and_writable);
    if (descriptor == TextFile::closed) {
        return errno;
    }
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !(S_ISREG(status.st_mode) || S_ISCHR(status.st_mode))) {
        close(descriptor);
        return ENXIO; // as for a pipe that nobody reads, which does not open at all
    }
    file = {.descriptor = descriptor, .holds_former_text = status.st_size > 0};
    return 0;
}

void write_text(TextFile& file, std::string_view text) {
    drop_former_text(file, text.size());
    while (!text.empty()) {
        const auto count = static_cast<unsigned>(std::min(text.size(), largest_write));
        const auto written = write(file.descriptor, text.data(), count);
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

void close_text_file(TextFile& file) {
    drop_former_text(file, 0);
    close(file.descriptor);
    file.descriptor = TextFile::closed;
}

} // namespace vialto
