#include "frame/diagnostic_text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

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

template <class Number>
void DiagnosticText::put_number(Number number) {
    constexpr std::size_t longest = 32; // a blank and a double take 25 characters
    if (capacity - used_ < longest) {
        flush();
    }
    buffer_[used_] = ' ';
    if constexpr (std::is_floating_point_v<Number>) {
        // Without the sign that processors give it at random.
        number = std::isnan(number) ? std::numeric_limits<Number>::quiet_NaN() : number;
    }
    const auto written =
        std::to_chars(buffer_.data() + used_ + 1, buffer_.data() + capacity, number);
    used_ = static_cast<std::size_t>(written.ptr - buffer_.data());
}

void DiagnosticText::put(std::int32_t number) {
    put_number(number);
}

void DiagnosticText::put(float number) {
    put_number(number);
}

void DiagnosticText::put(double number) {
    put_number(number);
}

} // namespace vialto
