// A line plot as an SVG file.
#pragma once

#include <string>
#include <vector>

struct Axis {
    std::string label;
    bool logarithmic = false; // values at or below 0 are left out
};

struct Curve {
    std::string name;
    std::vector<float> x;
    std::vector<float> y;
};

// The axes reach from the smallest to the largest value of all curves. Throws std::runtime_error if
// the file cannot be written.
void write_plot(const std::string& path, const std::string& title, const Axis& x, const Axis& y,
                const std::vector<Curve>& curves);
