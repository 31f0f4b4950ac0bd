#include "frame/diagnostic_headers.hpp"

#include <array>
#include <cstddef>
#include <cstdio>

#include "frame/fixed_text.hpp"
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

void print_columns(DiagnosticText& text, const char* format, std::int32_t first,
                   std::int32_t second, std::int32_t third) {
    std::array<char, 80> line{};
    std::snprintf(line.data(), line.size(), format, static_cast<int>(first),
                  static_cast<int>(second), static_cast<int>(third));
    text.formatted_record(line.data());
}

} // namespace

std::int32_t print_datetime(DiagnosticText& text) {
    const auto [date, time] = current_date_and_time();
    print_columns(text, "Day - Month - Year =     %2d-%2d-%4d", date.day, date.month, date.year);
    print_columns(text, "Hour : Minute : Second = %2d:%2d:%2d", time.hour, time.minute,
                  time.second);
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
