#include "frame/diagnostic_text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "frame/file_units.hpp"

namespace vialto {

DiagnosticText::DiagnosticText(std::int32_t unit) : file_(open_file(unit)) {}

DiagnosticText::~DiagnosticText() {
    if (file_ != nullptr) {
        flush();
    }
}

void DiagnosticText::flush() {
    write_text(*file_, {buffer_.data(), used_});
    used_ = 0;
}

void DiagnosticText::put(std::string_view text) {
    while (!text.empty()) {
        if (used_ == capacity) {
            flush();
        }
        const std::size_t count = std::min(text.size(), capacity - used_);
        std::copy_n(text.data(), count, buffer_.data() + used_);
        used_ += count;
        text.remove_prefix(count);
    }
}

char* DiagnosticText::write(char* text, std::int32_t number) {
    *text = ' ';
    return std::to_chars(text + 1, text + longest_number, number).ptr;
}

char* DiagnosticText::write(char* text, double number) {
    *text = ' ';
    // Without the sign that processors give a NaN at random.
    number = std::isnan(number) ? std::numeric_limits<double>::quiet_NaN() : number;
    return std::to_chars(text + 1, text + longest_number, number).ptr;
}

} // namespace vialto
