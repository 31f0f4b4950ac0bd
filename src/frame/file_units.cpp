#include "frame/file_units.hpp"

#include <algorithm>
#include <array>
#include <charconv>
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

constexpr std::size_t path_length = 128;

using Path = FixedText<path_length>;

std::array<TextFile, last_diagnostic_unit + 1> files; // of the units

Path temporary_path(std::string_view name) {
    const char* value = std::getenv("TMP");
    const std::string_view directory = value == nullptr ? std::string_view{} : value;
    Path path;
    std::size_t end = path.write(0, trim_trailing_blanks(directory));
    end = path.write(end, separator);
    path.write(end, trim_trailing_blanks(name));
    return path;
}

int open_path(const Path& path, TextFile& file) {
    std::array<char, path_length + 1> terminated{};
    std::copy(path.trimmed().begin(), path.trimmed().end(), terminated.begin());
    return open_text_file(terminated.data(), file);
}

ReturnCode fail_opening(const Path& path, int status) {
    std::array<char, 5> digits{};
    const char* const end = std::to_chars(digits.begin(), digits.end(), status).ptr;
    FixedText<256> description;
    std::size_t length = description.write(0, "error opening a new file - ");
    length = description.write(length, path.trimmed());
    length = description.write(length, ", iostat = ");
    description.write(length, {digits.begin(), end});
    return raise_failure(description.trimmed(), routine_name, error_code_file);
}

ReturnCode open_tmp_file(std::string_view name, std::int32_t& unit) {
    const Path path = temporary_path(name);
    unit = find_free_unit(first_diagnostic_unit, last_diagnostic_unit);
    if (unit < 0) {
        return raise_failure("error in finding a free file unit ", routine_name);
    }
    const int status = open_path(path, files[static_cast<std::size_t>(unit)]);
    return status == 0 ? success : fail_opening(path, status);
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
    std::int32_t unit = -1;
    return open_tmp_file(name, unit) == success ? unit : failure;
}

TextFile* open_file(std::int32_t unit) {
    if (unit < 0 || unit > last_diagnostic_unit) {
        return nullptr;
    }
    TextFile& file = files[static_cast<std::size_t>(unit)];
    return file.is_open() ? &file : nullptr;
}

void close_unit(std::int32_t unit) {
    if (TextFile* const file = open_file(unit); file != nullptr) {
        close_text_file(*file);
    }
}

} // namespace vialto
