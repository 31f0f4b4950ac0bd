"""Claims about roads, with expectations of closed form or worked by hand."""

from __future__ import annotations

import ctypes
import os
import re
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import Any, Callable
from unittest import mock

import numpy as np
from numpy.typing import NDArray

import vialto
from vialto import (Density, Filter, GrindFlag, GrindSpot, JointMethod,
                    MustGrind, Pass, RideIndex, VialtoError, _library,
                    _records)

HEADER = Path(__file__).parents[2] / "include" / "vialto" / "vialto.h"
INTERVAL = 0.125  # m; exact in binary
SAMPLES = 2400
DISTANCE = INTERVAL * np.arange(SAMPLES)
WAVE = 0.005 * np.sin(2.0 * np.pi * DISTANCE / 10.0)
FLAT = np.zeros(SAMPLES)
SLAB = 5.0  # m
# Every second slab lies 4 mm higher.
SLABS = np.where(DISTANCE // SLAB % 2 == 1, 0.004, 0.0)


def setUpModule() -> None:
    directory = tempfile.TemporaryDirectory()
    environment = mock.patch.dict(os.environ, TMP=directory.name)
    environment.start()
    unittest.addModuleCleanup(directory.cleanup)
    unittest.addModuleCleanup(environment.stop)


def rough_road(seed: int) -> NDArray[np.float64]:
    slope = np.random.default_rng(seed).normal(0.0, 0.002, SAMPLES)
    road: NDArray[np.float64] = np.cumsum(slope - slope.mean()) * INTERVAL
    return road


class Ride(unittest.TestCase):
    def test_flat_road_has_no_roughness(self) -> None:
        self.assertEqual(vialto.ride_index(FLAT, INTERVAL), 0.0)
        self.assertFalse(vialto.continuous_ride_index(FLAT, INTERVAL).any())
        self.assertFalse(vialto.wim_error_index(FLAT, INTERVAL).any())

    def test_road_twice_as_high_is_twice_as_rough(self) -> None:
        self.assertEqual(vialto.ride_index(2.0 * WAVE, INTERVAL),
                         2.0 * vialto.ride_index(WAVE, INTERVAL))

    def test_mean_roughness_is_the_mean_of_the_tracks(self) -> None:
        left, right = rough_road(1), rough_road(2)
        mean = (vialto.ride_index(left, INTERVAL)
                + vialto.ride_index(right, INTERVAL)) / 2.0
        mri = vialto.two_track_ride_index(left, right, INTERVAL)
        self.assertAlmostEqual(mri / mean, 1.0, places=6)

    def test_ride_number_of_one_track_twice(self) -> None:
        road = rough_road(3)
        rn = vialto.ride_index(road, INTERVAL, index=RideIndex.RN)
        number = vialto.two_track_ride_index(road, road, INTERVAL,
                                             index=RideIndex.RIDE_NUMBER)
        self.assertAlmostEqual(number, 5.0 * np.exp(-160.0 * rn), places=4)

    def test_excluded_samples_do_not_count(self) -> None:
        road = np.where(DISTANCE < 150.0, 0.0, rough_road(4))
        excluded = DISTANCE >= 149.0
        self.assertEqual(
            vialto.ride_index(road, INTERVAL, excluded=excluded), 0.0)
        self.assertEqual(vialto.ride_index(
            road, INTERVAL, excluded=np.ones(SAMPLES, bool)), -1.0)

    def test_one_segment_has_the_index_of_the_road(self) -> None:
        road = rough_road(5)
        segments = vialto.segment_ride_indices(road, INTERVAL, [SAMPLES])
        self.assertEqual(segments.index.tolist(),
                         [vialto.ride_index(road, INTERVAL)])

    def test_segments_share_their_boundary_sample(self) -> None:
        segments = vialto.segment_ride_indices(rough_road(5), INTERVAL,
                                               [801, 801, 0])
        self.assertEqual(segments.length[:2].tolist(), [100.0, 100.0])


class Spectra(unittest.TestCase):
    def test_density_of_a_wave_adds_up_to_half_its_square_amplitude(
            self) -> None:
        # 20 waves on 256 m, bands of four bins of 1/256 cycles/m.
        frequency, band = 20.0 / 256.0, 4.0 / 256.0
        wave = 0.005 * np.sin(2.0 * np.pi * frequency * DISTANCE)
        slope = 0.005 * 2.0 * np.sin(np.pi * frequency * INTERVAL) / INTERVAL
        for kind, amplitude in ((Density.ELEVATION, 0.005),
                                (Density.SLOPE, slope)):
            with self.subTest(kind=kind):
                spectrum = vialto.power_spectral_density(
                    wave, INTERVAL, kind=kind, frequency_interval=band,
                    last=2048)
                self.assertAlmostEqual(
                    spectrum.density.sum() * band / (amplitude**2 / 2.0), 1.0,
                    places=4)
                peak = np.argmax(spectrum.density)
                self.assertEqual(spectrum.frequency[peak], frequency)

    def test_straightedge_on_a_parabola(self) -> None:
        curvature = 0.0002  # 1/m
        middle = DISTANCE[SAMPLES // 2]
        result = vialto.rolling_straightedge(
            curvature / 2.0 * (DISTANCE - middle)**2, INTERVAL, length=3.0)
        self.assertEqual((result.first, result.last), (12, SAMPLES - 13))
        near = slice(SAMPLES // 2 - 100, SAMPLES // 2 + 100)
        np.testing.assert_allclose(result.deflection[near],
                                   -curvature / 2.0 * 1.5**2, rtol=1e-4)
        self.assertAlmostEqual(result.rms_vertical_acceleration / curvature,
                               1.0, places=2)
        self.assertFalse(result.deflection[:12].any())

    def test_road_shorter_than_the_straightedge_has_no_valid_sample(
            self) -> None:
        result = vialto.rolling_straightedge(FLAT[:10], INTERVAL, length=3.0)
        self.assertEqual(result.deflection[result.valid].size, 0)


class Filtering(unittest.TestCase):
    def test_spike_stands_off_the_mean_that_it_raises(self) -> None:
        spike = FLAT.copy()
        spike[100] = 0.006
        result = vialto.anti_smooth(spike, INTERVAL, base_length=0.5)
        # A window of 5 samples, whose third one is in its middle.
        self.assertAlmostEqual(result.deviation[100 - 3], 0.006 * 4.0 / 5.0,
                               places=8)
        self.assertEqual(np.count_nonzero(result.deviation), 5)
        self.assertEqual((result.first, result.last), (3, SAMPLES - 6))


class Profilograph(unittest.TestCase):
    def test_trace_of_a_parabola_is_level(self) -> None:
        offsets = np.array([1.0, 2.0, 4.0])
        middle = DISTANCE[SAMPLES // 2]
        trace = vialto.profilograph_trace(0.1 * (DISTANCE - middle)**2,
                                          INTERVAL, wheel_offsets=offsets)
        near = slice(SAMPLES // 2 - 100, SAMPLES // 2 + 100)
        np.testing.assert_allclose(trace.height[near],
                                   -0.1 * np.mean(offsets**2), rtol=1e-5)
        self.assertTrue(np.isnan(trace.height[:trace.first]).all())
        self.assertFalse(np.isnan(trace.height[trace.valid]).any())

    def test_index_of_a_wave_counts_every_crest_and_trough(self) -> None:
        trace = 1000.0 * WAVE  # mm; 30 waves of 5 mm
        result = vialto.profile_index(trace, INTERVAL, blanking_band=4.0,
                                      rounding=0.0)
        beyond_the_band = 5.0 - 4.0 / 2.0
        self.assertAlmostEqual(
            result.lots[0].raw_index / (60 * beyond_the_band / 300.0), 1.0,
            delta=0.03)
        self.assertEqual(len(result.defects), 60)
        self.assertEqual([defect.kind for defect in result.defects[:2]],
                         [vialto.DefectKind.BUMP, vialto.DefectKind.DIP])
        self.assertAlmostEqual(result.defects[30].height, beyond_the_band,
                               delta=0.05)

    def test_stretch_beyond_the_profile_is_refused(self) -> None:
        with self.assertRaises(IndexError):
            vialto.profilograph_trace(WAVE, INTERVAL, last=SAMPLES)


class Grinding(unittest.TestCase):
    def test_bump_is_cut_to_the_plane_of_the_wheels(self) -> None:
        bump = FLAT.copy()
        bump[1200:1203] = 0.002
        spots = [GrindSpot(1190, 1210, [Pass(depth_mm=0.0)])]
        # The wheels ride on the bare profile, far from the bump.
        grinder = vialto.Grinder(wheel_base=10.0, wheel_length=0.0,
                                 max_depth_mm=1.0)
        result = vialto.grind(bump, INTERVAL, spots, grinder)
        self.assertFalse(result.profile.any())
        self.assertEqual(np.flatnonzero(result.flags
                                        == GrindFlag.TOO_DEEP).tolist(),
                         [1200, 1201, 1202])

    def test_more_than_ten_passes_are_refused(self) -> None:
        with self.assertRaises(VialtoError) as refused:
            vialto.grind(FLAT, INTERVAL, [GrindSpot(0, 9, [Pass()] * 11)])
        self.assertEqual(refused.exception.description,
                         "tGrindSpots holds a spot with more than ten passes")

    def test_only_the_rough_end_must_be_ground(self) -> None:
        road = np.where(DISTANCE < 150.0, 0.0, rough_road(6))
        flags = vialto.must_grind(road, INTERVAL)
        self.assertTrue((flags[:1100] == GrindFlag.LEFT).all())
        self.assertTrue((flags[1200:] != GrindFlag.LEFT).any())


class Comparing(unittest.TestCase):
    def test_road_agrees_with_itself(self) -> None:
        road = rough_road(7)
        result = vialto.compare_profiles(road, road, INTERVAL)
        self.assertAlmostEqual(result.coefficient, 100.0, places=3)
        self.assertAlmostEqual(result.shape_factor, 1.0, places=6)
        self.assertEqual(result.offset, 0.0)
        self.assertEqual(result.offsets[result.best], 0.0)
        self.assertEqual(result.reference_iri, result.test_iri)

    def test_offset_of_a_late_start_is_found(self) -> None:
        road = rough_road(8)
        result = vialto.compare_profiles(road[:-8], road[8:], INTERVAL)
        self.assertAlmostEqual(abs(result.offset), 8 * INTERVAL, places=5)
        self.assertGreater(result.coefficient, 95.0)

    def test_grid_of_offsets(self) -> None:
        grid = vialto.comparison_grid(0.025, 0.05, max_offset=1.0)
        self.assertEqual(grid.offsets, 81)
        self.assertAlmostEqual(grid.step, 0.025)

    def test_instrument_that_is_off_by_2_mm(self) -> None:
        truth = np.zeros(1057)
        result = vialto.repeatability(np.full((10, 1057), 0.002), truth)
        self.assertAlmostEqual(result.bias_mm, 2.0, places=4)
        self.assertEqual((result.precision_mm, result.precision_class,
                          result.bias_class), (0.0, 1, 2))


class Joints(unittest.TestCase):
    def test_steps_between_slabs_are_joints(self) -> None:
        tracks = vialto.find_joints(SLABS, SLABS, INTERVAL, spacing=SLAB,
                                    method=JointMethod.STEP)
        for features in tracks:
            self.assertEqual(features.joints.size, 59)
            np.testing.assert_allclose(features.joints,
                                       SLAB * np.arange(1, 60),
                                       atol=INTERVAL)

    def test_faults_are_the_heights_of_the_steps(self) -> None:
        joints = [1.0, *(SLAB * np.arange(1, 5))]
        faults = vialto.joint_faults(1000.0 * SLABS, INTERVAL, joints,
                                     window_mm=200.0)
        self.assertTrue(np.isnan(faults[0]))  # too near the start
        np.testing.assert_allclose(faults[1:], [-4.0, 4.0, -4.0, 4.0],
                                   atol=1e-4)


class Distribution(unittest.TestCase):
    def test_classes_by_hand(self) -> None:
        result = vialto.histogram([0.5, 1.0, 1.5, 2.5, 9.0], classes=4,
                                  low=1.0, high=3.0, threshold=1.5)
        self.assertEqual(result.percentages.tolist(), [40.0, 20.0, 20.0, 20.0])
        self.assertEqual(result.above_threshold, 40.0)

    def test_excluded_values_do_not_count(self) -> None:
        result = vialto.histogram([0.5, 2.5, 2.5], classes=2, low=1.0,
                                  high=1.0, excluded=[0, 1, 0])
        self.assertEqual(result.percentages.tolist(), [50.0, 50.0])


class Failures(unittest.TestCase):
    def test_library_speaks_for_itself(self) -> None:
        with self.assertRaises(VialtoError) as failed:
            vialto.ride_index(WAVE, INTERVAL, index=RideIndex.TWO_RN)
        error = failed.exception
        self.assertEqual(error.description, "two RN is no longer supported")
        self.assertEqual((error.routine, error.error_code, error.error_type),
                         ("ride_dlldrv", 101, 2))
        self.assertEqual(str(error), "two RN is no longer supported "
                                     "(ride_dlldrv, code 101)")

    def test_temporary_directory_that_is_missing(self) -> None:
        with mock.patch.dict(os.environ, TMP="/no/such/directory"):
            with self.assertRaises(VialtoError) as failed:
                vialto.ride_index(WAVE, INTERVAL)
        self.assertEqual(failed.exception.error_code, 102)
        self.assertEqual(failed.exception.routine, "io_tmp_file/ride_dlldrv")

    def test_arguments_that_do_not_fit_are_refused(self) -> None:
        refused: list[tuple[type[Exception], Callable[[], object]]] = [
            (ValueError, lambda: vialto.ride_index([WAVE], INTERVAL)),
            (ValueError, lambda: vialto.two_track_ride_index(
                WAVE, WAVE[1:], INTERVAL)),
            (ValueError, lambda: vialto.ride_index(
                WAVE, INTERVAL, excluded=[True])),
            (ValueError, lambda: vialto.repeatability(
                np.zeros((9, 1057)), np.zeros(1057))),
            (ValueError, lambda: vialto.segment_ride_indices(
                WAVE, INTERVAL, [100.5])),
            (OverflowError, lambda: vialto.segment_ride_indices(
                WAVE, INTERVAL, [2**32])),
            (OverflowError, lambda: vialto.profile_index(
                WAVE, INTERVAL, lots=[(2**32, 2**32 + 9)])),
            (ctypes.ArgumentError, lambda: vialto.power_spectral_density(
                WAVE, INTERVAL, points_per_octave=2**32)),
        ]
        for k, (error, analysis) in enumerate(refused):
            with self.subTest(k), self.assertRaises(error):
                analysis()


class Arrays(unittest.TestCase):
    def test_layout_and_type_make_no_difference(self) -> None:
        plain = rough_road(9).astype(np.float32)
        spread = np.zeros((SAMPLES, 3))
        spread[:, 1] = plain
        for road in (spread[:, 1], plain.tolist(), plain[::-1][::-1]):
            self.assertEqual(vialto.ride_index(road, INTERVAL),
                             vialto.ride_index(plain, INTERVAL))

    def test_threads_take_turns(self) -> None:
        roads = [rough_road(seed) for seed in range(8)]
        expected = [vialto.ride_index(road, INTERVAL) for road in roads]
        with ThreadPoolExecutor() as threads:
            self.assertEqual(list(threads.map(
                lambda road: vialto.ride_index(road, INTERVAL), roads)),
                expected)

    def test_no_analysis_changes_what_it_is_given(self) -> None:
        left = rough_road(10).astype(np.float32)
        right = rough_road(11).astype(np.float32)
        slabs = SLABS.astype(np.float32)
        mask = np.zeros(SAMPLES, np.int32)
        points = np.array([801, 801, 799], np.int32)
        places = SLAB * np.arange(1, 5)
        runs = np.zeros((10, 1057), np.float32)
        spots = [GrindSpot(100, 200)]
        one, two = (left, INTERVAL), (left, right, INTERVAL)
        analyses: dict[str, Callable[[], object]] = {
            "ride_dlldrv": lambda: vialto.ride_index(*one, excluded=mask),
            "rideseg_dlldrv":
                lambda: vialto.segment_ride_indices(*one, points),
            "ridecon_dlldrv": lambda: vialto.continuous_ride_index(*one),
            "ride2chan_dlldrv":
                lambda: vialto.two_track_ride_index(*two, excluded=mask),
            "rideseg2chan_dlldrv":
                lambda: vialto.two_track_segment_ride_indices(*two, points),
            "ridecon2chan_dlldrv":
                lambda: vialto.two_track_continuous_ride_index(*two),
            "wimindex_dlldrv": lambda: vialto.wim_error_index(*one),
            "psd_dll": lambda: vialto.power_spectral_density(*one),
            "rse_dlldrv": lambda: vialto.rolling_straightedge(*one),
            "pgfilt_dll": lambda: vialto.profilograph_trace(*one),
            "pgindex_dll": lambda: vialto.profile_index(
                *one, lots=[(0, 799), (800, SAMPLES - 1)]),
            "grindsimu_dlldrv": lambda: vialto.grind(*one, spots),
            "grindsimu_2chan_dlldrv":
                lambda: vialto.grind_two_tracks(*two, spots),
            "mustgrind_dlldrv": lambda: vialto.must_grind(*one),
            "mustgrind_2chan_dlldrv": lambda: vialto.must_grind_two_tracks(
                *two, MustGrind(index=RideIndex.TWO_RN, threshold=4.0)),
            "CC_CoeffArray":
                lambda: vialto.comparison_grid(INTERVAL, INTERVAL),
            "ccfunc": lambda: vialto.compare_profiles(
                left, right, INTERVAL, settings=Filter(moving_average=False),
                test_section=(100, 2000), upsampling=False),
            "pcbia_dlldrv": lambda: vialto.repeatability(runs, runs[0]),
            "joint_id_dlldrv": lambda: vialto.find_joints(
                slabs, slabs, INTERVAL, spacing=SLAB),
            "joint_fault_dlldrv":
                lambda: vialto.joint_faults(slabs, INTERVAL, places,
                                            window_mm=200.0),
            "antismth_dlldrv": lambda: vialto.anti_smooth(*one),
            "histgrm_dlldrv": lambda: vialto.histogram(
                left, classes=5, low=-0.01, high=0.01, excluded=mask),
        }
        arrays = [left, right, slabs, mask, points, places, runs]
        before = [array.copy() for array in arrays]
        called: set[str] = set()
        for name, analysis in analyses.items():
            with self.subTest(name):
                analysis()
                called.add(name)
                for array, kept in zip(arrays, before):
                    np.testing.assert_array_equal(array, kept)
        self.assertEqual(called, set(_library._ARGUMENTS))


class Interface(unittest.TestCase):
    """Arguments and records are those of the header."""

    header = re.sub(r"/\*.*?\*/", "", HEADER.read_text(), flags=re.DOTALL)

    def test_functions_of_the_header(self) -> None:
        prototypes = re.findall(r"VIALTO_CALL\s+(\w+)\(([^)]*)\)",
                                self.header)
        self.assertEqual({name for name, _ in prototypes},
                         set(_library._ARGUMENTS))
        for name, parameters in prototypes:
            types = [re.sub(r"\bconst\b|\w+\s*$", "", parameter).split()
                     for parameter in parameters.split(",")]
            self.assertEqual(types.pop(), ["tEvent*"])
            with self.subTest(name):
                self.assertEqual(
                    [c_type for [c_type] in types],
                    [c_type_of(argument)
                     for argument in _library._ARGUMENTS[name]])

    def test_records_of_the_header(self) -> None:
        records = {f"t{record.__name__.removesuffix('Record')}": record
                   for record in _records.Record.__subclasses__()}
        declared = re.findall(r"typedef struct \w+ \{(.*?)\} (\w+);",
                              self.header, re.DOTALL)
        self.assertEqual({name for _, name in declared}, set(records))
        plain: dict[str, Any] = {
            "char": ctypes.c_char, "int32_t": ctypes.c_int32,
            "float": ctypes.c_float, **records}
        for body, name in declared:
            fields = [
                (field, plain[kind] * int(count) if count else plain[kind])
                for kind, field, count in re.findall(
                    r"(\w+)\s+(\w+)(?:\[(\d+)\])?;", body)]
            with self.subTest(name):
                self.assertEqual(fields, records[name]._fields_)


def c_type_of(argument: type) -> str:
    plain = {_library._integer: "int32_t", _library._real: "float",
             _library._reals: "float*", _library._doubles: "double*",
             _library._integers: "int32_t*",
             _library._integers_or_null: "int32_t*",
             _library._real_out: "float*", _library._integer_out: "int32_t*"}
    if argument in plain:
        return plain[argument]
    record = argument._type_.__name__.removesuffix("Record")  # type: ignore
    return f"t{record}*"


if __name__ == "__main__":
    unittest.main()
