#include "numeric/clock.hpp"

#include <ctime>

namespace vialto {

DateAndTime current_date_and_time() {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    if (local == nullptr) {
        return {};
    }
    return {{local->tm_mday, local->tm_mon + 1, local->tm_year + 1900},
            {local->tm_hour, local->tm_min, local->tm_sec}};
}

} // namespace vialto
