// Fixed lines at the head of a diagnostic file and of its blocks.
#pragma once

#include <cstdint>
#include <string_view>

#include "frame/diagnostic_text.hpp"

namespace vialto {

// The day and the time of day, one record each. Returns 1.
std::int32_t print_datetime(DiagnosticText& text);

// A title between two rule lines: iStyle 1 draws them with "*", 2 with "=", and 3 with "-", as does
// any other value.
void VtPrintHeader(DiagnosticText& text, std::int32_t iStyle, std::string_view title);

} // namespace vialto
