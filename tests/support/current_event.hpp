// The library's own event, for tests of routines below the exports.
#pragma once

#include <string>

#include "frame/event.hpp"

namespace vialto::test {

// "code severity routine: description" with the severity inside the library; empty when no event
// stands.
[[nodiscard]] inline std::string summary_of_current_event() {
    const CurrentEvent& event = current_event();
    if (event.error_type == no_event) {
        return {};
    }
    return std::to_string(event.error_code) + " " + std::to_string(event.error_type) + " " +
           std::string(event.routine.trimmed()) + ": " + std::string(event.description.trimmed());
}

} // namespace vialto::test
