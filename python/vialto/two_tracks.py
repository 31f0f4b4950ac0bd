"""Ride indices of two wheel tracks: of a whole road, of segments, and of each sample.

Units are those of `ride`.
"""

from __future__ import annotations

from ctypes import c_float

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, integers, mask
from ._library import NO, YES, call, yes_or_no
from ._profiles import tracks_in_metres
from ._series import as_given, per_sample
from .defaults import LOCAL_BASE_LENGTH
from .ride import RideIndex, SegmentIndices, room_for


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
    """Overall ride index of two wheel tracks (``ride2chan_dlldrv``).

    Parameters
    ----------
    left, right : (N,) array_like
        Elevations, m.
    interval, moving_average, allow_nonfinite
        As in `ride_index`.
    index : RideIndex
        ``MRI``, the mean of the tracks' IRI; ``HRI``, the IRI of their mean; ``RIDE_NUMBER``.
    excluded : (N,) array_like of bool, optional
        Samples to leave out, in both tracks.

    Returns
    -------
    float
        m/m, or 0 to 5 for the Ride Number. When every sample was left out, -1.0, or 0.0 for the
        Ride Number.

    Raises
    ------
    VialtoError
        Another index; for MRI and HRI, profiles that are too short, as in `ride_index`. The Ride
        Number of such profiles is NaN.
    ValueError
        As in `ride_index`; or tracks with different lengths or indexes.

    References
    ----------
    ASTM E1926, ASTM E1489; M. W. Sayers, "Two Quarter-Car Models for Defining Road Roughness: IRI
    and HRI", Transportation Research Record 1215, 1989.
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
    """Ride index of two tracks for each of a row of segments (``rideseg2chan_dlldrv``).

    Parameters
    ----------
    left, right, interval, index, moving_average, allow_nonfinite
        As in `two_track_ride_index`.
    segment_points
        As in `segment_ride_indices`.

    Returns
    -------
    SegmentIndices
        As of `segment_ride_indices`, in the unit of `two_track_ride_index`. A segment whose
        filtered slopes are all 0.0 has the Ride Number -1.0.

    Raises
    ------
    VialtoError
        As in `two_track_ride_index`; or a segment before the last ends beyond the profile.
    ValueError
        As in `segment_ride_indices` and `two_track_ride_index`.

    References
    ----------
    As of `two_track_ride_index`.
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    points = integers(segment_points, "segment_points")
    result = room_for(points)
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


@per_sample
def two_track_continuous_ride_index(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    *,
    base_length: float = LOCAL_BASE_LENGTH,
    index: RideIndex = RideIndex.MRI,
    moving_average: bool = True,
    allow_nonfinite: bool = False,
) -> Reals:
    """Ride index of two tracks about each sample (``ridecon2chan_dlldrv``).

    Parameters
    ----------
    left, right, interval, moving_average, allow_nonfinite
        As in `two_track_ride_index`.
    base_length : float
        Of the moving statistic, m.
    index : RideIndex
        As in `two_track_ride_index`; the Ride Number is that of the left track alone.

    Returns
    -------
    (N,) float32
        In the unit of `two_track_ride_index`; at the ends as `continuous_ride_index`. The Ride
        Number of the first sample is 0.0. A Series where the left track is one.

    Raises
    ------
    VialtoError
        As in `two_track_ride_index`; or the base length is not shorter than the profile.
    ValueError
        As in `two_track_ride_index`.

    References
    ----------
    As of `two_track_ride_index`.
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
    return as_given(left, result)
