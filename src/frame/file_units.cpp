#include "frame/file_units.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

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

std::array<std::FILE*, last_diagnostic_unit + 1> files{};

bool unit_exists(std::int32_t unit) {
    return unit >= 0 && unit <= last_diagnostic_unit;
}

FixedText<128> temporary_path(std::string_view name) {
    FixedText<128> path;
    const char* directory = std::getenv("TMP");
    if (directory != nullptr) {
        path.append(directory);
    }
    path.append(separator);
    path.append(trim_trailing_blanks(name));
    return path;
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
    const FixedText<128> path = temporary_path(name);
    std::array<char, 129> terminated{};
    std::copy(path.trimmed().begin(), path.trimmed().end(), terminated.begin());
    // A new file is much cheaper to open than an old one is to empty. Where the old one cannot be
    // removed, it is emptied.
    std::remove(terminated.data());
    errno = 0;
    std::FILE* file = std::fopen(terminated.data(), "w");
    if (file == nullptr) {
        return fail_opening(path.trimmed(), errno);
    }
    // DiagnosticText hands over large blocks: a second buffer would only copy them.
    std::setvbuf(file, nullptr, _IONBF, 0);
    files[static_cast<std::size_t>(unit)] = file;
    return unit;
}

std::FILE* open_file(std::int32_t unit) {
    return unit_exists(unit) ? files[static_cast<std::size_t>(unit)] : nullptr;
}

void close_unit(std::int32_t unit) {
    std::FILE* file = open_file(unit);
    if (file != nullptr) {
        std::fclose(file);
        files[static_cast<std::size_t>(unit)] = nullptr;
    }
}

} // namespace vialto
