// Curves as a table in a CSV file.
#pragma once

#include <string>
#include <vector>

struct Curve {
    std::string name;
    std::vector<float> x;
    std::vector<float> y;
};

// One column of x, under the name x_name, and one of y for each curve, under its name with the
// ending y_ending. All curves have the x of the first one. Throws std::runtime_error if the file
// cannot be written.
void write_table(const std::string& path, const std::string& x_name, const std::string& y_ending,
                 const std::vector<Curve>& curves);
