#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <string>
#include <string_view>

#include "frame/diagnostic_headers.hpp"
#include "frame/diagnostic_text.hpp"
#include "frame/file_units.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

std::string text_written_by(const auto& write) {
    const test::TemporaryDirectory directory;
    const std::int32_t unit = io_tmp_file("text.txt");
    write(DiagnosticText(unit));
    close_unit(unit);
    return directory.text_of("text.txt");
}

TEST(DiagnosticText, RecordStartsWithABlankAndSoDoesANumber) {
    const auto write = [](DiagnosticText&& out) {
        out.record("label:", 7);
        out.record(1, 0.025F, -2.5);
        out.record(-std::nanf(""), std::nan(""), -HUGE_VALF);
        out.record();
        out.formatted_record("as it stands");
    };
    EXPECT_EQ(text_written_by(write),
              " label: 7\n  1 0.025 -2.5\n  nan nan -inf\n \nas it stands\n");
}

TEST(DiagnosticText, LongTablesArriveWhole) {
    std::string expected = " " + std::string(40000, 'x') + "\n";
    const std::string text = text_written_by([&](DiagnosticText&& out) {
        out.record(std::string(40000, 'x'));
        for (std::int32_t i = 0; i < 20000; ++i) {
            out.record(i, -1.17549435e-38F, "end");
            expected += "  " + std::to_string(i) + " -1.1754944e-38end\n";
        }
    });
    EXPECT_TRUE(text == expected);
}

TEST(DiagnosticHeaders, DateAndTimeStandInFixedColumns) {
    const auto stamp = [] {
        const std::time_t now = std::time(nullptr);
        char words[80] = {};
        std::strftime(words, sizeof words,
                      "Day - Month - Year =     %d-%m-%Y\nHour : Minute : Second = %H:%M:%S\n",
                      std::localtime(&now));
        std::string blanked = words;
        for (std::size_t i = 1; i < blanked.size(); ++i) {
            const bool leads = std::string_view("-: ").find(words[i - 1]) != std::string_view::npos;
            blanked[i] = leads && words[i] == '0' ? ' ' : words[i];
        }
        return blanked;
    };
    const std::string before = stamp();
    const std::string text =
        text_written_by([](DiagnosticText&& out) { EXPECT_EQ(print_datetime(out), 1); });
    EXPECT_TRUE(text == before || text == stamp()) << text;
}

TEST(DiagnosticHeaders, TitleStandsBetweenTwoRules) {
    for (const std::int32_t style : {0, 1, 2, 3}) {
        const auto write = [=](DiagnosticText&& out) { VtPrintHeader(out, style, "results  "); };
        const std::string rule = " " + std::string(58, "-*=-"[style]) + "  \n";
        EXPECT_EQ(text_written_by(write), " \n" + rule + "           results\n" + rule + " \n");
    }
}

} // namespace
} // namespace vialto
