#include "frame/analysis_frame.hpp"

#include <cmath>

#include "frame/file_units.hpp"

namespace vialto {

void ArgumentCheck::sample_interval(std::string_view name, float interval) {
    if (!(std::isfinite(interval) && interval > 0.0F)) {
        refuse(name, " is not a positive finite number");
    }
}

void ArgumentCheck::refuse(std::string_view name, std::string_view problem) {
    if (!refused()) {
        refusal_.append(name);
        refusal_.append(problem);
    }
}

ExportCall::ExportCall(const ExportFrame& frame, tEvent* host_event)
    : frame_(frame), host_event_(host_event) {
    reset_event();
}

ExportCall::~ExportCall() {
    close_unit(unit_);
}

bool ExportCall::opens_diagnostic_file(DiagnosticFile when) {
    if (frame_.diagnostic_file == when) {
        FixedText<64> file_name;
        file_name.append(frame_.name);
        file_name.append(frame_.file_ending);
        unit_ = io_tmp_file(file_name.trimmed());
    }
    return !event_is_fatal();
}

ReturnCode ExportCall::fail_opening() {
    extend_routine(frame_.name);
    return report_failure();
}

ReturnCode ExportCall::fail_arguments(std::string_view refusal) {
    raise_event(refusal, frame_.name, error_code_request, recoverable_with_failure);
    return report_failure();
}

ReturnCode ExportCall::fail_driver() {
    // An export that raised the event itself does not add its own name once more.
    FixedText<256>& routine = current_event().routine;
    if (frame_.failed_routine == FailedRoutine::export_alone) {
        routine.assign(frame_.name);
    } else if (routine.trimmed() != frame_.name) {
        extend_routine(frame_.name);
    }
    return report_failure();
}

ReturnCode ExportCall::fail_memory() {
    return fail_arguments("not enough memory for the analysis");
}

ReturnCode ExportCall::succeed() {
    current_event().outcome = outcome_success;
    return success;
}

ReturnCode ExportCall::report_failure() {
    current_event().outcome = outcome_failure;
    if (host_event_ != nullptr) {
        set_event(current_event(), *host_event_);
    }
    print_event(unit_);
    return failure;
}

} // namespace vialto
