// Writes the sample road: 160 m of two wheel tracks at an interval of 25 mm, as a CSV of distance
// and elevations in metres.
//
//   make_sample_road FILE.csv
//
// The surface is random: white slope held to the plain by a slow leak, which is the spectrum of a
// pavement, with long waves that both tracks share and short ones of their own. The road is built of
// concrete slabs of 5 m, whose joints are faulted by 2 mm (the leave slab lies lower) and open by a
// notch of 6 mm. Named defects lie in it, at the same places on every machine:
//
//    30 m   bump        a raised patch of 12 mm over 3 m, both tracks
//    60 m   pothole     25 mm deep, 0.6 m long, right track only
//    85 m   settlement  a dip of 30 mm over 12 m, both tracks
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <random>
#include <vector>

namespace {

constexpr double interval = 0.025; // m
constexpr int samples = 6400;

using Track = std::vector<double>;

// The same numbers on every platform, from -0.5 to 0.5.
class Noise {
public:
    explicit Noise(std::uint32_t seed) : generator_(seed) {}
    double operator()() { return static_cast<double>(generator_()) / 4294967296.0 - 0.5; }

private:
    std::mt19937 generator_;
};

// Roughness in metres of elevation; `memory` is the length over which the road forgets its height.
Track random_surface(std::uint32_t seed, double scale, double memory) {
    Noise noise(seed);
    Track track(samples);
    double elevation = 0.0;
    for (double& sample : track) {
        elevation = elevation * (1.0 - interval / memory) + scale * noise();
        sample = elevation;
    }
    return track;
}

// A smooth rise or fall of the given height: one arch of a raised cosine.
void add_arch(Track& track, double begin, double length, double height) {
    for (int i = 0; i < samples; ++i) {
        const double along = (i * interval - begin) / length;
        if (along >= 0.0 && along <= 1.0) {
            track[static_cast<std::size_t>(i)] +=
                height * 0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * along));
        }
    }
}

// Every slab tilts back up over its length, so that the road keeps its level.
void add_slabs(Track& track, double length, double fault, double notch) {
    constexpr double half_a_step = interval / 2.0; // keeps the joints on their samples
    for (int i = 0; i < samples; ++i) {
        const double along = i * interval + half_a_step;
        const double on_slab = std::fmod(along, length);
        track[static_cast<std::size_t>(i)] += fault * (on_slab / length - 1.0);
        if (along > length && on_slab < interval) {
            track[static_cast<std::size_t>(i)] -= notch;
        }
    }
}

Track wheel_track(std::uint32_t seed) {
    Track track = random_surface(2026, 0.0006, 25.0);
    const Track own = random_surface(seed, 0.0002, 3.0);
    for (std::size_t i = 0; i < track.size(); ++i) {
        track[i] += own[i];
    }
    add_arch(track, 30.0, 3.0, 0.012);
    add_arch(track, 85.0, 12.0, -0.030);
    add_slabs(track, 5.0, 0.002, 0.006);
    return track;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_sample_road FILE.csv\n");
        return 2;
    }
    const Track left = wheel_track(1);
    Track right = wheel_track(2);
    add_arch(right, 60.0, 0.6, -0.025);

    std::FILE* file = std::fopen(argv[1], "w");
    if (file == nullptr) {
        std::fprintf(stderr, "make_sample_road: %s cannot be written\n", argv[1]);
        return 1;
    }
    std::fprintf(file, "distance_m,left_m,right_m\n");
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::fprintf(file, "%.3f,%.7f,%.7f\n", static_cast<double>(i) * interval, left[i],
                     right[i]);
    }
    return std::fclose(file) == 0 ? 0 : 1;
}
