#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "frame/diagnostic_headers.hpp"
#include "frame/diagnostic_text.hpp"
#include "frame/event.hpp"
#include "frame/file_units.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

// What `write` leaves in a diagnostic file.
template <class Write>
std::string text_written_by(const Write& write) {
    const test::TemporaryDirectory directory;
    const std::int32_t unit = io_tmp_file("text.txt");
    write(unit);
    close_unit(unit);
    return directory.text_of("text.txt");
}

TEST(DiagnosticText, RecordStartsWithABlankAndSoDoesANumber) {
    const std::string text = text_written_by([](std::int32_t unit) {
        DiagnosticText out(unit);
        out.record("label:", 7);
        out.record(1, 0.025F, -2.5);
        out.record(-std::nanf(""), std::nan(""), -HUGE_VALF);
        out.record();
        out.formatted_record("as it stands");
    });
    EXPECT_EQ(text, " label: 7\n  1 0.025 -2.5\n  nan nan -inf\n \nas it stands\n");
}

TEST(DiagnosticText, LongTablesArriveWhole) {
    std::string expected;
    const std::string text = text_written_by([&](std::int32_t unit) {
        DiagnosticText out(unit);
        for (std::int32_t i = 0; i < 20000; ++i) {
            out.record(i, -1.17549435e-38F, "end");
            expected += "  " + std::to_string(i) + " -1.1754944e-38end\n";
        }
        const std::string long_text(40000, 'x');
        out.record(long_text);
        expected += " " + long_text + "\n";
    });
    EXPECT_TRUE(text == expected);
}

TEST(PrintEvent, WritesSevenRecordsAndNothingWithoutAFile) {
    const std::string text = text_written_by([](std::int32_t unit) {
        raise_event("what went wrong", "inner/outer", 101, fatal);
        print_event(unit);
        print_event(unit + 1);
        print_event(3);
        print_event(-1);
        print_event(100);
        reset_event();
    });
    EXPECT_EQ(text, " ***** Error Message ******\n"
                    " sub/func name : inner/outer\n"
                    " description   : \n"
                    "   what went wrong\n"
                    " error code   :  101\n"
                    " error type: \n"
                    "   fatal error\n");
}

TEST(DiagnosticHeaders, DateAndTimeStandInFixedColumns) {
    const std::string text = text_written_by([](std::int32_t unit) {
        DiagnosticText out(unit);
        EXPECT_EQ(print_datetime(out), 1);
    });
    int day = 0;
    int month = 0;
    int hour = -1;
    int second = -1;
    ASSERT_EQ(std::sscanf(text.c_str(), // NOLINT: the columns are what is tested
                          "Day - Month - Year =     %2d-%2d-%*4d\n"
                          "Hour : Minute : Second = %2d:%*2d:%2d\n",
                          &day, &month, &hour, &second),
              4)
        << text;
    EXPECT_EQ(text.size(), std::string("Day - Month - Year =     dd-mm-yyyy\n"
                                       "Hour : Minute : Second = hh:mm:ss\n")
                               .size());
    EXPECT_TRUE(day >= 1 && day <= 31 && month >= 1 && month <= 12 && hour >= 0 && second >= 0);
}

TEST(DiagnosticHeaders, TitleStandsBetweenTwoRules) {
    for (const auto& [style, mark] : {std::pair{1, '*'}, {2, '='}, {3, '-'}, {0, '-'}}) {
        const std::string text = text_written_by([style = style](std::int32_t unit) {
            DiagnosticText out(unit);
            VtPrintHeader(out, style, "cc_sweep loop   ");
        });
        const std::string rule = " " + std::string(58, mark) + "  \n";
        EXPECT_EQ(text, " \n" + rule + "           cc_sweep loop\n" + rule + " \n");
    }
}

} // namespace
} // namespace vialto
