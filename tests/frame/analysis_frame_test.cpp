#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <new>
#include <string>

#include "frame/analysis_frame.hpp"
#include "frame/file_units.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

const auto accept = [](ArgumentCheck&) {};
const auto log_inputs = [](DiagnosticText& text) { text.record("inputs"); };
const auto log_results = [](DiagnosticText& text) { text.record("results"); };
const auto succeed = [] { return success; };
const auto fail = [] {
    (void)raise_failure("it broke", "inner");
    return pass_failure("driver");
};
const auto run_out_of_memory = []() -> ReturnCode { throw std::bad_alloc(); };

const std::string printed_event = " ***** Error Message ******\n"
                                  " sub/func name : inner/driver/analysis\n"
                                  " description   : \n"
                                  "   it broke\n"
                                  " error code   :  101\n"
                                  " error type: \n"
                                  "   recoverable error causing some failure\n";

template <class Drive>
ReturnCode run(const ExportFrame& frame, tEvent* event, const Drive& drive) {
    return run_export(frame, event, accept, log_inputs, drive, log_results);
}

bool no_unit_is_open() {
    return find_free_unit(first_diagnostic_unit, last_diagnostic_unit) == first_diagnostic_unit;
}

TEST(AnalysisFrame, SuccessLogsInputsAndResultsAndLeavesTheEvent) {
    const test::TemporaryDirectory directory;
    test::EventRecord event;
    EXPECT_EQ(run({.name = "analysis"}, event, succeed), 1);
    EXPECT_TRUE(event.untouched());
    EXPECT_EQ(directory.text_of("analysis.txt"), " inputs\n results\n");
    EXPECT_TRUE(no_unit_is_open());
}

TEST(AnalysisFrame, SecondCallWritesTheFileAnew) {
    const test::TemporaryDirectory directory;
    ASSERT_EQ(run_export({.name = "analysis"}, nullptr, accept, log_inputs, succeed,
                         [](DiagnosticText& text) { text.record(std::string(5000, 'x')); }),
              1);
    ASSERT_EQ(run({.name = "analysis", .file_ending = "2.txt"}, nullptr, succeed), 1);
    ASSERT_EQ(run({.name = "analysis"}, nullptr, succeed), 1);
    EXPECT_EQ(directory.text_of("analysis.txt"), " inputs\n results\n");
    EXPECT_EQ(directory.text_of("analysis2.txt"), " inputs\n results\n");
}

TEST(AnalysisFrame, FileOfAnEarlierCallIsTakenOverThroughALink) {
    const test::TemporaryDirectory directory;
    std::ofstream(directory.path() / "target") << std::string(100, 'x');
    std::filesystem::create_symlink(directory.path() / "target", directory.path() / "analysis.txt");
    ASSERT_EQ(run({.name = "analysis"}, nullptr, succeed), 1);
    EXPECT_EQ(directory.text_of("target"), " inputs\n results\n");
}

TEST(AnalysisFrame, PathStartsWithTheSeparatorWhenTmpIsNotSet) {
    const test::TemporaryDirectory directory;
    test::unset_tmp();
    test::EventRecord event;
    EXPECT_EQ(run({.name = "none/analysis"}, event, succeed), 3);
    EXPECT_EQ(event.description(), "error opening a new file - /none/analysis.txt, iostat =     2");
}

TEST(AnalysisFrame, DriverFailureReachesHostAndFileAndNextCallStartsClean) {
    const test::TemporaryDirectory directory;
    test::EventRecord event;
    EXPECT_EQ(run({.name = "analysis"}, event, fail), 3);
    EXPECT_EQ(event.summary(), "101 2 inner/driver/analysis: it broke");
    EXPECT_EQ(directory.text_of("analysis.txt"), " inputs\n" + printed_event);
    test::EventRecord next;
    EXPECT_EQ(run({.name = "analysis"}, next, succeed), 1);
    EXPECT_TRUE(next.untouched());
    EXPECT_EQ(run({.name = "analysis"}, nullptr, fail), 3);
    EXPECT_TRUE(no_unit_is_open());
}

TEST(AnalysisFrame, FatalEventIsTheMostSevereForTheHost) {
    const test::TemporaryDirectory directory;
    test::EventRecord event;
    EXPECT_EQ(run({.name = "analysis"}, event,
                  [] { return raise_failure("worst", "analysis", error_code_analysis, fatal); }),
              3);
    EXPECT_EQ(event.summary(), "101 1 analysis: worst");
}

TEST(AnalysisFrame, VariantsDifferInPathAndInWhenTheFileOpens) {
    struct Case {
        ExportFrame frame;
        std::string routine;      // after a failing driver
        std::string file_success; // text after a success
        bool file_after_failure;
    };
    const Case cases[] = {
        {{.name = "a"}, "inner/driver/a", " inputs\n results\n", true},
        {{.name = "a", .failed_routine = FailedRoutine::export_alone},
         "a",
         " inputs\n results\n",
         true},
        {{.name = "a", .diagnostic_file = DiagnosticFile::opened_after_success},
         "inner/driver/a",
         " results\n",
         false},
        {{.name = "a", .diagnostic_file = DiagnosticFile::none}, "inner/driver/a", "", false},
    };
    for (const Case& c : cases) {
        const test::TemporaryDirectory directory;
        test::EventRecord event;
        EXPECT_EQ(run(c.frame, event, fail), 3);
        EXPECT_EQ(event.routine(), c.routine);
        EXPECT_EQ(directory.holds("a.txt"), c.file_after_failure);
        EXPECT_EQ(run(c.frame, event, succeed), 1);
        EXPECT_EQ(directory.text_of("a.txt"), c.file_success);
    }
}

TEST(AnalysisFrame, FileThatCannotBeOpenedStopsTheAnalysis) {
    const test::TemporaryDirectory directory;
    const std::string nowhere = (directory.path() / "none").string();
    test::set_tmp(nowhere);
    for (const auto path : {FailedRoutine::whole_chain, FailedRoutine::export_alone}) {
        test::EventRecord event;
        bool ran = false;
        EXPECT_EQ(run({.name = "analysis", .failed_routine = path}, event,
                      [&] {
                          ran = true;
                          return success;
                      }),
                  3);
        EXPECT_FALSE(ran);
        EXPECT_EQ(event.summary(), "102 2 io_tmp_file/analysis: error opening a new file - " +
                                       nowhere + "/analysis.txt, iostat =     2");
    }
    test::EventRecord late;
    EXPECT_EQ(run({.name = "late", .diagnostic_file = DiagnosticFile::opened_after_success}, late,
                  succeed),
              3);
    EXPECT_EQ(late.routine(), "io_tmp_file/late");
    test::EventRecord without_file;
    EXPECT_EQ(run({.name = "none", .diagnostic_file = DiagnosticFile::none}, without_file, succeed),
              1);
    EXPECT_TRUE(without_file.untouched());
}

TEST(AnalysisFrame, PathIsTrimmedAndCutAt128Characters) {
    const test::TemporaryDirectory directory;
    test::set_tmp(directory.path().string() + "   ");
    EXPECT_EQ(run({.name = "analysis"}, nullptr, succeed), 1);
    EXPECT_TRUE(directory.holds("analysis.txt"));

    // A directory with a name so long that only "analysi" of the file's is left.
    const std::size_t base = directory.path().string().size();
    ASSERT_LT(base, 100U);
    const std::string long_name(128 - 7 - 2 - base, 'd');
    std::filesystem::create_directory(directory.path() / long_name);
    test::set_tmp((directory.path() / long_name).string());
    EXPECT_EQ(run({.name = "analysis"}, nullptr, succeed), 1);
    EXPECT_TRUE(directory.holds(long_name + "/analysi"));

    test::set_tmp(directory.path().string() + "/" + std::string(200, 'd'));
    EXPECT_EQ(run({.name = "analysis"}, nullptr, succeed), 1);
    EXPECT_TRUE(directory.holds(std::string(128 - 1 - base, 'd')));

    // A blank at the cut: neither the separator nor the name moves into its place.
    test::set_tmp(directory.path().string() + "/" + std::string(128 - 2 - base, 'e') + " f");
    EXPECT_EQ(run({.name = "analysis"}, nullptr, succeed), 1);
    EXPECT_TRUE(directory.holds(std::string(128 - 2 - base, 'e')));

    // The cut path is the directory itself, which is neither written nor removed.
    test::set_tmp((directory.path() / std::string(128 - 1 - base, 'g')).string());
    std::filesystem::create_directory(directory.path() / std::string(128 - 1 - base, 'g'));
    test::EventRecord event;
    EXPECT_EQ(run({.name = "analysis"}, event, succeed), 3);
    EXPECT_EQ(event.error_code(), 102);
    EXPECT_TRUE(std::filesystem::is_directory(directory.path() / std::string(128 - 1 - base, 'g')));
}

TEST(AnalysisFrame, TakesUnits11To99AndFailsWhenAllAreInUse) {
    const test::TemporaryDirectory directory;
    for (std::int32_t unit = 11; unit <= 99; ++unit) {
        ASSERT_EQ(io_tmp_file("unit" + std::to_string(unit)), unit);
    }
    test::EventRecord event;
    EXPECT_EQ(run({.name = "analysis"}, event, succeed), 3);
    EXPECT_EQ(event.summary(), "101 2 io_tmp_file/analysis: error in finding a free file unit");
    close_unit(57);
    EXPECT_EQ(run({.name = "analysis"}, event, succeed), 1);
    EXPECT_EQ(open_file(57), nullptr);
    for (std::int32_t unit = 11; unit <= 99; ++unit) {
        close_unit(unit);
    }
}

TEST(FileUnits, FreeUnitIsTheFirstInTheRangeThatIsNotExcluded) {
    const std::int32_t excluded[] = {11, 12, 14};
    EXPECT_EQ(find_free_unit(), 0);
    EXPECT_EQ(find_free_unit(11, 99, excluded), 13);
    EXPECT_EQ(find_free_unit(12, 12, excluded), -1);
    EXPECT_EQ(find_free_unit(20, 19), -1);
    EXPECT_EQ(find_free_unit(100), -1);
    EXPECT_EQ(find_free_unit(std::numeric_limits<std::int32_t>::min(), -1), -1);
}

TEST(AnalysisFrame, RefusesWhatItCannotServeBeforeTheDriver) {
    const float sample = 0.0F;
    struct Case {
        void (*check)(ArgumentCheck&, const float*);
        std::string description;
    };
    const Case cases[] = {
        {[](ArgumentCheck& c, const float*) { c.array("profile", nullptr, 1); },
         "profile is a null pointer"},
        {[](ArgumentCheck& c, const float*) { c.address("xRideIndex", nullptr); },
         "xRideIndex is a null pointer"},
        {[](ArgumentCheck& c, const float*) { c.sample_interval("xStepSize", 0.0F); },
         "xStepSize is not a positive finite number"},
        {[](ArgumentCheck& c, const float*) { c.sample_interval("xStepSize", std::nanf("")); },
         "xStepSize is not a positive finite number"},
        {[](ArgumentCheck& c, const float*) { c.sample_interval("xStepSize", HUGE_VALF); },
         "xStepSize is not a positive finite number"},
        {[](ArgumentCheck& c, const float*) {
             c.array("first", nullptr, 5);
             c.array("second", nullptr, 5);
         },
         "first is a null pointer"},
        {[](ArgumentCheck& c, const float* s) {
             c.array("empty", nullptr, 0);
             c.array("negative", nullptr, -1);
             c.array("given", s, 1);
             c.sample_interval("xStepSize", 1e-30F);
         },
         ""},
    };
    const test::TemporaryDirectory directory;
    for (const Case& c : cases) {
        test::EventRecord event;
        bool ran = false;
        const ReturnCode code = run_export(
            {.name = "analysis"}, event, [&](ArgumentCheck& check) { c.check(check, &sample); },
            log_inputs,
            [&] {
                ran = true;
                return success;
            },
            log_results);
        EXPECT_EQ(ran, c.description.empty());
        EXPECT_EQ(code, c.description.empty() ? 1 : 3);
        if (!c.description.empty()) {
            EXPECT_EQ(event.summary(), "100 2 analysis: " + c.description);
            EXPECT_EQ(directory.text_of("analysis.txt"), " ***** Error Message ******\n"
                                                         " sub/func name : analysis\n"
                                                         " description   : \n"
                                                         "   " +
                                                             c.description +
                                                             "\n"
                                                             " error code   :  100\n"
                                                             " error type: \n"
                                                             "   recoverable error causing some "
                                                             "failure\n");
        }
    }
}

TEST(AnalysisFrame, MissingMemoryIsAnEventAndNoUnitStaysOpen) {
    const test::TemporaryDirectory directory;
    test::EventRecord event;
    EXPECT_EQ(run({.name = "analysis"}, event, run_out_of_memory), 3);
    EXPECT_EQ(event.summary(), "100 2 analysis: not enough memory for the analysis");
    EXPECT_TRUE(no_unit_is_open());
}

TEST(HostArray, NegativeSizeAndNullPointerAreEmpty) {
    const float samples[2] = {1.0F, 2.0F};
    EXPECT_EQ(host_array(samples, 2).size(), 2U);
    EXPECT_EQ(host_array(samples, -5).size(), 0U);
    EXPECT_EQ(host_array(static_cast<const float*>(nullptr), 2).size(), 0U);
    EXPECT_EQ(element_or_zero(host_array(samples, 2), 1), 2.0F);
    EXPECT_EQ(element_or_zero(host_array(samples, 2), 2), 0.0F);
}

} // namespace
} // namespace vialto
