// Text of a fixed length, blank-padded, as the host's records have it. What does not fit is cut
// off.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace vialto {

[[nodiscard]] constexpr std::string_view trim_trailing_blanks(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

template <std::size_t Length>
class FixedText {
public:
    constexpr FixedText() { chars_.fill(' '); }

    constexpr void clear() { chars_.fill(' '); }

    constexpr void assign(std::string_view text) {
        const std::size_t end = write(0, text);
        std::fill(chars_.data() + end, chars_.data() + Length, ' ');
    }

    // Continues behind the last character that is not a blank.
    constexpr void append(std::string_view text) { write(trimmed().size(), text); }

    // Writes at `position` and returns the position behind what was written.
    constexpr std::size_t write(std::size_t position, std::string_view text) {
        text = text.substr(0, Length - position);
        std::copy(text.begin(), text.end(), chars_.data() + position);
        return position + text.size();
    }

    [[nodiscard]] constexpr std::string_view trimmed() const {
        return trim_trailing_blanks({chars_.data(), Length});
    }

    constexpr void copy_to(char (&target)[Length]) const {
        std::copy(chars_.begin(), chars_.end(), target);
    }

    [[nodiscard]] bool operator==(const FixedText&) const = default;

private:
    std::array<char, Length> chars_{};
};

} // namespace vialto
