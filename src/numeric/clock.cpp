#include "numeric/clock.hpp"

#include <ctime>

namespace vialto {

DateAndTime current_date_and_time() {
    const std::time_t now = std::time(nullptr);
    const bool known = now != static_cast<std::time_t>(-1);
    const std::tm* local = known ? std::localtime(&now) : nullptr;
    if (local == nullptr) {
        return {};
    }
    return {{local->tm_mday, local->tm_mon + 1, local->tm_year + 1900},
            {local->tm_hour, local->tm_min, local->tm_sec}};
}

} // namespace vialto
