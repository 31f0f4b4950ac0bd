#include "support/literal_grinding.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "grinding/grindsimu.hpp"
#include "ride/ride_drv.hpp"

namespace vialto::test {

namespace {

// An array whose first element is element 1.
template <class Element>
class FromOne {
public:
    explicit FromOne(std::size_t count) : elements_(count + 1) {}
    Element& operator()(int place) { return elements_.at(static_cast<std::size_t>(place)); }
    std::span<Element> all() { return std::span(elements_).subspan(1); }

private:
    std::vector<Element> elements_;
};

struct LiteralSpot {
    int iStatus = 0;
    int iStart = 0;
    int iEnd = 0;
};

int whole(float value) {
    return static_cast<int>(std::lround(value));
}

class Analysis {
public:
    explicit Analysis(const MustGrindRequest& request)
        : request_(request), cfg_(request.cfg), dx_(request.xStepSize),
          nsamp_(static_cast<int>(request.xProfile.size())), flags_(request.xProfile.size()),
          work_(request.xProfile.size()), before_(request.xProfile.size()),
          after_(request.xProfile.size()), spots_(i_maxspots), stretches_(i_maxspots) {}

    LiteralMustGrind run() {
        grind(1, nsamp_, flags_.all());
        if (cfg_.ib_grindopt[0] == 1) {
            tossout();
        }
        if (cfg_.ib_grindopt[1] == 1) {
            merge();
        }
        out_of_spec();
        const auto candidates = static_cast<int>(active_.size());
        if (cfg_.ib_grindopt[2] == 1) {
            evaluate();
        }
        return {{flags_.all().begin(), flags_.all().end()},
                candidates,
                static_cast<int>(active_.size()),
                stretch_count_};
    }

private:
    void grind(int first, int last, std::span<std::int32_t> flags) {
        std::copy(request_.xProfile.begin(), request_.xProfile.end(), work_.all().begin());
        tGrindSpot spot{};
        spot.iNumPasses = 1;
        spot.iDirection[0] = 1;
        spot.iStart = first - 1;
        spot.iEnd = last - 1;
        (void)grindsimu(dx_, {&spot, 1}, request_.setup, work_.all(), flags);
    }

    void statistic(std::span<const float> profile, FromOne<float>& ride) {
        (void)ridecon_drv(cfg_.if250mmFilter, dx_, cfg_.xSlideBaseLength, cfg_.iRideIndexType,
                          profile, ride.all());
    }

    void flag(int first, int last, std::int32_t value) {
        for (int i = first; i <= last; ++i) {
            flags_(i) = value;
        }
    }

    void close(int count, int start, int end, int min_length) {
        spots_(count) = {1, start, end};
        if (end - start < min_length) {
            flag(start, end, 1);
            spots_(count).iStatus = 2;
        }
    }

    void rebuild() {
        active_.clear();
        for (int place = 1; place <= spot_count_; ++place) {
            if (spots_(place).iStatus == 1) {
                active_.push_back(place);
            }
        }
    }

    void tossout() {
        const int min_length = whole(cfg_.x_grindlength_min / dx_);
        bool inside = flags_(1) != 1;
        int count = inside ? 1 : 0;
        int start = count;
        int end = count;
        for (int i = 2; i <= nsamp_; ++i) {
            if (flags_(i) == 1) {
                if (inside && start != 0) {
                    close(count, start, end, min_length);
                }
                inside = false;
            } else if (!inside) {
                ++count;
                start = end = i;
                inside = true;
            } else {
                ++end;
                if (i == nsamp_) {
                    close(count, start, end, min_length);
                }
            }
        }
        spot_count_ = count;
        rebuild();
    }

    void merge() {
        const int min_gap = whole(cfg_.x_grindgap_min / dx_);
        std::size_t p = 0;
        for (std::size_t t = 0; t + 1 < active_.size(); ++t) {
            LiteralSpot& next = spots_(active_[t + 1]);
            LiteralSpot& growing = spots_(active_[p]);
            if (next.iStart - growing.iEnd < min_gap) {
                flag(growing.iEnd + 1, next.iStart - 1, 2);
                growing.iEnd = next.iEnd;
                next.iStatus = 2;
            } else {
                ++p;
            }
        }
        rebuild();
    }

    bool out(int i) { return i <= nsamp_ && 0.0F - (cfg_.xRideThreshold - before_(i)) > 0.0F; }

    void out_of_spec() {
        statistic(request_.xProfile, before_);
        const int trim = cfg_.if250mmFilter == 1 ? whole(0.25F / dx_) : 0;
        const int half = whole(cfg_.xSlideBaseLength * 0.5F / dx_);
        bool inside = out(half + 1);
        int count = inside ? 1 : 0;
        int start = count;
        int end = count;
        for (int i = half + 2; i <= nsamp_ - trim - half; ++i) {
            if (!out(i)) {
                if (inside && start != 0) {
                    stretches_(count) = {1, start, end};
                }
                inside = false;
            } else if (!inside) {
                ++count;
                start = end = i;
                inside = true;
            } else {
                ++end;
                if (i == nsamp_ - trim - half) {
                    stretches_(count) = {1, start, end};
                }
            }
        }
        stretch_count_ = count;
    }

    bool helps(int place_in_whole_list) {
        const int window = whole(50.0F / (dx_ * 3.28F));
        for (int k = 1; k <= stretch_count_; ++k) {
            const LiteralSpot stretch = stretches_(k);
            if (stretch.iStatus == 0 ||
                std::min(stretch.iStart + window, nsamp_) < spots_(place_in_whole_list).iStart) {
                continue;
            }
            for (int j = stretch.iStart; j <= stretch.iEnd; ++j) {
                if (0.0F - (after_(j) - before_(j)) > 1.1920929e-7F) {
                    return true;
                }
            }
        }
        return false;
    }

    void evaluate() {
        for (int t = 1; t <= static_cast<int>(active_.size()); ++t) {
            LiteralSpot& spot = spots_(active_[static_cast<std::size_t>(t - 1)]);
            grind(spot.iStart, spot.iEnd, {});
            statistic(work_.all(), after_);
            if (!helps(t)) {
                spot.iStatus = 2;
                flag(spot.iStart, spot.iEnd, 1);
            }
        }
        rebuild();
    }

    const MustGrindRequest& request_;
    const tMustGrindCfg& cfg_;
    float dx_;
    int nsamp_;
    FromOne<std::int32_t> flags_;
    FromOne<float> work_;
    FromOne<float> before_;
    FromOne<float> after_;
    FromOne<LiteralSpot> spots_;
    FromOne<LiteralSpot> stretches_;
    std::vector<int> active_;
    int spot_count_ = 0;
    int stretch_count_ = 0;
};

} // namespace

LiteralMustGrind literal_mustgrind(const MustGrindRequest& request) {
    return Analysis(request).run();
}

} // namespace vialto::test
