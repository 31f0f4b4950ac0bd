// What calls of the library give, in 64 bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <string>

#include "fuzz/fuzzed_host.hpp"
#include "fuzz/rationed_memory.hpp"

namespace vialto::test {

// FNV-1a.
class Digest {
public:
    void add(std::span<const std::byte> bytes) {
        for (const std::byte byte : bytes) {
            value_ = (value_ ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3U;
        }
    }
    // The lines of a diagnostic file, but for those that tell the time.
    void add_file(const std::string& text) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with("Day - Month") && !line.starts_with("Hour : Minute")) {
                add(std::as_bytes(std::span(line)));
            }
        }
    }
    [[nodiscard]] std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325U;
};

// Digests the returned codes, and all that a host shows of its calls.
class DigestingCaller : public fuzz::Caller {
public:
    std::int32_t call(const fuzz::Function& function, tEvent* event) override {
        fuzz::ration = {.holds = true, .allocations = -1};
        const std::int32_t result = function(event);
        fuzz::ration = {};
        digest.add(std::as_bytes(std::span(&result, 1)));
        return result;
    }
    void see(std::span<const std::byte> output) override { digest.add(output); }

    Digest digest;
};

} // namespace vialto::test
