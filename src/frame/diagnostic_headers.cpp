#include "frame/diagnostic_headers.hpp"

#include <array>
#include <cstddef>
#include <cstdio>

#include "frame/fixed_text.hpp"
#include "frame/process_lock.hpp"
#include "numeric/clock.hpp"

namespace vialto {

namespace {

constexpr std::size_t rule_width = 60; // the last two columns are blank

using Rule = std::array<char, rule_width>;

Rule rule_line(std::int32_t iStyle) {
    Rule rule;
    rule.fill(iStyle == 1 ? '*' : iStyle == 2 ? '=' : '-');
    rule[rule_width - 2] = ' ';
    rule[rule_width - 1] = ' ';
    return rule;
}

// Two columns, two columns, and `width` columns, with a mark between them.
void print_columns(DiagnosticText& text, const char* label, std::int32_t first, char mark,
                   std::int32_t second, std::int32_t third, int width) {
    std::array<char, 80> line{};
    std::snprintf(line.data(), line.size(), "%s%2d%c%2d%c%*d", label, static_cast<int>(first), mark,
                  static_cast<int>(second), mark, width, static_cast<int>(third));
    text.formatted_record(line.data());
}

// A process that is forked while a thread asks the platform for the local time could never ask
// again.
DateAndTime locked_date_and_time() {
    const ProcessLock lock;
    return current_date_and_time();
}

} // namespace

std::int32_t print_datetime(DiagnosticText& text) {
    const auto [date, time] = locked_date_and_time();
    print_columns(text, "Day - Month - Year =     ", date.day, '-', date.month, date.year, 4);
    print_columns(text, "Hour : Minute : Second = ", time.hour, ':', time.minute, time.second, 2);
    return 1;
}

void VtPrintHeader(DiagnosticText& text, std::int32_t iStyle, std::string_view title) {
    const Rule rule = rule_line(iStyle);
    const std::string_view rule_text(rule.data(), rule.size());
    text.record();
    text.record(rule_text);
    text.record("          ", trim_trailing_blanks(title));
    text.record(rule_text);
    text.record();
}

} // namespace vialto
