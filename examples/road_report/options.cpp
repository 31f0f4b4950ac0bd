#include "options.hpp"

#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "vialto/vialto.h"

namespace {

const std::string usage =
    "usage: road_report PROFILE.csv [--continuous FILE.csv] [--profilograph]\n"
    "                               [--psd FILE.csv] [--must-grind]\n"
    "                               [--joints METHOD --spacing METRES]\n"
    "                               [--compare REFERENCE.csv --max-offset METRES]\n"
    "\n"
    "PROFILE.csv has a header line and the columns distance and elevation,\n"
    "or distance, left and right elevation, all in metres.\n"
    "\n"
    "--continuous writes the moving roughness to FILE.csv.\n"
    "\n"
    "--profilograph gives the profile index of each 100 m and what must be corrected.\n"
    "\n"
    "--psd writes the slope spectrum to FILE.csv.\n"
    "\n"
    "--must-grind gives the stretches to grind, and the IRI before and after that.\n"
    "\n"
    "--joints finds the joints of a concrete pavement and their faults. METHOD is\n"
    "step (1), antismooth (3) or curledge (4); --spacing is the nominal slab length.\n"
    "\n"
    "--compare gives the agreement with a reference profile, as the IRI filter sees both, at\n"
    "offsets up to --max-offset.\n";

[[noreturn]] void refuse(const std::string& problem) {
    throw std::runtime_error(problem + "\n" + usage);
}

std::int32_t joint_method(const std::string& text) {
    if (text == "step" || text == "1") {
        return idx_jntid_stepdetect;
    }
    if (text == "antismooth" || text == "3") {
        return idx_jntid_antismooth;
    }
    if (text == "curledge" || text == "4") {
        return idx_jntid_curledge;
    }
    refuse("unknown joint method " + text);
}

float length(const std::string& text) {
    char* end = nullptr;
    const float metres = std::strtof(text.c_str(), &end);
    if (end == text.c_str() || *end != '\0' || !std::isfinite(metres) || metres <= 0.0F) {
        refuse(text + " is not a length");
    }
    return metres;
}

} // namespace

Options parse_options(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const auto value = [&]() -> std::string {
            if (i + 1 == argc) {
                refuse(argument + " needs a value");
            }
            return argv[++i];
        };
        if (argument == "--continuous") {
            options.continuous = value();
        } else if (argument == "--profilograph") {
            options.profilograph = true;
        } else if (argument == "--psd") {
            options.psd = value();
        } else if (argument == "--must-grind") {
            options.must_grind = true;
        } else if (argument == "--joints") {
            options.joint_method = joint_method(value());
        } else if (argument == "--spacing") {
            options.joint_spacing = length(value());
        } else if (argument == "--compare") {
            options.reference = value();
        } else if (argument == "--max-offset") {
            options.max_offset = length(value());
        } else if (argument.starts_with("-") || !options.profile.empty()) {
            refuse("unknown argument " + argument);
        } else {
            options.profile = argument;
        }
    }
    if (options.profile.empty()) {
        refuse("no profile given");
    }
    if ((options.joint_method != 0) != (options.joint_spacing > 0.0F)) {
        refuse("--joints and --spacing belong together");
    }
    if (options.reference.empty() != !(options.max_offset > 0.0F)) {
        refuse("--compare and --max-offset belong together");
    }
    return options;
}
