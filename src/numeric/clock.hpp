// Date and time of day, in the machine's local time zone.
#pragma once

#include <cstdint>

namespace vialto {

struct Date {
    std::int32_t day;   // 1 to 31
    std::int32_t month; // 1 to 12
    std::int32_t year;  // in full
};

struct TimeOfDay {
    std::int32_t hour;   // 0 to 23
    std::int32_t minute; // 0 to 59
    std::int32_t second; // 0 to 60
};

struct DateAndTime {
    Date date;
    TimeOfDay time;
};

// All zero where the local time cannot be had.
[[nodiscard]] DateAndTime current_date_and_time();

} // namespace vialto
