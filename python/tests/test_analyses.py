"""Claims about roads, with expectations of closed form or worked by hand."""

import numpy as np
import pytest

import vialto
from roads import DISTANCE, FLAT, INTERVAL, SAMPLES, SLAB, SLABS, WAVE, rough_road
from vialto import Density, GrindFlag, GrindSpot, JointMethod, Pass, RideIndex, VialtoError


def test_flat_road_has_no_roughness() -> None:
    assert vialto.ride_index(FLAT, INTERVAL) == 0.0
    assert not vialto.continuous_ride_index(FLAT, INTERVAL).any()
    assert not vialto.wim_error_index(FLAT, INTERVAL).any()


def test_road_twice_as_high_is_twice_as_rough() -> None:
    assert vialto.ride_index(2.0 * WAVE, INTERVAL) == 2.0 * vialto.ride_index(WAVE, INTERVAL)


def test_mean_roughness_is_the_mean_of_the_tracks() -> None:
    left, right = rough_road(1), rough_road(2)
    mean = (vialto.ride_index(left, INTERVAL) + vialto.ride_index(right, INTERVAL)) / 2.0
    mri = vialto.two_track_ride_index(left, right, INTERVAL)
    assert mri == pytest.approx(mean, rel=1e-6)


def test_ride_number_of_one_track_twice() -> None:
    road = rough_road(3)
    rn = vialto.ride_index(road, INTERVAL, index=RideIndex.RN)
    number = vialto.two_track_ride_index(road, road, INTERVAL, index=RideIndex.RIDE_NUMBER)
    assert number == pytest.approx(5.0 * np.exp(-160.0 * rn), abs=5e-5)


def test_excluded_samples_do_not_count() -> None:
    road = np.where(DISTANCE < 150.0, 0.0, rough_road(4))
    excluded = DISTANCE >= 149.0
    assert vialto.ride_index(road, INTERVAL, excluded=excluded) == 0.0
    assert vialto.ride_index(road, INTERVAL, excluded=np.ones(SAMPLES, bool)) == -1.0


def test_one_segment_has_the_index_of_the_road() -> None:
    road = rough_road(5)
    segments = vialto.segment_ride_indices(road, INTERVAL, [SAMPLES])
    assert segments.index.tolist() == [vialto.ride_index(road, INTERVAL)]


def test_segments_share_their_boundary_sample() -> None:
    segments = vialto.segment_ride_indices(rough_road(5), INTERVAL, [801, 801, 0])
    assert segments.length[:2].tolist() == [100.0, 100.0]


@pytest.mark.parametrize("kind", Density)
def test_density_of_a_wave_adds_up_to_half_its_square_amplitude(kind: Density) -> None:
    # 20 waves on 256 m, bands of four bins of 1/256 cycles/m.
    frequency, band = 20.0 / 256.0, 4.0 / 256.0
    wave = 0.005 * np.sin(2.0 * np.pi * frequency * DISTANCE)
    slope = 0.005 * 2.0 * np.sin(np.pi * frequency * INTERVAL) / INTERVAL
    amplitude = {Density.ELEVATION: 0.005, Density.SLOPE: slope}[kind]
    spectrum = vialto.power_spectral_density(
        wave, INTERVAL, kind=kind, frequency_interval=band, last=2048
    )
    assert spectrum.density.sum() * band == pytest.approx(amplitude**2 / 2.0, rel=5e-5)
    assert spectrum.frequency[np.argmax(spectrum.density)] == frequency


def test_straightedge_on_a_parabola() -> None:
    curvature = 0.0002  # 1/m
    middle = DISTANCE[SAMPLES // 2]
    result = vialto.rolling_straightedge(
        curvature / 2.0 * (DISTANCE - middle) ** 2, INTERVAL, length=3.0
    )
    assert (result.first, result.last) == (12, SAMPLES - 13)
    near = slice(SAMPLES // 2 - 100, SAMPLES // 2 + 100)
    np.testing.assert_allclose(result.deflection[near], -curvature / 2.0 * 1.5**2, rtol=1e-4)
    assert result.rms_vertical_acceleration == pytest.approx(curvature, rel=5e-3)
    assert not result.deflection[:12].any()


def test_road_shorter_than_the_straightedge_has_no_valid_sample() -> None:
    result = vialto.rolling_straightedge(FLAT[:10], INTERVAL, length=3.0)
    assert result.deflection[result.valid].size == 0


def test_spike_stands_off_the_mean_that_it_raises() -> None:
    spike = FLAT.copy()
    spike[100] = 0.006
    result = vialto.anti_smooth(spike, INTERVAL, base_length=0.5)
    # A window of 5 samples, whose third one is in its middle.
    assert result.deviation[100 - 3] == pytest.approx(0.006 * 4.0 / 5.0, rel=1e-6)
    assert np.count_nonzero(result.deviation) == 5
    assert (result.first, result.last) == (3, SAMPLES - 6)


def test_trace_of_a_parabola_is_level() -> None:
    offsets = np.array([1.0, 2.0, 4.0])
    middle = DISTANCE[SAMPLES // 2]
    trace = vialto.profilograph_trace(
        0.1 * (DISTANCE - middle) ** 2, INTERVAL, wheel_offsets=offsets
    )
    near = slice(SAMPLES // 2 - 100, SAMPLES // 2 + 100)
    np.testing.assert_allclose(trace.height[near], -0.1 * np.mean(offsets**2), rtol=1e-5)
    assert np.isnan(trace.height[: trace.first]).all()
    assert not np.isnan(trace.height[trace.valid]).any()


def test_index_of_a_wave_counts_every_crest_and_trough() -> None:
    trace = 1000.0 * WAVE  # mm; 30 waves of 5 mm
    result = vialto.profile_index(trace, INTERVAL, blanking_band=4.0, rounding=0.0)
    beyond_the_band = 5.0 - 4.0 / 2.0
    expected = 60 * beyond_the_band / 300.0
    assert result.lots[0].raw_index == pytest.approx(expected, rel=0.03)
    assert len(result.defects) == 60
    assert [defect.kind for defect in result.defects[:2]] == [
        vialto.DefectKind.ABOVE,
        vialto.DefectKind.BELOW,
    ]
    assert result.defects[30].height == pytest.approx(beyond_the_band, abs=0.05)


def test_stretch_beyond_the_profile_is_refused() -> None:
    with pytest.raises(IndexError):
        vialto.profilograph_trace(WAVE, INTERVAL, last=SAMPLES)


def test_bump_is_cut_to_the_plane_of_the_wheels() -> None:
    bump = FLAT.copy()
    bump[1200:1203] = 0.002
    spots = [GrindSpot(1190, 1210, [Pass(depth_mm=0.0)])]
    # The wheels ride on the bare profile, far from the bump.
    grinder = vialto.Grinder(wheel_base=10.0, wheel_length=0.0, max_depth_mm=1.0)
    result = vialto.grind(bump, INTERVAL, spots, grinder)
    assert not result.profile.any()
    assert np.flatnonzero(result.flags == GrindFlag.DEEPER).tolist() == [1200, 1201, 1202]


def test_more_than_ten_passes_are_refused() -> None:
    with pytest.raises(VialtoError) as refused:
        vialto.grind(FLAT, INTERVAL, [GrindSpot(0, 9, [Pass()] * 11)])
    assert refused.value.description == "tGrindSpots holds a spot with more than ten passes"


def test_only_the_rough_end_must_be_ground() -> None:
    road = np.where(DISTANCE < 150.0, 0.0, rough_road(6))
    flags = vialto.must_grind(road, INTERVAL)
    assert (flags[:1100] == GrindFlag.NONE).all()
    assert (flags[1200:] != GrindFlag.NONE).any()


def test_search_goes_by_iri_for_one_track_and_by_mri_for_two() -> None:
    left, right = (np.where(DISTANCE < 150.0, 0.0, rough_road(seed)) for seed in (6, 7))
    iri, mri = (vialto.MustGrind(index=index) for index in (RideIndex.IRI, RideIndex.MRI))
    one = vialto.must_grind(left, INTERVAL)
    two = vialto.must_grind_two_tracks(left, right, INTERVAL)
    assert (one != GrindFlag.NONE).any()
    np.testing.assert_array_equal(one, vialto.must_grind(left, INTERVAL, iri))
    np.testing.assert_array_equal(two, vialto.must_grind_two_tracks(left, right, INTERVAL, mri))


def test_road_agrees_with_itself() -> None:
    road = rough_road(7)
    result = vialto.compare_profiles(road, road, INTERVAL)
    assert result.coefficient == pytest.approx(100.0, abs=5e-4)
    assert result.shape_factor == pytest.approx(1.0, abs=5e-7)
    assert result.offset == 0.0
    assert result.offsets[result.best] == 0.0
    assert result.reference_iri == result.test_iri


def test_offset_of_a_late_start_is_found() -> None:
    road = rough_road(8)
    result = vialto.compare_profiles(road[:-8], road[8:], INTERVAL)
    assert abs(result.offset) == pytest.approx(8 * INTERVAL)
    assert result.coefficient > 95.0


def test_grid_of_offsets() -> None:
    grid = vialto.comparison_grid(0.025, 0.05, max_offset=1.0)
    assert grid.offsets == 81
    assert grid.step == pytest.approx(0.025)


def test_instrument_that_is_off_by_2_mm() -> None:
    truth = np.zeros(1057)
    result = vialto.repeatability(np.full((10, 1057), 0.002), truth)
    assert result.bias_mm == pytest.approx(2.0, abs=5e-5)
    assert (result.precision_mm, result.precision_class, result.bias_class) == (0.0, 1, 2)


def test_steps_between_slabs_are_joints() -> None:
    tracks = vialto.find_joints(SLABS, SLABS, INTERVAL, spacing=SLAB, method=JointMethod.STEP)
    for features in tracks:
        assert features.joints.size == 59
        np.testing.assert_allclose(features.joints, SLAB * np.arange(1, 60), atol=INTERVAL)


def test_faults_are_the_heights_of_the_steps() -> None:
    joints = [1.0, *(SLAB * np.arange(1, 5))]
    faults = vialto.joint_faults(1000.0 * SLABS, INTERVAL, joints, window_mm=200.0)
    assert np.isnan(faults[0])  # too near the start
    np.testing.assert_allclose(faults[1:], [-4.0, 4.0, -4.0, 4.0], atol=1e-4)


def test_classes_by_hand() -> None:
    result = vialto.histogram(
        [0.5, 1.0, 1.5, 2.5, 9.0], classes=4, low=1.0, high=3.0, threshold=1.5
    )
    assert result.percentages.tolist() == [40.0, 20.0, 20.0, 20.0]
    assert result.above_threshold == 40.0


def test_excluded_values_do_not_count() -> None:
    result = vialto.histogram([0.5, 2.5, 2.5], classes=2, low=1.0, high=1.0, excluded=[0, 1, 0])
    assert result.percentages.tolist() == [50.0, 50.0]
