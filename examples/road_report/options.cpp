#include "options.hpp"

#include <stdexcept>

namespace {

const std::string usage = "usage: road_report PROFILE.csv\n"
                          "\n"
                          "PROFILE.csv has a header line and the columns distance and elevation,\n"
                          "or distance, left and right elevation, all in metres.\n";

} // namespace

Options parse_options(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument.starts_with("-") || !options.profile.empty()) {
            throw std::runtime_error("unknown argument " + argument + "\n" + usage);
        }
        options.profile = argument;
    }
    if (options.profile.empty()) {
        throw std::runtime_error("no profile given\n" + usage);
    }
    return options;
}
