#include "library/corpus.hpp"

#include <cstddef>
#include <limits>

#include "support/roads.hpp"

namespace vialto::test {

namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float interval = 0.025F; // m
constexpr std::int32_t count = 3000;
constexpr float mark = -777.0F; // in every output array before the call

Floats road(std::uint32_t seed) {
    return random_road(static_cast<std::size_t>(count), static_cast<double>(interval), seed);
}

// A bumpy road with steps every 5 m, as of faulted slabs.
Floats slabs(std::uint32_t seed) {
    Floats profile = road(seed);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        const bool notch = i % 200 == 0 && i > 0;
        profile[i] += static_cast<float>(i % 200) * 2e-5F - (notch ? 0.006F : 0.0F);
    }
    return profile;
}

Floats with_a_nan(Floats profile) {
    profile[profile.size() / 2] = nan;
    return profile;
}

Floats room() {
    return Floats(static_cast<std::size_t>(count), mark);
}

Integers every_seventh_flag() {
    Integers flags(static_cast<std::size_t>(count), 0);
    for (std::size_t i = 0; i < flags.size(); i += 7) {
        flags[i] = 1;
    }
    return flags;
}

void add_ride(std::vector<Request>& requests) {
    for (const std::int32_t selector : {1, 2, 3, 4, 9}) {
        for (const std::int32_t exclude : {1, 2}) {
            requests.push_back({"ride_dlldrv", [=](Host& host) {
                                    const Floats profile = road(1);
                                    const Integers flags = every_seventh_flag();
                                    float index = mark;
                                    host.call([&](tEvent* event) {
                                        return ride_dlldrv(exclude, 1, selector, count,
                                                           profile.data(), flags.data(), interval,
                                                           &index, event);
                                    });
                                    host.output(index);
                                }});
        }
        for (const float base : {0.0F, 3.0F, 1000.0F}) {
            requests.push_back({"ridecon_dlldrv", [=](Host& host) {
                                    const Floats profile = road(2);
                                    Floats output = room();
                                    host.call([&](tEvent* event) {
                                        return ridecon_dlldrv(1, interval, base, selector, count,
                                                              profile.data(), output.data(), event);
                                    });
                                    host.outputs(output);
                                }});
        }
        for (const std::int32_t last : {500, 5000}) {
            requests.push_back({"rideseg_dlldrv", [=](Host& host) {
                                    const Floats profile = road(3);
                                    const Integers points{1000, 0, last, 7};
                                    Floats index(4, mark);
                                    Floats length(4, mark);
                                    host.call([&](tEvent* event) {
                                        return rideseg_dlldrv(1, selector, count, profile.data(),
                                                              interval, 4, points.data(),
                                                              index.data(), length.data(), event);
                                    });
                                    host.outputs(index);
                                    host.outputs(length);
                                }});
        }
    }
    for (const std::int32_t bridge : {1, 2}) {
        requests.push_back({"wimindex_dlldrv", [=](Host& host) {
                                const Floats profile = road(4);
                                Floats output = room();
                                host.call([&](tEvent* event) {
                                    return wimindex_dlldrv(bridge, interval, 5.0F, count,
                                                           profile.data(), output.data(), event);
                                });
                                host.outputs(output);
                            }});
    }
}

void add_two_track_ride(std::vector<Request>& requests) {
    for (const std::int32_t selector : {1, 4, 5, 6}) {
        requests.push_back({"ride2chan_dlldrv", [=](Host& host) {
                                const Floats left = road(5);
                                const Floats right = road(6);
                                const Integers flags = every_seventh_flag();
                                float index = mark;
                                host.call([&](tEvent* event) {
                                    return ride2chan_dlldrv(1, 1, selector, count, left.data(),
                                                            right.data(), flags.data(), interval,
                                                            &index, event);
                                });
                                host.output(index);
                            }});
        requests.push_back({"rideseg2chan_dlldrv", [=](Host& host) {
                                const Floats left = road(5);
                                const Floats right = selector == 5 ? with_a_nan(road(6)) : road(6);
                                const Integers points{900, 0, 1200, 5};
                                Floats index(4, mark);
                                Floats length(4, mark);
                                host.call([&](tEvent* event) {
                                    return rideseg2chan_dlldrv(
                                        1, selector, count, left.data(), right.data(), interval, 4,
                                        points.data(), index.data(), length.data(), event);
                                });
                                host.outputs(index);
                                host.outputs(length);
                            }});
        requests.push_back({"ridecon2chan_dlldrv", [=](Host& host) {
                                const Floats left = road(5);
                                const Floats right = road(6);
                                Floats output = room();
                                host.call([&](tEvent* event) {
                                    return ridecon2chan_dlldrv(1, selector, count, left.data(),
                                                               right.data(), interval, 2.5F,
                                                               output.data(), event);
                                });
                                host.outputs(output);
                            }});
    }
}

void add_spectra(std::vector<Request>& requests) {
    for (const std::int32_t type : {1, 2, 3}) {
        for (const std::int32_t grid : {1, 2, 3}) {
            requests.push_back({"psd_dll", [=](Host& host) {
                                    const Floats profile = road(7);
                                    Floats frequency = room();
                                    Floats density = room();
                                    std::int32_t first = -7;
                                    std::int32_t last = -7;
                                    host.call([&](tEvent* event) {
                                        return psd_dll(100, count - 101, type, grid, 12, 0.01F,
                                                       count - 200, interval, profile.data(),
                                                       frequency.data(), density.data(), &first,
                                                       &last, event);
                                    });
                                    host.outputs(frequency);
                                    host.outputs(density);
                                    host.output(first);
                                    host.output(last);
                                }});
        }
    }
    for (const float length : {3.0F, 3.11F, 500.0F}) {
        requests.push_back({"rse_dlldrv", [=](Host& host) {
                                const Floats profile = road(8);
                                Floats deflection = room();
                                float acceleration = mark;
                                std::int32_t first = -7;
                                std::int32_t last = -7;
                                host.call([&](tEvent* event) {
                                    return rse_dlldrv(count, interval, length, profile.data(),
                                                      deflection.data(), &acceleration, &first,
                                                      &last, event);
                                });
                                host.outputs(deflection);
                                host.output(acceleration);
                                host.output(first);
                                host.output(last);
                            }});
    }
}

Floats in_millimetres(Floats profile) {
    for (float& sample : profile) {
        sample *= 1000.0F;
    }
    return profile;
}

void add_profilograph(std::vector<Request>& requests) {
    for (const float reach : {3.81F, 100.0F}) {
        requests.push_back({"pgfilt_dll", [=](Host& host) {
                                const Floats profile = road(9);
                                const Floats wheels{1.2F, 2.0F, reach};
                                Floats trace = room();
                                std::int32_t first = -7;
                                std::int32_t last = -7;
                                host.call([&](tEvent* event) {
                                    return pgfilt_dll(10, count - 10, interval, 3, count,
                                                      wheels.data(), profile.data(), trace.data(),
                                                      &first, &last, event);
                                });
                                host.outputs(trace);
                                host.output(first);
                                host.output(last);
                            }});
    }
    for (const std::int32_t end : {count - 1, count + 5}) {
        requests.push_back({"pgindex_dll", [=](Host& host) {
                                const Floats trace = in_millimetres(road(10));
                                const Floats settings{5.08F, 0.6F, 0.9F, 1.27F, 7.6F, 7.6F};
                                std::vector<tPGLot> lots(3);
                                lots[0].iStart = 0;
                                lots[0].iEnd = 1000;
                                lots[1].iStart = 1001;
                                lots[1].iEnd = 2000;
                                lots[2].iStart = 2001;
                                lots[2].iEnd = end;
                                std::vector<tPGDefect> defects(5000);
                                std::vector<tPGDefect> bumps(2);
                                std::int32_t defect_count = -7;
                                const std::int32_t bump_count = 2;
                                host.call([&](tEvent* event) {
                                    return pgindex_dll(0, count - 1, interval, settings.data(),
                                                       count, trace.data(), 3, lots.data(),
                                                       &defect_count, defects.data(), &bump_count,
                                                       bumps.data(), event);
                                });
                                host.outputs(lots);
                                host.outputs(defects);
                                host.outputs(bumps);
                                host.output(defect_count);
                            }});
    }
}

tGrinderSetup grinder() {
    return {.WheelBase = 5.5F,
            .HeadPosition = 0.5F,
            .TandemSpread = 0.6F,
            .ShortWavelength = 0.3F,
            .MaxGrindingDepth_mm = 1.5F};
}

void add_grinding(std::vector<Request>& requests) {
    for (const std::int32_t direction : {2, 3}) {
        tGrindSpot spot{};
        spot.iNumPasses = 2;
        spot.iDirection[0] = 1;
        spot.iDirection[1] = direction;
        spot.iStart = 300;
        spot.iEnd = 2700;
        requests.push_back({"grindsimu_dlldrv", [=](Host& host) {
                                const tGrinderSetup setup = grinder();
                                Floats profile = road(11);
                                Integers flags(static_cast<std::size_t>(count), -7);
                                host.call([&](tEvent* event) {
                                    return grindsimu_dlldrv(interval, 1, count, &setup, &spot,
                                                            profile.data(), flags.data(), event);
                                });
                                host.outputs(profile);
                                host.outputs(flags);
                            }});
        requests.push_back({"grindsimu_2chan_dlldrv", [=](Host& host) {
                                const tGrinderSetup setup = grinder();
                                Floats left = road(11);
                                Floats right = road(12);
                                Integers flags(static_cast<std::size_t>(count), -7);
                                host.call([&](tEvent* event) {
                                    return grindsimu_2chan_dlldrv(interval, 1, count, &setup, &spot,
                                                                  left.data(), right.data(),
                                                                  flags.data(), event);
                                });
                                host.outputs(left);
                                host.outputs(right);
                                host.outputs(flags);
                            }});
    }
    for (const std::int32_t selector : {0, 1, 2, 3, 4, 5, 9}) {
        const float threshold = selector == 3 ? 3.5F : 0.0015F;
        const tMustGrindCfg analysis{.iRideIndexType = selector,
                                     .if250mmFilter = 1,
                                     .xRideThreshold = threshold,
                                     .xSlideBaseLength = 7.62F,
                                     .ib_grindopt = {1, 1, 1},
                                     .x_grinddepth_min = 0.0F,
                                     .x_grindlength_min = 0.1F,
                                     .x_grindgap_min = 0.3F};
        requests.push_back({"mustgrind_dlldrv", [=](Host& host) {
                                const tGrinderSetup setup = grinder();
                                tMustGrindCfg cfg = analysis;
                                const Floats profile = road(13);
                                Integers flags(static_cast<std::size_t>(count), -7);
                                host.call([&](tEvent* event) {
                                    return mustgrind_dlldrv(count, interval, &cfg, &setup,
                                                            profile.data(), flags.data(), event);
                                });
                                host.outputs(flags);
                                host.output(cfg.iRideIndexType);
                            }});
        requests.push_back({"mustgrind_2chan_dlldrv", [=](Host& host) {
                                const tGrinderSetup setup = grinder();
                                tMustGrindCfg cfg = analysis;
                                const Floats left = road(13);
                                const Floats right = road(14);
                                Integers flags(static_cast<std::size_t>(count), -7);
                                host.call([&](tEvent* event) {
                                    return mustgrind_2chan_dlldrv(count, interval, &cfg, &setup,
                                                                  left.data(), right.data(),
                                                                  flags.data(), event);
                                });
                                host.outputs(flags);
                                host.output(cfg.iRideIndexType);
                            }});
    }
}

// Every filter takes its turn through the comparison.
tFiltCon filter_settings(std::int32_t type, std::int32_t sub_type) {
    tFiltCon settings{};
    settings.iMainFilterType = type;
    settings.iSubFilterType = sub_type;
    settings.iOutType = idx_filtouttyp_elevation;
    settings.if250mmFilter = 1;
    settings.xLongWavelength = 20.0F;
    settings.xShortWavelength = 0.5F;
    settings.xSimuVelocity = 80.0F;
    return settings;
}

void add_comparison(std::vector<Request>& requests) {
    for (std::int32_t type = 0; type <= 8; ++type) {
        for (std::int32_t sub_type = 1; sub_type <= 5; ++sub_type) {
            if (sub_type > 1 && type != idx_filttyp_mvgavg && type != idx_filttyp_bwfilt) {
                continue;
            }
            requests.push_back(
                {"ccfunc", [=](Host& host) {
                     const Floats reference = road(15);
                     Floats test = road(15);
                     for (std::size_t i = 0; i < test.size(); ++i) {
                         test[i] = 0.9F * test[i] + 1e-5F * static_cast<float>(i % 5);
                     }
                     tProfAnalysis analysis{};
                     analysis.if_outputfilt = 1;
                     analysis.if_padding = sub_type;
                     analysis.x_offset_max = 0.5F;
                     std::vector<tProfinfo> profiles(2);
                     for (tProfinfo& info : profiles) {
                         info.i_raw_leadin = 50;
                         info.i_raw_leadout = count - 50;
                         info.x_sampleinterval = interval;
                         info.tFilter = filter_settings(type, sub_type);
                     }
                     profiles[1].x_sampleinterval = 1.2F * interval;
                     std::int32_t points = -7;
                     host.call([&](tEvent* event) {
                         return CC_CoeffArray(&points, &analysis, profiles.data(), event);
                     });
                     host.output(points);
                     if (points < 0) {
                         return;
                     }
                     Floats final(static_cast<std::size_t>(points), mark);
                     Floats offsets = final;
                     Floats filtered_reference = room();
                     Floats filtered_test = room();
                     host.call([&](tEvent* event) {
                         return ccfunc(count, count, points, reference.data(), test.data(),
                                       &analysis, profiles.data(), final.data(), offsets.data(),
                                       filtered_reference.data(), filtered_test.data(), event);
                     });
                     host.outputs(final);
                     host.outputs(offsets);
                     host.outputs(filtered_reference);
                     host.outputs(filtered_test);
                     host.output(analysis);
                     host.outputs(profiles);
                 }});
        }
    }
    requests.push_back({"pcbia_dlldrv", [](Host& host) {
                            const Floats runs = random_road(10 * 1057, 0.15, 16);
                            const Floats reference = random_road(1057, 0.15, 17);
                            float precision = mark;
                            float bias = mark;
                            std::int32_t precision_class = -7;
                            std::int32_t bias_class = -7;
                            host.call([&](tEvent* event) {
                                return pcbia_dlldrv(runs.data(), reference.data(), &precision,
                                                    &bias, &precision_class, &bias_class, event);
                            });
                            host.output(precision);
                            host.output(bias);
                            host.output(precision_class);
                            host.output(bias_class);
                        }});
}

void add_joints(std::vector<Request>& requests) {
    for (std::int32_t method = 0; method <= 4; ++method) {
        requests.push_back(
            {"joint_id_dlldrv", [=](Host& host) {
                 const tJointIDCfg settings{method, 0, 5.0F};
                 const Floats left = slabs(18);
                 const Floats right = slabs(19);
                 Integers left_types(static_cast<std::size_t>(count), -7);
                 Integers right_types = left_types;
                 std::vector<double> left_places(static_cast<std::size_t>(count), -7.0);
                 std::vector<double> right_places = left_places;
                 host.call([&](tEvent* event) {
                     return joint_id_dlldrv(&settings, interval, count, left.data(), right.data(),
                                            left_types.data(), right_types.data(),
                                            left_places.data(), right_places.data(), event);
                 });
                 host.outputs(left_types);
                 host.outputs(right_types);
                 host.outputs(left_places);
                 host.outputs(right_places);
             }});
    }
    for (const float window : {100.0F, 5000.0F}) {
        requests.push_back({"joint_fault_dlldrv", [=](Host& host) {
                                const Floats profile = in_millimetres(slabs(20));
                                const std::vector<double> joints{1.0, 5.0, 10.0, 40.01, 73.0};
                                Floats faults(joints.size(), mark);
                                host.call([&](tEvent* event) {
                                    return joint_fault_dlldrv(count, 5, interval, window,
                                                              profile.data(), joints.data(),
                                                              faults.data(), event);
                                });
                                host.outputs(faults);
                            }});
    }
}

void add_others(std::vector<Request>& requests) {
    for (const float base : {0.0F, 0.25F, 100.0F}) {
        requests.push_back({"antismth_dlldrv", [=](Host& host) {
                                Floats profile = road(21);
                                std::int32_t first = -7;
                                std::int32_t last = -7;
                                host.call([&](tEvent* event) {
                                    return antismth_dlldrv(interval, base, count, profile.data(),
                                                           &first, &last, event);
                                });
                                host.outputs(profile);
                                host.output(first);
                                host.output(last);
                            }});
    }
    for (const std::int32_t classes : {0, 1, 2, 9}) {
        requests.push_back({"histgrm_dlldrv", [=](Host& host) {
                                const Floats values = road(22);
                                const Integers mask = every_seventh_flag();
                                Floats percentages(10, mark);
                                float above = mark;
                                host.call([&](tEvent* event) {
                                    return histgrm_dlldrv(1, classes, count, -0.01F, 0.01F, 0.003F,
                                                          0.0F, values.data(), mask.data(),
                                                          percentages.data(), &above, event);
                                });
                                host.outputs(percentages);
                                host.output(above);
                            }});
    }
}

} // namespace

const std::vector<Request>& corpus() {
    static const std::vector<Request> requests = [] {
        std::vector<Request> all;
        add_ride(all);
        add_two_track_ride(all);
        add_spectra(all);
        add_profilograph(all);
        add_grinding(all);
        add_comparison(all);
        add_joints(all);
        add_others(all);
        return all;
    }();
    return requests;
}

} // namespace vialto::test
