#include "frame/file_units.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "frame/event.hpp"
#include "frame/fixed_text.hpp"
#include "frame/process_lock.hpp"

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

struct Unit {
    bool taken = false; // this and the path are read and written under the lock
    Path path;
    TextFile file; // is the call's that has taken the unit
};

// There is one table for the process.
constinit std::array<Unit, last_diagnostic_unit + 1> units{};

bool exists(std::int32_t unit) {
    return unit >= 0 && unit <= last_diagnostic_unit;
}

Unit& at(std::int32_t unit) {
    return units[static_cast<std::size_t>(unit)];
}

Path temporary_path(std::string_view name) {
#if defined(_WIN32)
    // The system's value: a C runtime has a copy of its own, which hosts of other runtimes and other
    // languages do not reach.
    std::array<char, 32768> value{}; // no variable is longer
    const DWORD length = GetEnvironmentVariableA("TMP", value.data(), value.size());
    const std::string_view directory{value.data(), length < value.size() ? length : 0};
#else
    const char* value = std::getenv("TMP");
    const std::string_view directory = value == nullptr ? std::string_view{} : value;
#endif
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
    return raise_failure(description.trimmed(), routine_name, vialto_code_file);
}

std::int32_t first_free_unit(std::int32_t iLow, std::int32_t iHigh,
                             std::span<const std::int32_t> iExcluded) {
    const std::int32_t first = std::max(iLow, 0);
    const std::int32_t last = std::min(iHigh, last_diagnostic_unit);
    for (std::int32_t unit = first; unit <= last; ++unit) {
        const bool excluded =
            std::find(iExcluded.begin(), iExcluded.end(), unit) != iExcluded.end();
        if (!at(unit).taken && !excluded) {
            return unit;
        }
    }
    return no_unit;
}

// Takes a unit for a file, or none where another call is writing it.
ReturnCode take_unit(const Path& path, std::int32_t& unit) {
    const ProcessLock lock;
    if (std::any_of(units.begin(), units.end(),
                    [&](const Unit& other) { return other.taken && other.path == path; })) {
        unit = no_unit;
        return success;
    }
    unit = first_free_unit(first_diagnostic_unit, last_diagnostic_unit, {});
    if (unit == no_unit) {
        return raise_failure("error in finding a free file unit ", routine_name);
    }
    at(unit).taken = true;
    at(unit).path = path;
    return success;
}

void give_back(std::int32_t unit) {
    const ProcessLock lock;
    at(unit).taken = false;
}

ReturnCode open_tmp_file(std::string_view name, std::int32_t& unit) {
    const Path path = temporary_path(name);
    if (take_unit(path, unit) != success) {
        return failure;
    }
    const int status = unit == no_unit ? 0 : open_path(path, at(unit).file);
    if (status != 0) {
        give_back(unit);
        return fail_opening(path, status);
    }
    return success;
}

} // namespace

std::int32_t find_free_unit(std::int32_t iLow, std::int32_t iHigh,
                            std::span<const std::int32_t> iExcluded) {
    const ProcessLock lock;
    return first_free_unit(iLow, iHigh, iExcluded);
}

std::int32_t io_tmp_file(std::string_view name) {
    std::int32_t unit = no_unit;
    return open_tmp_file(name, unit) == success ? unit : failure;
}

TextFile* open_file(std::int32_t unit) {
    return exists(unit) && at(unit).file.is_open() ? &at(unit).file : nullptr;
}

void close_unit(std::int32_t unit) {
    if (TextFile* const file = open_file(unit); file != nullptr) {
        close_text_file(*file);
        give_back(unit);
    }
}

void forget_units() {
    for (Unit& unit : units) {
        if (unit.file.is_open()) {
            unit.file.holds_former_text = false; // the process that writes the file cuts it
            close_text_file(unit.file);
        }
        unit.taken = false;
    }
}

} // namespace vialto
