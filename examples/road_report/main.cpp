// road_report: what a road engineer expects of a measured profile, on one page.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "options.hpp"
#include "report.hpp"
#include "road.hpp"

namespace {

// The library writes its diagnostic files to the directory that TMP names.
void give_tmp_a_place() {
    if (std::getenv("TMP") != nullptr) {
        return;
    }
    const std::string directory = std::filesystem::temp_directory_path().string();
#if defined(_WIN32)
    _putenv_s("TMP", directory.c_str());
#else
    setenv("TMP", directory.c_str(), 1);
#endif
}

} // namespace

int main(int argc, char** argv) {
    try {
        give_tmp_a_place();
        const Options options = parse_options(argc, argv);
        const Road road = read_road(options.profile);
        report_road(options, road);
        report_ride(road);
        report_moving_roughness(options, road);
        report_profilograph(options, road);
        report_spectrum(options, road);
        report_must_grind(options, road);
        report_joints(options, road);
        report_comparison(options, road);
        return 0;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "road_report: %s\n", problem.what());
        return 1;
    }
}
