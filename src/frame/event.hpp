// The current event, through which every failure of the library reaches the host, and the two
// idioms by which an analysis fails: raise_failure where a fault is found, pass_failure on the way
// up.
#pragma once

#include <cstdint>
#include <string_view>

#include "frame/fixed_text.hpp"
#include "vialto/vialto.h"

namespace vialto {

// What drivers and analysis routines return: success or failure.
using ReturnCode = std::int32_t;
inline constexpr ReturnCode success = vialto_success;
inline constexpr ReturnCode failure = vialto_failure;

// Severities inside the library. The host's scale runs the other way round, deliberately.
inline constexpr std::int32_t no_event = 0;
inline constexpr std::int32_t recoverable_without_failure = 1;
inline constexpr std::int32_t recoverable_with_failure = 2;
inline constexpr std::int32_t fatal = 3;

// Outcomes of an export, by which set_event decides what the host gets.
inline constexpr std::int32_t outcome_success = 1;
inline constexpr std::int32_t outcome_no_severity = 2;
inline constexpr std::int32_t outcome_failure = 3;
inline constexpr std::int32_t outcome_some_failure = 5;

// What an export names as the routine of an event that it raises itself: the frame adds its name.
inline constexpr std::string_view routine_of_export{};

// Each thread has exactly one.
struct CurrentEvent {
    FixedText<256> description;
    FixedText<256> routine;
    std::int32_t error_code = 0;
    std::int32_t error_type = no_event;
    std::int32_t outcome = 0; // set on the way out of an export, read by set_event
};

[[nodiscard]] CurrentEvent& current_event();

// Blanks the texts and clears code and severity. `outcome` stays as it is.
void reset_event();

// Replaces the current event. The last raise wins.
void raise_event(std::string_view description, std::string_view routine, std::int32_t error_code,
                 std::int32_t error_type);

// True when the current event is a failure: severity 2 or 3.
[[nodiscard]] bool event_is_fatal();

// Extends the routine path of the current event by "/" and the name. An empty path begins with
// the name.
void extend_routine(std::string_view routine);

// Copies `current` to the host's record, with the severity turned round, as `current.outcome`
// selects: 3 for a failure, 1 and 2 report severity 0, 5 reports severity 2, and any other value
// copies nothing. Returns 1.
std::int32_t set_event(const CurrentEvent& current, tEvent& target);

// Writes the current event to the diagnostic file open on `unit`; nothing if none is open.
void print_event(std::int32_t unit);

// Raises an event and returns failure: `return raise_failure("...", "compute_iri");`
[[nodiscard]] ReturnCode raise_failure(std::string_view description, std::string_view routine,
                                       std::int32_t error_code = vialto_code_analysis,
                                       std::int32_t error_type = recoverable_with_failure);

// Adds the caller's name to the path of a standing failure and returns failure.
[[nodiscard]] ReturnCode pass_failure(std::string_view routine);

} // namespace vialto
