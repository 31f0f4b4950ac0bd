"""Ride indices of one wheel track and of two, and the WIM error index.

A profile holds elevations in metres at a constant interval, also in metres.
Roughness is in m/m: times 1000 it is in m/km, times 63360 in inches per mile.
"""

from __future__ import annotations

from ctypes import c_float
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Integers, Reals, integers, mask
from ._library import NO, YES, call, yes_or_no
from ._profiles import profile_in_metres, tracks_in_metres


class RideIndex(IntEnum):
    """What roughness is told by."""

    IRI = 1  #: International Roughness Index of one track, m/m
    RN = 2  #: root-mean-square statistic of the Ride Number filter, m/m
    TWO_RN = 3  #: RN of two tracks, for must_grind_two_tracks alone
    HRI = 4  #: Half-car Roughness Index of two tracks, m/m
    MRI = 5  #: Mean Roughness Index of two tracks, m/m
    RIDE_NUMBER = 6  #: Ride Number of two tracks, 0 to 5
    WIM = 9  #: WIM error index of one track, m/m, for a continuous index


@dataclass(frozen=True)
class SegmentIndices:
    """The index of each segment, and its length in metres."""

    index: Reals  #: -1.0 for a segment without samples
    length: Reals  #: m


def ride_index(
    profile: ArrayLike,
    interval: float,
    *,
    index: RideIndex = RideIndex.IRI,
    moving_average: bool = True,
    excluded: ArrayLike | None = None,
    allow_nonfinite: bool = False,
) -> float:
    """Overall ride index of one profile, m/m (ride_dlldrv).

    index           RideIndex.IRI or .RN; 5 exp(-160 RN) is the Ride Number
    moving_average  takes a 250 mm moving average ahead of the quarter car, as
                    profiles at intervals below 167 mm need it
    excluded        for each sample, whether it is left out

    -1.0 when every sample was left out.
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    result = c_float()
    call(
        "ride_dlldrv",
        NO if excluded is None else YES,
        yes_or_no(moving_average),
        index,
        samples.size,
        samples,
        mask(excluded, samples.size, "excluded"),
        interval,
        result,
    )
    return result.value


def segment_ride_indices(
    profile: ArrayLike,
    interval: float,
    segment_points: ArrayLike,
    *,
    index: RideIndex = RideIndex.IRI,
    moving_average: bool = True,
    allow_nonfinite: bool = False,
) -> SegmentIndices:
    """Ride index of each of a row of segments, m/m (rideseg_dlldrv).

    segment_points  the samples of each segment, both boundary samples
                    included: consecutive segments share one. The last element
                    counts for nothing: the last segment runs to the end.

    The rest as in ride_index.
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    points = integers(segment_points, "segment_points")
    result = _room(points)
    call(
        "rideseg_dlldrv",
        yes_or_no(moving_average),
        index,
        samples.size,
        samples,
        interval,
        points.size,
        points,
        result.index,
        result.length,
    )
    return result


def continuous_ride_index(
    profile: ArrayLike,
    interval: float,
    *,
    base_length: float = 7.62,
    index: RideIndex = RideIndex.IRI,
    moving_average: bool = True,
    allow_nonfinite: bool = False,
) -> Reals:
    """Ride index about each sample, m/m (ridecon_dlldrv).

    base_length  of the moving statistic, m
    index        RideIndex.IRI, .RN or .WIM. With .WIM moving_average is the
                 bridging filter of wim_error_index, and base_length unused
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    result = np.zeros_like(samples)
    call(
        "ridecon_dlldrv",
        yes_or_no(moving_average),
        interval,
        base_length,
        index,
        samples.size,
        samples,
        result,
    )
    return result


def two_track_ride_index(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    *,
    index: RideIndex = RideIndex.MRI,
    moving_average: bool = True,
    excluded: ArrayLike | None = None,
    allow_nonfinite: bool = False,
) -> float:
    """Overall ride index of two wheel tracks (ride2chan_dlldrv).

    index     RideIndex.MRI or .HRI, m/m, or .RIDE_NUMBER, 0 to 5
    excluded  for each sample, whether it is left out, in both tracks

    When every sample was left out, -1.0, or 0.0 for the Ride Number.
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    size = pair[0].size
    result = c_float()
    call(
        "ride2chan_dlldrv",
        NO if excluded is None else YES,
        yes_or_no(moving_average),
        index,
        size,
        *pair,
        mask(excluded, size, "excluded"),
        interval,
        result,
    )
    return result.value


def two_track_segment_ride_indices(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    segment_points: ArrayLike,
    *,
    index: RideIndex = RideIndex.MRI,
    moving_average: bool = True,
    allow_nonfinite: bool = False,
) -> SegmentIndices:
    """Ride index of two tracks for each segment (rideseg2chan_dlldrv).

    The arguments are those of segment_ride_indices, index and its unit those
    of two_track_ride_index.
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    points = integers(segment_points, "segment_points")
    result = _room(points)
    call(
        "rideseg2chan_dlldrv",
        yes_or_no(moving_average),
        index,
        pair[0].size,
        *pair,
        interval,
        points.size,
        points,
        result.index,
        result.length,
    )
    return result


def two_track_continuous_ride_index(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    *,
    base_length: float = 7.62,
    index: RideIndex = RideIndex.MRI,
    moving_average: bool = True,
    allow_nonfinite: bool = False,
) -> Reals:
    """Ride index of two tracks about each sample (ridecon2chan_dlldrv).

    base_length  of the moving statistic, m
    index        as in two_track_ride_index; the Ride Number is that of the
                 left track alone
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    result = np.zeros_like(pair[0])
    call(
        "ridecon2chan_dlldrv",
        yes_or_no(moving_average),
        index,
        result.size,
        *pair,
        interval,
        base_length,
        result,
    )
    return result


def wim_error_index(
    profile: ArrayLike,
    interval: float,
    *,
    bridging_filter: bool = True,
    shrouding_distance: float = 0.0,
    allow_nonfinite: bool = False,
) -> Reals:
    """WIM error index at each sample, m/m (wimindex_dlldrv): how strongly the
    roughness around it would disturb a weigh-in-motion scale placed there.

    bridging_filter     lets a tyre of 0.25 m bridge what is narrower first
    shrouding_distance  m; goes to the diagnostic file, and has no effect
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    result = np.zeros_like(samples)
    call(
        "wimindex_dlldrv",
        yes_or_no(bridging_filter),
        interval,
        shrouding_distance,
        samples.size,
        samples,
        result,
    )
    return result


def _room(points: Integers) -> SegmentIndices:
    return SegmentIndices(
        index=np.zeros(points.size, np.float32), length=np.zeros(points.size, np.float32)
    )
