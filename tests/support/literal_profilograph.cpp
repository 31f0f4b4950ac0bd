#include "support/literal_profilograph.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vialto::test {

std::vector<float> literal_trace(float interval, std::span<const float> offsets,
                                 std::span<const float> profile, float elsewhere) {
    const auto nsamp = static_cast<int>(profile.size());
    const auto y = [&](int i) { return profile[static_cast<std::size_t>(i - 1)]; };
    std::vector<float> trace(profile.size(), elsewhere);
    const auto pairs = static_cast<float>(offsets.size());
    for (int j = 1; j <= nsamp; ++j) {
        float s = 0.0F;
        bool on_stretch = true;
        for (const float offset : offsets) {
            const float q = offset / interval;
            const float r = std::round(q);
            const bool on_sample = std::fabs(q - r) <= 1e-5F;
            const int k = static_cast<int>(on_sample ? r : std::trunc(q) + 1.0F) + 1;
            const float f = q - std::trunc(q);
            if (j - k + 1 < 1 || j + k - 1 > nsamp) {
                on_stretch = false;
            } else if (on_sample) {
                s += y(j - k + 1);
                s += y(j + k - 1);
            } else {
                s += f * y(j - k + 1) + (1.0F - f) * y(j - k + 2);
                s += f * y(j + k - 1) + (1.0F - f) * y(j + k - 2);
            }
        }
        if (on_stretch) {
            trace[static_cast<std::size_t>(j - 1)] = y(j) - s * (1.0F / (pairs + pairs));
        }
    }
    return trace;
}

LotScallops literal_scallops(std::span<const float> lot, float interval, float x0,
                             const ScallopRules& rules) {
    constexpr float eps = 1.1920929e-7F;
    const auto n = static_cast<int>(lot.size());
    const float bu = rules.BlankingBand * 0.5F;
    const float bl = 0.0F - bu;
    const float inv = 1.0F / interval;
    const auto y = [&](int i) { return lot[static_cast<std::size_t>(i - 1)]; };
    const auto at = [&](int i) { return static_cast<float>(i) * interval; };
    const auto largest = [&](int s, int e) {
        return *std::max_element(lot.begin() + s - 1, lot.begin() + e);
    };
    const auto smallest = [&](int s, int e) {
        return *std::min_element(lot.begin() + s - 1, lot.begin() + e);
    };
    const auto by_rules = [&](float h) {
        if (rules.MinScallopHeight > h) {
            return 0.0F;
        }
        return rules.ScallopRound > 0.0F
                   ? std::trunc(h / rules.ScallopRound + 0.5F) * rules.ScallopRound
                   : h;
    };

    LotScallops found;
    const auto keep = [&](std::int32_t type, int s, int e, float h, float begin, float end) {
        found.xSumRaw += h;
        const float height = by_rules(h);
        if (height > eps) {
            found.xSumRnd += height;
            found.scallops.push_back({type, begin, end, s, e - 1, height});
        }
    };
    int up_start = n + 1, up_end = 0, dn_start = n + 1, dn_end = 0;
    for (int i = 2; i <= n; ++i) {
        const float a = y(i);
        const float p = y(i - 1);
        if (a > bu && bu >= p)
            up_start = i;
        if (bu >= a && p > bu)
            up_end = i;
        if (bl > a && p >= bl)
            dn_start = i;
        if (a >= bl && bl > p)
            dn_end = i;
        if (up_start < up_end) {
            const int s = up_start, e = up_end;
            if (at(e - s) >= rules.MinScallopWidth) {
                keep(1, s, e, largest(s, e) - bu,
                     at(s - 1) + x0 + (bu - y(s - 1)) / (std::fabs(y(s) - y(s - 1)) * inv),
                     at(e) + x0 - (bu - y(e)) / (std::fabs(y(e - 1) - y(e)) * inv));
            }
            up_start = n + 1;
        }
        if (dn_start < dn_end) {
            const int s = dn_start, e = dn_end;
            if (at(e - s) >= rules.MinScallopWidth) {
                keep(2, s, e, 0.0F - (smallest(s, e) + bu),
                     at(s) + x0 + (bu + y(s)) / (std::fabs(y(s - 1) - y(s)) * inv),
                     at(e) + x0 - (bu + y(e)) / (std::fabs(y(e) - y(e - 1)) * inv));
            }
            dn_start = n + 1;
        }
    }

    const bool any = !found.scallops.empty();
    const int limit = any ? found.scallops.front().iStart - 1 : n;
    const int first = any ? found.scallops.back().iEnd + 1 : 1;
    const float narrowest = 0.33F * rules.MinScallopWidth;
    const auto fill = [&](PartialScallop& edge, std::int32_t type, float h, int s, int e,
                          float begin, float end) {
        edge.xRawHt = h;
        edge.xRndHt = by_rules(h);
        if (edge.xRndHt > eps) {
            edge = {type, s, e, begin, end, edge.xRawHt, edge.xRndHt};
        }
    };
    if (y(1) > bu) {
        int j = 2;
        while (j <= limit && !(bu > y(j)))
            ++j;
        const int m = j - 1;
        if (!(at(j - 2) < narrowest)) {
            const float end =
                m == 1 ? at(m) : at(m) - (bu - y(m)) / (std::fabs(y(m - 1) - y(m)) * inv);
            fill(found.edges.start, 1, largest(1, m) - bu, 1, j - 2, x0, end + x0);
        }
    }
    if (bl > y(1)) {
        int j = 2;
        while (j <= limit && !(y(j) > bl))
            ++j;
        const int m = j - 1;
        if (!(at(j - 2) < narrowest)) {
            const float end =
                m == 1 ? at(m) : at(m) - (bu + y(m)) / (std::fabs(y(m) - y(m - 1)) * inv);
            fill(found.edges.start, 2, 0.0F - (smallest(1, m) + bu), 1, j - 2, interval + x0,
                 end + x0);
        }
    }
    if (y(n) > bu) {
        int p = n - 1;
        while (n > first && p >= first && !(bu > y(p)))
            --p;
        if (!(at(n - p - 1) < narrowest)) {
            const float begin =
                p == 0 ? at(p) : at(p) + (bu - y(p)) / (std::fabs(y(p + 1) - y(p)) * inv);
            fill(found.edges.end, 1, largest(p + 1, n) - bu, p + 1, n, begin + x0, at(n) + x0);
        }
    }
    if (bl > y(n)) {
        int p = n - 1;
        while (n > first && p >= first && !(y(p) > bl))
            --p;
        if (!(at(n - p - 1) < narrowest)) {
            const float begin =
                p == 0 ? at(p + 1)
                       : at(p + 1) + (bu + y(p + 1)) / (std::fabs(y(p) - y(p + 1)) * inv);
            fill(found.edges.end, 2, 0.0F - (smallest(p + 1, n) + bu), p + 1, n, begin + x0,
                 at(n) + x0);
        }
    }
    return found;
}

} // namespace vialto::test
