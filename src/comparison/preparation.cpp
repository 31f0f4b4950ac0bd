#include "comparison/preparation.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "filters/filtcon.hpp"
#include "numeric/rounding.hpp"
#include "numeric/units.hpp"

namespace vialto {

namespace {

constexpr std::string_view name = "prefiltering";

constexpr float same_interval = std::numeric_limits<float>::epsilon(); // m; 1.1920929e-7

constexpr float largest_remainder = 0.02F; // of a quotient that counts as whole
constexpr float smallest_step = 1.0F;      // mm
constexpr float fallback_step = 5.08F;     // mm

// Filters a padded copy.
ReturnCode filter_padded(std::span<const float> profile, float interval, tFiltCon& settings,
                         std::span<float> xDataArrayPadFilt) {
    std::vector<float> padded(xDataArrayPadFilt.size());
    if (profpad(profile, padded) != success) {
        return failure;
    }
    return filtcon_drv(padded, interval, settings, xDataArrayPadFilt);
}

// Takes the middle third of the filtered copy back. `end` is the last filtered element of the copy,
// and is brought into the frame of the unpadded profile, both counted from 0: a filter that loses
// no point leaves it at n - 2, one less than the last: deliberate.
ReturnCode take_middle(std::span<const float> xDataArrayPadFilt, std::span<float> filtered,
                       std::int64_t& end) {
    const std::int64_t n = std::ssize(filtered);
    const std::int64_t iSizePad = 3 * n - 2;
    end = end - iSizePad + n - 1;
    if (iSizePad < n + end) {
        return raise_failure("xDataArrayPadFilt size exceeded", name);
    }
    if (end >= n) {
        return raise_failure("xDataArrayRefFiltlc size exceeded", name);
    }
    if (end >= 0) {
        const auto middle = xDataArrayPadFilt.subspan(static_cast<std::size_t>(n - 1),
                                                      static_cast<std::size_t>(end + 1));
        std::copy(middle.begin(), middle.end(), filtered.begin());
    }
    return success;
}

// Moves the section of interest to the beginning and clears what lies behind the section; what lies
// between stays as it is. Returns the number of points in the section. Here, and only here, the
// section is counted from 1, and is compared with a filtered end that is counted from 0, so that
// the last filtered point can be lost: deliberate.
std::int64_t trim_to_section(std::span<float> filtered, const tProfinfo& info, std::int64_t end) {
    const std::int64_t i_leadin = std::int64_t{info.i_raw_leadin} + 1;
    const std::int64_t i_leadout = std::int64_t{info.i_raw_leadout} + 1;
    const std::int64_t i_endact = std::min(i_leadout, end);
    std::int64_t count = 0;
    if (i_endact >= i_leadin) {
        count = i_endact - i_leadin + 1;
        const std::span<float> kept = filtered.first(static_cast<std::size_t>(i_endact));
        std::shift_left(kept.begin(), kept.end(), static_cast<std::ptrdiff_t>(i_leadin - 1));
    }
    const std::span<float> behind =
        filtered.subspan(static_cast<std::size_t>(std::max(i_leadout, std::int64_t{0})));
    std::fill(behind.begin(), behind.end(), 0.0F);
    return count;
}

std::int64_t resamp_size(std::int64_t count, float interval, float step) {
    const auto last = static_cast<float>(count - 1);
    return std::int64_t{truncate(last * interval / step)} + 1;
}

void resamp(std::span<const float> profile, float interval, float step,
            std::span<float> resampled) {
    const float last = profile.empty() ? 0.0F : profile.back();
    for (std::size_t i = 0; i < resampled.size(); ++i) {
        const float pos = static_cast<float>(i) * step;
        const std::int32_t j = truncate(pos / interval);
        const auto place = static_cast<std::size_t>(j);
        if (place + 1 < profile.size()) {
            const float a = profile[place];
            const float b = profile[place + 1];
            resampled[i] = a + (pos - static_cast<float>(j) * interval) * (b - a) / interval;
        } else {
            resampled[i] = last;
        }
    }
}

} // namespace

std::size_t padded_size(std::size_t n) {
    return n == 0 ? 0 : 3 * n - 2;
}

ReturnCode profpad(std::span<const float> profile, std::span<float> padded) {
    const std::size_t n = profile.size();
    if (padded.size() != padded_size(n)) {
        return raise_failure("Padded array should be (3 times - 2) of the org array", "profpad");
    }
    if (n == 0) {
        return success;
    }
    const float first = profile.front();
    const float last = profile.back();
    float* const middle = padded.data() + (n - 1);
    float* const behind = middle + n;
    std::copy(profile.begin(), profile.end(), middle);
    for (std::size_t k = 1; k < n; ++k) {
        padded[n - 1 - k] = 2.0F * first - profile[k];
        behind[k - 1] = 2.0F * last - profile[n - 1 - k];
    }
    return success;
}

ReturnCode prefiltering(std::span<const float> profile, std::int32_t if_padding, tProfinfo& info,
                        std::vector<float>& filtered) {
    filtered.assign(profile.size(), 0.0F);
    tFiltCon settings = info.tFilter;
    const bool pads = if_padding != filter_unpadded;
    std::vector<float> xDataArrayPadFilt(pads ? padded_size(profile.size()) : 0);
    const ReturnCode code =
        pads ? filter_padded(profile, info.x_sampleinterval, settings, xDataArrayPadFilt)
             : filtcon_drv(profile, info.x_sampleinterval, settings, filtered);
    if (code != success) {
        return pass_failure(name);
    }
    std::int64_t end = settings.iEndElemIdx;
    if (pads && take_middle(xDataArrayPadFilt, filtered, end) != success) {
        return failure;
    }
    const std::int64_t count = trim_to_section(filtered, info, end);
    info.i_filt_leadin = 0;
    info.i_filt_leadout = static_cast<std::int32_t>(count - 1);
    return success;
}

float upsamp_step(float first_interval, float second_interval) {
    const float a = mm_per_m * first_interval;
    const float b = mm_per_m * second_interval;
    const float lo = std::min(a, b);
    const float hi = std::max(a, b);
    // With an infinite quotient no remainder is ever found, and with a finite one of 2^23 or more
    // it is 0: the search ends for every pair of intervals.
    float candidate = std::isfinite(hi) ? lo : 0.0F;
    for (std::int32_t k = 1; candidate >= smallest_step;) {
        const float quotient = hi / candidate;
        if (std::fabs(quotient - std::trunc(quotient)) < largest_remainder) {
            break;
        }
        ++k;
        candidate = lo / static_cast<float>(k);
    }
    return m_per_mm * (candidate > smallest_step ? candidate : fallback_step);
}

float comparison_step(std::int32_t if_upsampling, const tProfinfo& reference,
                      const tProfinfo& test) {
    return if_upsampling == step_of_reference
               ? reference.x_sampleinterval
               : upsamp_step(reference.x_sampleinterval, test.x_sampleinterval);
}

ReturnCode resampling(std::span<const float> profile, float interval, float step,
                      std::vector<float>& room, PreparedProfile& resampled) {
    if (std::fabs(interval - step) < same_interval) {
        resampled = {profile};
        return success;
    }
    const std::int64_t count = resamp_size(std::ssize(profile), interval, step);
    if (count > std::numeric_limits<std::int32_t>::max()) {
        return raise_failure("the resampled profile is too long", "resampling",
                             vialto_code_request);
    }
    room.resize(static_cast<std::size_t>(std::max(count, std::int64_t{0})));
    resamp(profile, interval, step, room);
    resampled = {room, count};
    return success;
}

} // namespace vialto
