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
#include <type_traits>

#include "frame/shortest_digits.hpp"
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
        if constexpr ((std::is_arithmetic_v<Items> && ...)) {
            // The row of a table, of which there are many.
            char* end = room_for(sizeof...(items) * longest_number + 2);
            *end++ = ' ';
            ((end = write(end, items)), ...);
            *end++ = '\n';
            used_ = static_cast<std::size_t>(end - buffer_.data());
        } else {
            put(" ");
            (put(items), ...);
            put("\n");
        }
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
    static constexpr std::size_t capacity = 16384;
    static constexpr std::size_t longest_number = 32; // a blank and a double take 25 characters

    void flush();
    void put(std::string_view text);
    template <class Number>
    requires std::is_arithmetic_v<Number>
    void put(Number number) {
        char* end = write(room_for(longest_number), number);
        used_ = static_cast<std::size_t>(end - buffer_.data());
    }

    // The end of what is gathered, with room for `count` more characters.
    [[nodiscard]] char* room_for(std::size_t count) {
        if (capacity - used_ < count) {
            flush();
        }
        return buffer_.data() + used_;
    }

    // A blank and the number. Returns the place behind it.
    [[nodiscard]] static char* write(char* text, float number) {
        *text = ' ';
        return write_shortest(text + 1, number);
    }
    [[nodiscard]] static char* write(char* text, std::int32_t number);
    [[nodiscard]] static char* write(char* text, double number);

    TextFile* file_;
    std::size_t used_ = 0;
    std::array<char, capacity> buffer_;
};

} // namespace vialto
