"""What calls take, refuse and leave alone."""

from __future__ import annotations

import ctypes
import pickle
import time
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pandas as pd
import pytest
from numpy.typing import NDArray

import vialto
from roads import DISTANCE, INTERVAL, SAMPLES, SLAB, SLABS, WAVE, rough_road
from vialto import Filter, GrindSpot, MustGrind, RideIndex, VialtoError, _library


def test_library_speaks_for_itself() -> None:
    with pytest.raises(VialtoError) as failed:
        vialto.ride_index(WAVE, INTERVAL, index=RideIndex.TWO_RN)
    error = failed.value
    assert error.description == "two RN is no longer supported"
    assert (error.routine, error.error_code, error.error_type) == ("ride_dlldrv", 101, 2)
    assert str(error) == "two RN is no longer supported (ride_dlldrv, code 101)"


def test_temporary_directory_that_is_missing(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("TMP", "/no/such/directory")
    with pytest.raises(VialtoError) as failed:
        vialto.ride_index(WAVE, INTERVAL)
    assert (failed.value.error_code, failed.value.routine) == (102, "io_tmp_file/ride_dlldrv")


@pytest.mark.parametrize(
    ("error", "analysis"),
    [
        (ValueError, lambda: vialto.ride_index([WAVE], INTERVAL)),
        (ValueError, lambda: vialto.two_track_ride_index(WAVE, WAVE[1:], INTERVAL)),
        (ValueError, lambda: vialto.ride_index(WAVE, 25.0)),
        (ValueError, lambda: vialto.comparison_grid(INTERVAL, np.nan)),
        (ValueError, lambda: vialto.ride_index(WAVE, INTERVAL, excluded=[True])),
        (ValueError, lambda: vialto.repeatability(np.zeros((9, 1057)), np.zeros(1057))),
        (ValueError, lambda: vialto.segment_ride_indices(WAVE, INTERVAL, [100.5])),
        (OverflowError, lambda: vialto.segment_ride_indices(WAVE, INTERVAL, [2**32])),
        (
            OverflowError,
            lambda: vialto.profile_index(1000.0 * WAVE, INTERVAL, lots=[(2**32, 2**32 + 9)]),
        ),
        (
            ctypes.ArgumentError,
            lambda: vialto.power_spectral_density(WAVE, INTERVAL, points_per_octave=2**32),
        ),
    ],
)
def test_arguments_that_do_not_fit_are_refused(
    error: type[Exception], analysis: Callable[[], object]
) -> None:
    with pytest.raises(error):
        analysis()


def with_a_nan() -> NDArray[np.float64]:
    road = rough_road(12)
    road[[700, 900]] = np.nan, -np.inf
    return road


@pytest.mark.parametrize(
    ("name", "analysis"),
    [
        ("profile", lambda bad: vialto.ride_index(bad, INTERVAL)),
        ("profile", lambda bad: vialto.wim_error_index(bad, INTERVAL)),
        ("right", lambda bad: vialto.two_track_ride_index(WAVE, bad, INTERVAL)),
        ("left", lambda bad: vialto.find_joints(bad, WAVE, INTERVAL)),
        ("trace", lambda bad: vialto.profile_index(bad, INTERVAL)),
        ("test", lambda bad: vialto.compare_profiles(WAVE, bad, INTERVAL)),
        ("values", lambda bad: vialto.histogram(bad, classes=4, low=0.0, high=1.0)),
    ],
)
def test_samples_that_are_not_finite_are_refused(
    name: str, analysis: Callable[[object], object]
) -> None:
    with pytest.raises(ValueError, match=rf"^{name} holds 2 of 2400 .* first at index 700 \(nan\)"):
        analysis(with_a_nan())


def test_library_answers_for_itself_where_asked() -> None:
    index = vialto.wim_error_index(
        with_a_nan(), INTERVAL, bridging_filter=False, allow_nonfinite=True
    )
    assert not index.any()


def test_units_that_are_surely_wrong_are_warned_of() -> None:
    road = rough_road(13)
    with pytest.warns(vialto.UnitWarning, match=r"profile has slopes of .* is it in metres"):
        vialto.ride_index(1000.0 * road, INTERVAL)
    with pytest.warns(vialto.UnitWarning, match="profile jumps by 99.* m in one step"):
        vialto.ride_index(np.append(road, -99.9), INTERVAL)
    with pytest.warns(vialto.UnitWarning, match="is it in millimetres"):
        vialto.joint_faults(road, INTERVAL, [100.0], window_mm=200.0)
    with pytest.warns(vialto.UnitWarning, match="left reaches 12.. m, .* subtract a constant"):
        vialto.two_track_ride_index(road + 1200.0, road, INTERVAL)


def test_layout_and_type_make_no_difference() -> None:
    plain = rough_road(9).astype(np.float32)
    spread = np.zeros((SAMPLES, 3))
    spread[:, 1] = plain
    for road in (spread[:, 1], plain.tolist(), plain[::-1][::-1]):
        assert vialto.ride_index(road, INTERVAL) == vialto.ride_index(plain, INTERVAL)


@pytest.mark.parametrize(
    "analysis",
    [
        vialto.continuous_ride_index,
        vialto.wim_error_index,
        vialto.must_grind,
        lambda road, interval: vialto.two_track_continuous_ride_index(road, WAVE, interval),
        lambda road, interval: vialto.must_grind_two_tracks(road, WAVE, interval),
        lambda road, interval: vialto.joint_faults(
            1000.0 * WAVE, interval, 10.0 + 0.0 * road, window_mm=200.0
        ),
    ],
)
def test_series_keeps_its_index(analysis: Callable[..., pd.Series[float]]) -> None:
    road = pd.Series(rough_road(14), index=DISTANCE, name="left")
    result = analysis(road, INTERVAL)
    pd.testing.assert_index_equal(result.index, road.index)
    assert result.name == "left"
    np.testing.assert_array_equal(result, analysis(road.to_numpy(), INTERVAL))


def test_series_of_different_places_are_no_tracks() -> None:
    left, right = pd.Series(WAVE), pd.Series(WAVE, index=DISTANCE)
    with pytest.raises(ValueError, match="different indexes"):
        vialto.two_track_ride_index(left, right, INTERVAL)


LEFT, RIGHT = (rough_road(seed).astype(np.float32) for seed in (10, 11))
FAULTED, FAULTED_MM = SLABS.astype(np.float32), (1000.0 * SLABS).astype(np.float32)
MASK, POINTS = np.zeros(SAMPLES, np.int32), np.array([801, 801, 799], np.int32)
PLACES, RUNS = SLAB * np.arange(1, 5), np.zeros((10, 1057), np.float32)
ONE, TWO, SPOTS = (LEFT, INTERVAL), (LEFT, RIGHT, INTERVAL), [GrindSpot(100, 200)]

# A call of each function of the library.
CALLS: dict[str, Callable[[], object]] = {
    "ride_dlldrv": lambda: vialto.ride_index(*ONE, excluded=MASK),
    "rideseg_dlldrv": lambda: vialto.segment_ride_indices(*ONE, POINTS),
    "ridecon_dlldrv": lambda: vialto.continuous_ride_index(*ONE),
    "ride2chan_dlldrv": lambda: vialto.two_track_ride_index(*TWO, excluded=MASK),
    "rideseg2chan_dlldrv": lambda: vialto.two_track_segment_ride_indices(*TWO, POINTS),
    "ridecon2chan_dlldrv": lambda: vialto.two_track_continuous_ride_index(*TWO),
    "wimindex_dlldrv": lambda: vialto.wim_error_index(*ONE),
    "psd_dll": lambda: vialto.power_spectral_density(*ONE),
    "rse_dlldrv": lambda: vialto.rolling_straightedge(*ONE),
    "pgfilt_dll": lambda: vialto.profilograph_trace(*ONE),
    "pgindex_dll": lambda: vialto.profile_index(
        FAULTED_MM, INTERVAL, lots=[(0, 799), (800, SAMPLES - 1)]
    ),
    "grindsimu_dlldrv": lambda: vialto.grind(*ONE, SPOTS),
    "grindsimu_2chan_dlldrv": lambda: vialto.grind_two_tracks(*TWO, SPOTS),
    "mustgrind_dlldrv": lambda: vialto.must_grind(*ONE),
    "mustgrind_2chan_dlldrv": lambda: vialto.must_grind_two_tracks(
        *TWO, MustGrind(index=RideIndex.TWO_RN, threshold=4.0)
    ),
    "CC_CoeffArray": lambda: vialto.comparison_grid(INTERVAL, INTERVAL),
    "ccfunc": lambda: vialto.compare_profiles(
        *TWO, settings=Filter(moving_average=False), test_section=(100, 2000), upsampling=False
    ),
    "pcbia_dlldrv": lambda: vialto.repeatability(RUNS, RUNS[0]),
    "joint_id_dlldrv": lambda: vialto.find_joints(FAULTED, FAULTED, INTERVAL, spacing=SLAB),
    "joint_fault_dlldrv": lambda: vialto.joint_faults(
        FAULTED_MM, INTERVAL, PLACES, window_mm=200.0
    ),
    "antismth_dlldrv": lambda: vialto.anti_smooth(*ONE),
    "histgrm_dlldrv": lambda: vialto.histogram(
        LEFT, classes=5, low=-0.01, high=0.01, excluded=MASK
    ),
}


def test_no_analysis_changes_what_it_is_given() -> None:
    arrays = [LEFT, RIGHT, FAULTED, FAULTED_MM, MASK, POINTS, PLACES, RUNS]
    before = [array.copy() for array in arrays]
    for name, analysis in CALLS.items():
        analysis()
        for array, kept in zip(arrays, before, strict=True):
            np.testing.assert_array_equal(array, kept, err_msg=name)
    assert set(CALLS) == set(_library._ARGUMENTS)


def test_calls_of_many_threads_give_what_they_give_alone() -> None:
    names = [*CALLS] * 8
    np.random.default_rng(0).shuffle(names)
    alone = {name: pickle.dumps(CALLS[name]()) for name in CALLS}
    with ThreadPoolExecutor(8) as threads:
        together = threads.map(lambda name: pickle.dumps(CALLS[name]()), names)
        differing = {
            name for name, result in zip(names, together, strict=True) if result != alone[name]
        }
    assert differing == set()


def test_other_threads_run_during_a_call() -> None:
    profile = np.cumsum(np.random.default_rng(15).normal(0.0, 5e-5, 100_000))
    moments = 0
    with ThreadPoolExecutor(1) as threads:  # tens of thousands of offsets: some tenths of a second
        call = threads.submit(vialto.compare_profiles, profile, profile, 0.025, max_offset=400.0)
        while not call.done():
            time.sleep(0.001)
            moments += 1
    assert moments > 20
