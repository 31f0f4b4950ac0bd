// Curves as a table and as a line plot: a CSV and an SVG file. Both throw std::runtime_error if the
// file cannot be written.
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

// One column of x, under the name x_name, and one of y for each curve, under its name with the
// ending y_ending. All curves have the x of the first one.
void write_table(const std::string& path, const std::string& x_name, const std::string& y_ending,
                 const std::vector<Curve>& curves);

// The axes reach from the smallest to the largest value of all curves.
void write_plot(const std::string& path, const std::string& title, const Axis& x, const Axis& y,
                const std::vector<Curve>& curves);
