#include "road.hpp"

#include <charconv>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace {

constexpr double interval_tolerance = 0.01; // of the interval

class CsvError : public std::runtime_error {
public:
    CsvError(const std::string& path, std::size_t line, const std::string& problem)
        : std::runtime_error(path + ":" + std::to_string(line) + ": " + problem) {}
};

// The numbers of a row; `problem` is called with what cannot be read.
template <class Problem>
std::vector<double> parse_row(std::string_view row, const Problem& problem) {
    std::vector<double> numbers;
    while (true) {
        const std::size_t comma = row.find(',');
        std::string_view field = row.substr(0, comma);
        field.remove_prefix(std::min(field.find_first_not_of(" \t"), field.size()));
        field = field.substr(0, field.find_last_not_of(" \t\r") + 1);
        double number = 0.0;
        const auto [end, error] =
            std::from_chars(field.data(), field.data() + field.size(), number);
        if (error != std::errc() || end != field.data() + field.size() || !std::isfinite(number)) {
            throw problem("'" + std::string(field) + "' is not a number");
        }
        numbers.push_back(number);
        if (comma == std::string_view::npos) {
            return numbers;
        }
        row.remove_prefix(comma + 1);
    }
}

std::vector<Track> make_tracks(std::size_t count) {
    if (count == 1) {
        return {{"profile", {}}};
    }
    return {{"left", {}}, {"right", {}}};
}

} // namespace

Road read_road(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error(path + ": cannot be read");
    }
    std::size_t line = 1;
    const auto problem = [&](const std::string& words) { return CsvError(path, line, words); };

    std::string row;
    if (!std::getline(file, row)) {
        throw problem("no header line");
    }
    Road road{};
    std::vector<double> distances;
    while (std::getline(file, row)) {
        ++line;
        if (row.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        const std::vector<double> numbers = parse_row(row, problem);
        if (road.tracks.empty() && (numbers.size() == 2 || numbers.size() == 3)) {
            road.tracks = make_tracks(numbers.size() - 1);
        }
        if (road.tracks.empty() || numbers.size() != road.tracks.size() + 1) {
            throw problem(road.tracks.empty()
                              ? "expected a distance and one or two elevations"
                              : "expected " + std::to_string(road.tracks.size() + 1) + " columns");
        }
        distances.push_back(numbers[0]);
        const std::size_t count = distances.size();
        const double interval = count > 1 ? distances[1] - distances[0] : 1.0;
        if (!(interval > 0.0)) {
            throw problem("distances must ascend");
        }
        const double expected = distances[0] + interval * static_cast<double>(count - 1);
        if (std::fabs(numbers[0] - expected) > interval_tolerance * interval) {
            throw problem("the sample interval is not constant");
        }
        for (std::size_t track = 0; track < road.tracks.size(); ++track) {
            road.tracks[track].elevation.push_back(static_cast<float>(numbers[track + 1]));
        }
    }
    if (distances.size() < 2) {
        throw problem("at least two samples are needed");
    }
    road.interval = static_cast<float>((distances.back() - distances.front()) /
                                       static_cast<double>(distances.size() - 1));
    return road;
}
