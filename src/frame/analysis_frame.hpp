// The frame that every exported function runs in: clear the current event, open the diagnostic
// file, log the scalar inputs, check the arguments, log the arrays, call the driver, then either
// report the failure to the host and return 3 or log the results and return 1. No exception leaves
// it, and no unit stays open behind it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "frame/diagnostic_text.hpp"
#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

enum class DiagnosticFile { opened_first, opened_after_success, none };

// What the host finds in `routine` after the driver failed: the chain from the innermost routine to
// the export, or the export's name alone. A diagnostic file that cannot be opened is always
// reported with its chain. The difference is deliberate.
enum class FailedRoutine { whole_chain, export_alone };

struct ExportFrame {
    std::string_view name;
    DiagnosticFile diagnostic_file = DiagnosticFile::opened_first;
    FailedRoutine failed_routine = FailedRoutine::whole_chain;
    std::string_view file_ending = ".txt";
};

// An array of the host's with its length. A negative size counts as 0, and so does a null pointer.
template <class Element>
[[nodiscard]] std::span<Element> host_array(Element* first, std::int32_t size) {
    return {first, first == nullptr ? std::size_t{0}
                                    : static_cast<std::size_t>(std::max(size, std::int32_t{0}))};
}

// Raises the event of what no analysis can serve, and leaves the routine to the frame. The first
// refusal stands.
class ArgumentCheck {
public:
    void array(std::string_view name, const void* first, std::int32_t size) {
        if (first == nullptr && size > 0) {
            refuse(name, " is a null pointer");
        }
    }
    void address(std::string_view name, const void* address) { array(name, address, 1); }
    void sample_interval(std::string_view name, float interval);
    // The text that the host reads is the name followed by the problem.
    void refuse(std::string_view name, std::string_view problem);

    [[nodiscard]] bool refused() const { return event_is_fatal(); }
};

// A step of an export: refers to a callable that outlives the call, and does nothing without one.
// The callable may leave the argument out.
template <class Result, class Argument>
class Step {
public:
    Step() = default;
    template <class Callable>
    Step(const Callable& callable) // NOLINT: a lambda stands for the step
        : callable_(&callable), run_([](const void* address, Argument& argument) -> Result {
              const Callable& step = *static_cast<const Callable*>(address);
              if constexpr (std::is_invocable_v<const Callable&, Argument&>) {
                  return step(argument);
              } else {
                  return step();
              }
          }) {}

    Result operator()(Argument& argument) const {
        return run_ == nullptr ? Result() : run_(callable_, argument);
    }

private:
    const void* callable_ = nullptr;
    Result (*run_)(const void*, Argument&) = nullptr;
};

// What an export does, in the order in which it is done. A diagnostic file that opens only after a
// success takes nothing ahead of `log_results`.
struct ExportSteps {
    // The numbers that the host passes, so that the file of a refused call shows what was refused.
    // A record's are logged if its pointer is not null.
    Step<void, DiagnosticText> log_scalars{};
    // Before any array of the host's is read.
    Step<void, ArgumentCheck> check_arguments{};
    Step<void, DiagnosticText> log_arrays{};
    // The analysis; work arrays are made in here. What it writes to the text is in the file even if
    // it then fails.
    Step<ReturnCode, DiagnosticText> drive{};
    Step<void, DiagnosticText> log_results{};
    // Outputs that a diagnostic file which cannot be opened after the success must leave alone.
    Step<void, DiagnosticText> hand_over{};
};

[[nodiscard]] ReturnCode run_export(const ExportFrame& frame, tEvent* host_event,
                                    const ExportSteps& steps);

// The elements of an array as one table column of the diagnostic file: rows beyond its end show 0.
template <class Element>
[[nodiscard]] std::remove_const_t<Element> element_or_zero(std::span<Element> array,
                                                           std::size_t index) {
    return index < array.size() ? array[index] : std::remove_const_t<Element>{};
}

} // namespace vialto
