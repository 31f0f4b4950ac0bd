#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "frame/analysis_frame.hpp"
#include "frame/file_units.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

constexpr ExportFrame alone{.name = "analysis", .failed_routine = FailedRoutine::export_alone};
constexpr ExportFrame late{"analysis", DiagnosticFile::opened_after_success};
constexpr ExportFrame without_file{"analysis", DiagnosticFile::none};
constexpr ExportFrame other_file{.name = "analysis", .file_ending = "2.txt"};

const auto fail = [](DiagnosticText&) {
    (void)raise_failure("it broke", "inner");
    return pass_failure("driver");
};

const std::string complete_file = " scalars\n arrays\n results\n";

struct Call {
    ExportFrame frame{.name = "analysis"};
    std::function<void(ArgumentCheck&)> check = [](ArgumentCheck&) {};
    std::function<ReturnCode(DiagnosticText&)> drive = [](DiagnosticText&) { return success; };
};

// The event of a failure, or nothing. Outputs are handed over by a success alone.
std::string outcome(const Call& call) {
    const std::int32_t free_unit = find_free_unit(first_diagnostic_unit);
    test::EventRecord event;
    bool handed_over = false;
    const auto log_scalars = [](DiagnosticText& text) { text.record("scalars"); };
    const auto log_arrays = [](DiagnosticText& text) { text.record("arrays"); };
    const auto log_results = [](DiagnosticText& text) { text.record("results"); };
    const auto hand_over = [&] { handed_over = true; };
    const std::int32_t code = run_export(call.frame, event,
                                         {.log_scalars = log_scalars,
                                          .check_arguments = call.check,
                                          .log_arrays = log_arrays,
                                          .drive = call.drive,
                                          .log_results = log_results,
                                          .hand_over = hand_over});
    EXPECT_EQ(find_free_unit(first_diagnostic_unit), free_unit) << "a unit stays open";
    EXPECT_EQ(handed_over, code == success);
    return event.outcome(code);
}

std::string printed_event(const std::string& routine, const std::string& description,
                          std::int32_t error_code,
                          const std::string& severity = "recoverable error causing some failure") {
    return " ***** Error Message ******\n sub/func name : " + routine + "\n description   : \n   " +
           description + "\n error code   :  " + std::to_string(error_code) +
           "\n error type: \n   " + severity + "\n";
}

TEST(AnalysisFrame, VariantsDifferInPathAndInWhenTheFileIsTakenOver) {
    const std::string former(5000, 'x');
    const std::string inputs = " scalars\n arrays\n";
    const auto chain_text = inputs + printed_event("inner/driver/analysis", "it broke", 101);
    const auto name_text = inputs + printed_event("analysis", "it broke", 101);
    const std::tuple<ExportFrame, std::string, std::string, std::string> cases[] = {
        {{.name = "analysis"}, "inner/driver/analysis", chain_text, complete_file},
        {other_file, "inner/driver/analysis", chain_text, complete_file},
        {alone, "analysis", name_text, complete_file},
        {late, "inner/driver/analysis", former, " results\n"},
        {without_file, "inner/driver/analysis", former, former},
    };
    for (const auto& [frame, routine, text_of_failure, text_of_success] : cases) {
        const test::TemporaryDirectory directory;
        const auto file = directory.path() / ("analysis" + std::string(frame.file_ending));
        std::ofstream(directory.path() / "former") << former;
        std::filesystem::create_hard_link(directory.path() / "former", file);
        EXPECT_EQ(outcome({.frame = frame, .drive = fail}), "101 2 " + routine + ": it broke");
        EXPECT_EQ(directory.text_of("former"), text_of_failure);
        const auto so_far = frame.diagnostic_file == DiagnosticFile::opened_first ? inputs : former;
        std::ofstream(directory.path() / "former") << former;
        const auto drive = [&](DiagnosticText&) {
            EXPECT_EQ(directory.text_of("former"), so_far);
            return success;
        };
        EXPECT_EQ(outcome({.frame = frame, .drive = drive}), "");
        EXPECT_EQ(directory.text_of("former"), text_of_success);
    }
}

TEST(AnalysisFrame, EveryWayOutOfTheDriverReachesTheHost) {
    const std::string memory = "100 2 analysis: not enough memory for the analysis";
    const std::string internal = "101 2 analysis: internal error";
    const std::pair<std::function<ReturnCode()>, std::string> cases[] = {
        {[] { return raise_failure("worst", "inner", 101, fatal); }, "101 1 inner/analysis: worst"},
        {[] { return raise_failure("own", routine_of_export); }, "101 2 analysis: own"},
        {[]() -> ReturnCode { throw std::bad_alloc(); }, memory},
        {[]() -> ReturnCode { throw std::length_error("vector"); }, memory},
        {[]() -> ReturnCode { throw std::out_of_range("at"); }, internal},
        {[]() -> ReturnCode { throw 1; }, internal},
        {[] { return failure; }, internal},
    };
    const test::TemporaryDirectory directory;
    for (const auto& [way_out, expected] : cases) {
        const auto drive = [&leave = way_out](DiagnosticText& text) {
            text.record("so far");
            return leave();
        };
        EXPECT_EQ(outcome({.drive = drive}), expected);
        EXPECT_TRUE(directory.text_of("analysis.txt")
                        .starts_with(" scalars\n arrays\n so far\n ***** Error Message"));
    }
    EXPECT_EQ(run_export(without_file, nullptr, {.drive = [] { return failure; }}), 3);
}

TEST(AnalysisFrame, FileThatCannotBeOpenedStopsTheAnalysis) {
    const test::TemporaryDirectory directory;
    std::filesystem::create_directories(directory.path() / "taken" / "analysis.txt");
    const std::string separator(1, static_cast<char>(std::filesystem::path::preferred_separator));
    const std::string is_directory = separator == "/" ? "21" : "13"; // EISDIR, EACCES
    const std::tuple<Call, std::string, std::string> cases[] = {
        {{.drive = fail}, "/no/such/directory", "2"},
        {{.frame = alone, .drive = fail}, "/no/such/directory", "2"},
        {{.frame = late}, "/no/such/directory", "2"},
        {{.drive = fail}, "/taken", is_directory},
    };
    for (const auto& [call, tmp, status] : cases) {
        const std::string path = directory.path().string() + tmp;
        test::set_tmp(path);
        EXPECT_EQ(outcome(call), "102 2 io_tmp_file/analysis: error opening a new file - " + path +
                                     separator + "analysis.txt, iostat = " + status);
        EXPECT_EQ(outcome({.frame = without_file}), "");
    }
    test::unset_tmp();
    EXPECT_EQ(outcome({.frame = {.name = "none/a"}}),
              "102 2 io_tmp_file/none/a: error opening a new file - " + separator +
                  "none/a.txt, iostat = 2");
}

TEST(AnalysisFrame, PathIsTrimmedAndCutAt128Characters) {
    const test::TemporaryDirectory directory;
    const std::string base = directory.path().string() + "/";
    const auto up_to = [&](std::size_t end, char letter) {
        return std::string(end - base.size(), letter);
    };
    std::filesystem::create_directory(base + up_to(120, 'd'));
    const std::pair<std::string, std::string> cases[] = {
        {"   ", "analysis.txt"},
        {up_to(120, 'd'), up_to(120, 'd') + "/analysi"},
        {up_to(200, 'e'), up_to(128, 'e')},
        // A blank at the cut: neither the separator nor the name moves into its place.
        {up_to(127, 'f') + " f", up_to(127, 'f')},
    };
    for (const auto& [tmp, file] : cases) {
        test::set_tmp(base + tmp);
        EXPECT_EQ(outcome({}), "");
        EXPECT_EQ(directory.text_of(file), complete_file) << file;
    }
}

TEST(AnalysisFrame, TakesUnits11To99AndFailsWhenAllAreInUse) {
    const test::TemporaryDirectory directory;
    for (std::int32_t unit = 11; unit <= 99; ++unit) {
        EXPECT_EQ(io_tmp_file("unit" + std::to_string(unit)), unit);
    }
    EXPECT_EQ(outcome({}), "101 2 io_tmp_file/analysis: error in finding a free file unit");
    EXPECT_EQ(io_tmp_file("one_more"), 3);
    close_unit(57);
    EXPECT_EQ(outcome({}), "");
    for (std::int32_t unit = 11; unit <= 99; ++unit) {
        close_unit(unit);
    }
}

TEST(AnalysisFrame, LeavesAFileToTheCallThatWritesIt) {
    const test::TemporaryDirectory directory;
    const std::int32_t unit = io_tmp_file("analysis.txt");
    DiagnosticText(unit).record("first");
    std::thread([] {
        EXPECT_EQ(outcome({}), "");
        EXPECT_EQ(outcome({.drive = fail}), "101 2 inner/driver/analysis: it broke");
    }).join();
    EXPECT_FALSE(event_is_fatal()) << "the event is the other thread's";
    close_unit(unit);
    EXPECT_EQ(directory.text_of("analysis.txt"), " first\n");
    EXPECT_EQ(outcome({}), "");
    EXPECT_EQ(directory.text_of("analysis.txt"), complete_file);
}

TEST(AnalysisFrame, RefusesWhatItCannotServeBeforeTheDriver) {
    const test::TemporaryDirectory directory;
    const auto nulls = [](ArgumentCheck& check) {
        check.address("xRideIndex", nullptr);
        check.array("profile", nullptr, 1);
    };
    EXPECT_EQ(outcome({.check = nulls, .drive = fail}),
              "100 2 analysis: xRideIndex is a null pointer");
    EXPECT_EQ(directory.text_of("analysis.txt"),
              " scalars\n" + printed_event("analysis", "xRideIndex is a null pointer", 100));
    for (const float interval : {0.0F, -1.0F, std::nanf(""), HUGE_VALF}) {
        const auto bad = [=](ArgumentCheck& check) { check.sample_interval("xStep", interval); };
        EXPECT_EQ(outcome({.check = bad, .drive = fail}),
                  "100 2 analysis: xStep is not a positive finite number");
    }
    const auto good = [](ArgumentCheck& check) {
        check.array("empty", nullptr, 0);
        check.array("negative", nullptr, -1);
        check.address("given", &check);
        check.sample_interval("xStepSize", 1e-30F);
    };
    EXPECT_EQ(outcome({.check = good}), "");
}

TEST(PrintEvent, WritesSevenRecordsAndNothingWithoutAFile) {
    for (const auto& [severity, words] : {std::pair{1, "recoverable error not causing failure"},
                                          {3, "fatal error"},
                                          {4, "undefined severity"}}) {
        const test::TemporaryDirectory directory;
        raise_event("it broke", "inner", 102, severity);
        EXPECT_EQ(event_is_fatal(), severity == 3);
        const std::int32_t unit = io_tmp_file("event.txt");
        for (const std::int32_t asked : {unit, unit + 1, 3, -1, 100}) {
            print_event(asked);
        }
        close_unit(unit);
        EXPECT_EQ(directory.text_of("event.txt"), printed_event("inner", "it broke", 102, words));
    }
}

} // namespace
} // namespace vialto
