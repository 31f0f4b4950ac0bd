#include "frame/file_units.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <system_error>

#include "frame/event.hpp"
#include "frame/fixed_text.hpp"

namespace vialto {

namespace {

constexpr std::string_view routine_name = "io_tmp_file";

#if defined(_WIN32)
constexpr std::string_view separator = "\\";
#else
constexpr std::string_view separator = "/";
#endif

using Path = FixedText<128>;

struct Unit {
    std::FILE* file = nullptr;
    Path path;
    long former_length = 0; // of the file that was taken over
};

std::array<Unit, last_diagnostic_unit + 1> units{};

bool unit_exists(std::int32_t unit) {
    return unit >= 0 && unit <= last_diagnostic_unit;
}

Path temporary_path(std::string_view name) {
    const char* value = std::getenv("TMP");
    const std::string_view directory = value == nullptr ? std::string_view{} : value;
    Path path;
    std::size_t end = path.write(0, trim_trailing_blanks(directory));
    end = path.write(end, separator);
    path.write(end, trim_trailing_blanks(name));
    return path;
}

// The path as the C library wants it.
std::array<char, 129> terminated(const Path& path) {
    std::array<char, 129> text{};
    std::copy(path.trimmed().begin(), path.trimmed().end(), text.begin());
    return text;
}

// DiagnosticText hands over large blocks: a buffer of the stream's own would only copy them.
std::FILE* open_unbuffered(const Path& path, const char* mode) {
    std::FILE* file = std::fopen(terminated(path).data(), mode);
    if (file != nullptr) {
        std::setvbuf(file, nullptr, _IONBF, 0);
    }
    return file;
}

// A file that exists is written over from its start and cut when it is closed: that is much cheaper
// than emptying it first.
bool open_over(Unit& unit) {
    unit.file = open_unbuffered(unit.path, "r+");
    if (unit.file == nullptr) {
        return false;
    }
    std::fseek(unit.file, 0, SEEK_END);
    unit.former_length = std::ftell(unit.file);
    std::rewind(unit.file);
    return true;
}

bool open_new(Unit& unit) {
    unit.former_length = 0;
    unit.file = open_unbuffered(unit.path, "w");
    return unit.file != nullptr;
}

// What cannot be cut stays as it is: nothing reads a diagnostic file but a person.
void cut_file(const Path& path, long length) {
    try {
        std::error_code ignored;
        std::filesystem::resize_file(path.trimmed(), static_cast<std::uintmax_t>(length), ignored);
    } catch (const std::exception&) {
        return;
    }
}

// In five characters, right-justified.
FixedText<5> status_text(int status) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%5d", status);
    FixedText<5> text;
    text.assign(digits.data());
    return text;
}

std::int32_t fail_opening(std::string_view path, int status) {
    std::array<char, 256> words{};
    const FixedText<5> status_words = status_text(status);
    const int length = std::snprintf(
        words.data(), words.size(), "error opening a new file - %.*s, iostat = %.*s",
        static_cast<int>(path.size()), path.data(), static_cast<int>(status_words.trimmed().size()),
        status_words.trimmed().data());
    return raise_failure({words.data(), static_cast<std::size_t>(length)}, routine_name,
                         error_code_file);
}

} // namespace

std::int32_t find_free_unit(std::int32_t iLow, std::int32_t iHigh,
                            std::span<const std::int32_t> iExcluded) {
    const std::int32_t first = std::max(iLow, 0);
    const std::int32_t last = std::min(iHigh, last_diagnostic_unit);
    for (std::int32_t unit = first; unit <= last; ++unit) {
        const bool excluded =
            std::find(iExcluded.begin(), iExcluded.end(), unit) != iExcluded.end();
        if (open_file(unit) == nullptr && !excluded) {
            return unit;
        }
    }
    return -1;
}

std::int32_t io_tmp_file(std::string_view name) {
    const std::int32_t unit = find_free_unit(first_diagnostic_unit, last_diagnostic_unit);
    if (unit < 0) {
        return raise_failure("error in finding a free file unit ", routine_name);
    }
    Unit& opened = units[static_cast<std::size_t>(unit)];
    opened.path = temporary_path(name);
    errno = 0;
    if (!open_over(opened) && !open_new(opened)) {
        return fail_opening(opened.path.trimmed(), errno);
    }
    return unit;
}

std::FILE* open_file(std::int32_t unit) {
    return unit_exists(unit) ? units[static_cast<std::size_t>(unit)].file : nullptr;
}

void close_unit(std::int32_t unit) {
    if (open_file(unit) == nullptr) {
        return;
    }
    Unit& closed = units[static_cast<std::size_t>(unit)];
    const long length = std::ftell(closed.file);
    std::fclose(closed.file);
    closed.file = nullptr;
    if (length >= 0 && length < closed.former_length) {
        cut_file(closed.path, length);
    }
}

} // namespace vialto
