#include "frame/event.hpp"

#include <array>
#include <cstddef>

#include "frame/diagnostic_text.hpp"
#include "frame/file_units.hpp"

namespace vialto {

namespace {

// The host's severity for each internal one, counted from 1.
constexpr std::array<std::int32_t, 3> host_severity{3, 2, 1};

std::int32_t severity_for_host(const CurrentEvent& current) {
    if (current.outcome == outcome_some_failure) {
        return host_severity[1];
    }
    const bool reported = current.outcome == outcome_failure &&
                          current.error_type >= recoverable_without_failure &&
                          current.error_type <= fatal;
    return reported ? host_severity[static_cast<std::size_t>(current.error_type - 1)] : no_event;
}

std::string_view severity_text(std::int32_t error_type) {
    switch (error_type) {
    case recoverable_without_failure:
        return "  recoverable error not causing failure";
    case recoverable_with_failure:
        return "  recoverable error causing some failure";
    case fatal:
        return "  fatal error";
    default:
        return "  undefined severity";
    }
}

} // namespace

CurrentEvent& current_event() {
    static thread_local constinit CurrentEvent event;
    return event;
}

void reset_event() {
    CurrentEvent& event = current_event();
    event.description.clear();
    event.routine.clear();
    event.error_code = 0;
    event.error_type = no_event;
}

void raise_event(std::string_view description, std::string_view routine, std::int32_t error_code,
                 std::int32_t error_type) {
    CurrentEvent& event = current_event();
    event.description.assign(description);
    event.routine.assign(routine);
    event.error_code = error_code;
    event.error_type = error_type;
}

bool event_is_fatal() {
    const std::int32_t error_type = current_event().error_type;
    return error_type == recoverable_with_failure || error_type == fatal;
}

void extend_routine(std::string_view routine) {
    FixedText<256>& path = current_event().routine;
    if (!path.trimmed().empty()) {
        path.append("/");
    }
    path.append(routine);
}

std::int32_t set_event(const CurrentEvent& current, tEvent& target) {
    switch (current.outcome) {
    case outcome_success:
    case outcome_no_severity:
    case outcome_failure:
    case outcome_some_failure:
        current.description.copy_to(target.description);
        current.routine.copy_to(target.routine);
        target.error_code = current.error_code;
        target.error_type = severity_for_host(current);
        break;
    default:
        break;
    }
    return 1;
}

void print_event(std::int32_t unit) {
    if (open_file(unit) == nullptr) {
        return;
    }
    const CurrentEvent& event = current_event();
    DiagnosticText text(unit);
    text.record("***** Error Message ******");
    text.record("sub/func name : ", event.routine.trimmed());
    text.record("description   : ");
    text.record("  ", event.description.trimmed());
    text.record("error code   : ", event.error_code);
    text.record("error type: ");
    text.record(severity_text(event.error_type));
}

ReturnCode raise_failure(std::string_view description, std::string_view routine,
                         std::int32_t error_code, std::int32_t error_type) {
    raise_event(description, routine, error_code, error_type);
    return failure;
}

ReturnCode pass_failure(std::string_view routine) {
    extend_routine(routine);
    return failure;
}

} // namespace vialto
