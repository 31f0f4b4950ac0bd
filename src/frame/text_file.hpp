// Text files as the platform has them, below its streams: DiagnosticText gathers what it writes,
// and a stream would only copy it.
#pragma once

#include <string_view>

namespace vialto {

struct TextFile {
    static constexpr int closed = -1;

    int descriptor = closed;
    bool holds_former_text = false; // until the first write

    [[nodiscard]] bool is_open() const { return descriptor != closed; }
};

// Opens a file to be written anew, and makes it if there is none. Programs that the process starts
// do not inherit it. What is neither a regular file nor a character device, such as a pipe that
// nobody reads, is not opened and not waited for. Returns 0, or the platform's errno.
[[nodiscard]] int open_text_file(const char* path, TextFile& file);

// The first write, be it of no text, empties the file. What cannot be written is not looked at.
void write_text(TextFile& file, std::string_view text);

void close_text_file(TextFile& file);

} // namespace vialto
