"""Ride indices of one wheel track: of a whole road, of segments, and of each sample.

A profile holds elevations in metres at a constant interval, also in metres. Roughness is in m/m:
times 1000 it is in m/km, times 63360 in inches per mile.
"""

from __future__ import annotations

from ctypes import c_float
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Integers, Reals, integers, mask
from ._library import NO, YES, call, yes_or_no
from ._profiles import profile_in_metres
from ._series import as_given, per_sample
from .defaults import LOCAL_BASE_LENGTH


class RideIndex(IntEnum):
    """What roughness is told by."""

    NONE = 0  #: no index; no analysis takes it
    IRI = 1  #: International Roughness Index of one track, m/m
    RN = 2  #: root-mean-square statistic of the Ride Number filter, m/m
    TWO_RN = 3  #: RN of two tracks, for must_grind_two_tracks alone
    HRI = 4  #: Half-car Roughness Index of two tracks, m/m
    MRI = 5  #: Mean Roughness Index of two tracks, m/m
    RIDE_NUMBER = 6  #: Ride Number of two tracks, 0 to 5
    WIM = 9  #: WIM error index of one track, m/m, for a continuous index


@dataclass(frozen=True)
class SegmentIndices:
    """The index of each of K segments.

    Attributes
    ----------
    index : (K,) float32
        In the unit of the index; -1.0 for a segment without samples.
    length : (K,) float32
        m; the last segment's ends with the last sample that has an index.
    """

    index: Reals
    length: Reals


def ride_index(
    profile: ArrayLike,
    interval: float,
    *,
    index: RideIndex = RideIndex.IRI,
    moving_average: bool = True,
    excluded: ArrayLike | None = None,
    allow_nonfinite: bool = False,
) -> float:
    """Overall ride index of one profile (``ride_dlldrv``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m.
    interval : float
        m; up to 1 m for IRI and 0.25 m for RN, beyond which 32 bits lose the result.
    index : RideIndex
        ``IRI`` or ``RN``.
    moving_average : bool
        Takes a 250 mm moving average ahead of the quarter car, as profiles at intervals below
        167 mm need it.
    excluded : (N,) array_like of bool, optional
        Samples to leave out: the filters run through them, and the mean passes them by.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    float
        m/m; of RN, the Ride Number is 5 exp(-160 RN). -1.0 when every sample was left out.

    Raises
    ------
    VialtoError
        Another index, or a profile that is no longer than the moving average (without it, than one
        interval).
    ValueError
        Samples that are not finite, an interval outside 1 mm to 1 m, or flags of another length.

    Notes
    -----
    The last 250 mm (without the moving average, the last sample) carry no index and never count.

    References
    ----------
    ASTM E1926 (IRI), ASTM E1489 (RN).
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
    """Ride index of each of a row of consecutive segments (``rideseg_dlldrv``).

    The filters run through the whole profile once: no segment but the first starts cold.

    Parameters
    ----------
    profile, interval, index, moving_average, allow_nonfinite
        As in `ride_index`.
    segment_points : (K,) array_like of int
        The samples of each segment, both boundary samples included: consecutive segments share
        one. The last element counts for nothing: the last segment runs to the end.

    Returns
    -------
    SegmentIndices
        m/m. The last segment loses the 250 mm (without the moving average, the sample) at the end
        of the profile that carry no index, and is told that much shorter. An earlier segment that
        reaches into them counts what lies there as zeros, and comes out too smooth.

    Raises
    ------
    VialtoError
        As in `ride_index`; or a segment before the last ends beyond the profile.
    ValueError
        As in `ride_index`; or the points are no whole numbers.

    See Also
    --------
    roughness : the same for sections in metres, as a table.

    References
    ----------
    As of `ride_index`.
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    points = integers(segment_points, "segment_points")
    result = room_for(points)
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


@per_sample
def continuous_ride_index(
    profile: ArrayLike,
    interval: float,
    *,
    base_length: float = LOCAL_BASE_LENGTH,
    index: RideIndex = RideIndex.IRI,
    moving_average: bool = True,
    allow_nonfinite: bool = False,
) -> Reals:
    """Ride index about each sample, as a moving statistic (``ridecon_dlldrv``).

    Parameters
    ----------
    profile, interval, allow_nonfinite
        As in `ride_index`.
    base_length : float
        Of the moving statistic, m; shorter than the profile. Below two intervals nothing is
        smoothed.
    index : RideIndex
        ``IRI``, ``RN`` or ``WIM``.
    moving_average : bool
        As in `ride_index`; with ``WIM`` the bridging filter of `wim_error_index`, and
        ``base_length`` is unused.

    Returns
    -------
    (N,) float32
        m/m, centred on each sample. A Series where the profile is one.

    Raises
    ------
    VialtoError
        As in `ride_index`, or with ``WIM`` as in `wim_error_index`; or the base length is not
        shorter than the profile.
    ValueError
        As in `ride_index`.

    Notes
    -----
    Within half a base length of an end the mean is taken of what goes on beyond the end along a
    straight line. The IRI can be negative there. At the far end the 250 mm that carry no index
    enter as zeros, so that the statistic falls over the last half base length. Judge a threshold
    between these ends.

    References
    ----------
    AASHTO R 54 for the use of a continuous index.
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
    return as_given(profile, result)


def room_for(points: Integers) -> SegmentIndices:
    """Indices of segments that the library has yet to fill in."""
    return SegmentIndices(
        index=np.zeros(points.size, np.float32), length=np.zeros(points.size, np.float32)
    )
