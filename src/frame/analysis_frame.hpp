// The frame that every exported function runs in: clear the current event, open the diagnostic
// file, check and log the inputs, call the driver, then either report the failure to the host and
// return 3 or log the results and return 1. No exception leaves it, and no unit stays open behind
// it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "frame/diagnostic_text.hpp"
#include "frame/event.hpp"
#include "frame/fixed_text.hpp"
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

// What no analysis can serve. The first refusal stands.
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

    [[nodiscard]] bool refused() const { return !refusal().empty(); }
    [[nodiscard]] std::string_view refusal() const { return refusal_.trimmed(); }

private:
    FixedText<256> refusal_;
};

// The steps of the frame around one call. run_export, below, puts them in order.
class ExportCall {
public:
    ExportCall(const ExportFrame& frame, tEvent* host_event);
    ~ExportCall();
    ExportCall(const ExportCall&) = delete;
    ExportCall& operator=(const ExportCall&) = delete;

    [[nodiscard]] bool opens_diagnostic_file(DiagnosticFile when);

    template <class Log>
    void write(const Log& log) {
        DiagnosticText text(unit_);
        log(text);
    }

    // The ways out of a failed call; each fills the host's record, prints the event and returns 3.
    [[nodiscard]] ReturnCode fail_opening();
    [[nodiscard]] ReturnCode fail_arguments(std::string_view refusal);
    [[nodiscard]] ReturnCode fail_driver();
    // The standard library throws in an analysis for want of memory alone.
    [[nodiscard]] ReturnCode fail_memory();

    [[nodiscard]] ReturnCode succeed();

private:
    [[nodiscard]] ReturnCode report_failure();

    const ExportFrame& frame_;
    tEvent* host_event_;
    std::int32_t unit_ = -1;
};

// Runs one export:
//   check_arguments(ArgumentCheck&)   before anything is read through a pointer of the host's
//   log_inputs(DiagnosticText&)       ahead of the driver, if the file is opened first
//   drive()                           the analysis; work arrays are made in here
//   log_results(DiagnosticText&)      after a success
template <class CheckArguments, class LogInputs, class Drive, class LogResults>
[[nodiscard]] ReturnCode
run_export(const ExportFrame& frame, tEvent* host_event, const CheckArguments& check_arguments,
           const LogInputs& log_inputs, const Drive& drive, const LogResults& log_results) {
    ExportCall call(frame, host_event);
    try {
        if (!call.opens_diagnostic_file(DiagnosticFile::opened_first)) {
            return call.fail_opening();
        }
        ArgumentCheck check;
        check_arguments(check);
        if (check.refused()) {
            return call.fail_arguments(check.refusal());
        }
        call.write(log_inputs);
        drive();
        if (event_is_fatal()) {
            return call.fail_driver();
        }
        if (!call.opens_diagnostic_file(DiagnosticFile::opened_after_success)) {
            return call.fail_opening();
        }
        call.write(log_results);
        return call.succeed();
    } catch (...) {
        return call.fail_memory();
    }
}

// The same for an export without a diagnostic file.
template <class CheckArguments, class Drive>
[[nodiscard]] ReturnCode run_export(const ExportFrame& frame, tEvent* host_event,
                                    const CheckArguments& check_arguments, const Drive& drive) {
    const auto log_nothing = [](DiagnosticText&) {};
    return run_export(frame, host_event, check_arguments, log_nothing, drive, log_nothing);
}

// The elements of an array as one table column of the diagnostic file: rows beyond its end show 0.
template <class Element>
[[nodiscard]] std::remove_const_t<Element> element_or_zero(std::span<Element> array,
                                                           std::size_t index) {
    return index < array.size() ? array[index] : std::remove_const_t<Element>{};
}

} // namespace vialto
