// A road as measured: one or two wheel tracks at a constant interval.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct Track {
    std::string name;             // left and right, or profile if there is only one
    std::vector<float> elevation; // m
};

struct Road {
    float interval;            // m
    std::vector<Track> tracks; // one or two, of the same length

    [[nodiscard]] std::int32_t samples() const {
        return static_cast<std::int32_t>(tracks.front().elevation.size());
    }
    [[nodiscard]] double length() const { return static_cast<double>(interval) * (samples() - 1); }
};

// Reads a CSV with a header line and two or three columns: distance and elevations, in metres.
// Throws std::runtime_error with the file and the line of what it cannot read.
[[nodiscard]] Road read_road(const std::string& path);
