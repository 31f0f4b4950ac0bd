#include "numeric/clock.hpp"

#include <ctime>

namespace vialto {

namespace {

bool to_local_time(std::time_t time, std::tm& local) {
#if defined(_WIN32)
    return localtime_s(&local, &time) == 0;
#else
    return localtime_r(&time, &local) != nullptr;
#endif
}

} // namespace

DateAndTime current_date_and_time() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (now == static_cast<std::time_t>(-1) || !to_local_time(now, local)) {
        return {};
    }
    return {{local.tm_mday, local.tm_mon + 1, local.tm_year + 1900},
            {local.tm_hour, local.tm_min, local.tm_sec}};
}

} // namespace vialto
