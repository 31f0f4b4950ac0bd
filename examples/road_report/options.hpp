// What the user asks for on the command line.
#pragma once

#include <string>

struct Options {
    std::string profile; // path of the CSV
};

// Throws std::runtime_error for what it does not know; its text ends with the usage.
[[nodiscard]] Options parse_options(int argc, char** argv);
