#include "frame/analysis_frame.hpp"

#include <cmath>
#include <new>
#include <stdexcept>

#include "frame/file_units.hpp"
#include "frame/fixed_text.hpp"
#include "frame/float_environment.hpp"

namespace vialto {

namespace {

// The diagnostic file of one call.
class CallFile {
public:
    explicit CallFile(const ExportFrame& frame) : frame_(frame) {}
    ~CallFile() { close_unit(unit_); }
    CallFile(const CallFile&) = delete;
    CallFile& operator=(const CallFile&) = delete;

    [[nodiscard]] std::int32_t unit() const { return unit_; }

    [[nodiscard]] ReturnCode open() {
        FixedText<64> file_name;
        file_name.append(frame_.name);
        file_name.append(frame_.file_ending);
        unit_ = io_tmp_file(file_name.trimmed());
        return event_is_fatal() ? pass_failure(frame_.name) : success;
    }

    template <class Result>
    Result run(const Step<Result, DiagnosticText>& step) const {
        DiagnosticText text(unit_);
        return step(text);
    }

private:
    const ExportFrame& frame_;
    std::int32_t unit_ = no_unit;
};

ReturnCode pass_driver_failure(const ExportFrame& frame) {
    if (frame.failed_routine == FailedRoutine::export_alone) {
        current_event().routine.clear();
    }
    return pass_failure(frame.name);
}

ReturnCode run_steps(const ExportFrame& frame, CallFile& file, const ExportSteps& steps) {
    if (frame.diagnostic_file == DiagnosticFile::opened_first && file.open() != success) {
        return failure;
    }
    file.run(steps.log_scalars);
    ArgumentCheck check;
    steps.check_arguments(check);
    if (check.refused()) {
        return pass_failure(frame.name);
    }
    file.run(steps.log_arrays);
    const ReturnCode code = file.run(steps.drive);
    if (event_is_fatal()) {
        return pass_driver_failure(frame);
    }
    if (code != success) {
        return raise_failure("internal error", frame.name);
    }
    if (frame.diagnostic_file == DiagnosticFile::opened_after_success && file.open() != success) {
        return failure;
    }
    file.run(steps.log_results);
    file.run(steps.hand_over);
    return success;
}

ReturnCode run_without_exceptions(const ExportFrame& frame, CallFile& file,
                                  const ExportSteps& steps) {
    constexpr std::string_view no_memory = "not enough memory for the analysis";
    try {
        return run_steps(frame, file, steps);
    } catch (const std::bad_alloc&) {
        return raise_failure(no_memory, frame.name, vialto_code_request);
    } catch (const std::length_error&) { // more than any memory holds
        return raise_failure(no_memory, frame.name, vialto_code_request);
    } catch (...) {
        return raise_failure("internal error", frame.name);
    }
}

} // namespace

void ArgumentCheck::sample_interval(std::string_view name, float interval) {
    if (!(std::isfinite(interval) && interval > 0.0F)) {
        refuse(name, " is not a positive finite number");
    }
}

void ArgumentCheck::refuse(std::string_view name, std::string_view problem) {
    if (!refused()) {
        raise_event(name, routine_of_export, vialto_code_request, recoverable_with_failure);
        current_event().description.append(problem);
    }
}

ReturnCode run_export(const ExportFrame& frame, tEvent* host_event, const ExportSteps& steps) {
    const DefaultFloatEnvironment float_environment;
    reset_event();
    CallFile file(frame);
    if (run_without_exceptions(frame, file, steps) == success) {
        current_event().outcome = outcome_success;
        return success;
    }
    current_event().outcome = outcome_failure;
    if (host_event != nullptr) {
        set_event(current_event(), *host_event);
    }
    print_event(file.unit());
    return failure;
}

} // namespace vialto
