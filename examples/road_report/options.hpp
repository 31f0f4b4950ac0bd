// What the user asks for on the command line.
#pragma once

#include <cstdint>
#include <string>

struct Options {
    std::string profile;    // path of the CSV
    std::string continuous; // path of the table of the moving roughness; empty leaves it out
    bool profilograph = false;
    std::string psd; // path of the table of the spectrum; empty leaves it out
    bool must_grind = false;
    std::int32_t joint_method = 0; // idx_jntid_...; 0 leaves the joints out
    float joint_spacing = 0.0F;    // m; nominal length of the slabs
    std::string reference;         // path of the profile to compare with; empty leaves it out
    float max_offset = 0.0F;       // m; largest offset between the two
};

// Throws std::runtime_error for what it does not know; its text ends with the usage.
[[nodiscard]] Options parse_options(int argc, char** argv);
