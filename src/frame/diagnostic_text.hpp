// Writer of a diagnostic file: records of text and numbers, gathered in one buffer that goes to the
// file in large blocks.
//
// A free-format record starts with one blank; a text item stands as it is, and a number is preceded
// by one blank and written in the shortest form that reads back as the same number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "frame/text_file.hpp"

namespace vialto {

class DiagnosticText {
public:
    // Writes to the file open on `unit`; with none, what is written goes nowhere.
    explicit DiagnosticText(std::int32_t unit);
    ~DiagnosticText();
    DiagnosticText(const DiagnosticText&) = delete;
    DiagnosticText& operator=(const DiagnosticText&) = delete;

    // One free-format record.
    template <class... Items>
    void record(const Items&... items) {
        if (file_ == nullptr) {
            return;
        }
        put(" ");
        (put(items), ...);
        put("\n");
    }

    // One record of the text as it stands.
    void formatted_record(std::string_view text) {
        if (file_ == nullptr) {
            return;
        }
        put(text);
        put("\n");
    }

private:
    void flush();
    void put(std::string_view text);
    void put(std::int32_t number);
    void put(float number);
    void put(double number);
    template <class Number>
    void put_number(Number number);

    static constexpr std::size_t capacity = 16384;

    TextFile* file_;
    std::size_t used_ = 0;
    std::array<char, capacity> buffer_;
};

} // namespace vialto
