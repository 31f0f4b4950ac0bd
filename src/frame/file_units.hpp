// File units: small numbers that stand for open text files. The units 0 to 99 exist; diagnostic
// files take 11 to 99.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "frame/text_file.hpp"

namespace vialto {

inline constexpr std::int32_t first_diagnostic_unit = 11;
inline constexpr std::int32_t last_diagnostic_unit = 99;
inline constexpr std::int32_t no_unit = -1;

// The first unit from iLow to iHigh, both included, that exists, is not open and is not among the
// excluded ones; no_unit if there is none.
[[nodiscard]] std::int32_t
find_free_unit(std::int32_t iLow = 0, std::int32_t iHigh = std::numeric_limits<std::int32_t>::max(),
               std::span<const std::int32_t> iExcluded = {});

// Opens the text file of that name in the directory that TMP names, emptying a file that exists,
// and returns its unit. While another call of the process has the same path open, the file is left
// to it: no_unit, and no event. On failure raises the event and returns 3, which is no unit that
// anything has opened: decide by event_is_fatal().
[[nodiscard]] std::int32_t io_tmp_file(std::string_view name);

// The file open on `unit`; null if there is none or the unit does not exist.
[[nodiscard]] TextFile* open_file(std::int32_t unit);

// Closes the file open on `unit`, if any. The file stays on disk.
void close_unit(std::int32_t unit);

// Closes all files and gives all units back, for a process that has forked off the one that uses
// them. Needs the lock.
void forget_units();

} // namespace vialto
