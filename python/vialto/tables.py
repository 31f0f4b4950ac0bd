"""What an engineer asks of a road, as tables."""

from __future__ import annotations

from itertools import pairwise
from typing import TYPE_CHECKING

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._arrays import Doubles
from ._pandas import pandas, table
from ._profiles import MM_PER_M
from .defaults import JOINT_SPACING, JOINT_WINDOW_MM, SECTION
from .grinding import GrindFlag
from .joints import Feature, JointMethod, find_joints, joint_faults
from .profile_indices import ProfileIndex
from .ride import RideIndex, segment_ride_indices
from .road import TRACKS, Road
from .two_tracks import two_track_segment_ride_indices

if TYPE_CHECKING:
    import pandas as pd

PER_KM = 1000.0  # of what is told per metre
UNFILTERED_END = 0.25  # m; what carries no index at the end of a road
NO_LOT = -1.0  # the index of a lot of one sample
LONGEST_RIDE_NUMBER_INTERVAL = 0.5  # m; at 1 m the statistic is five times what it should be
ROUNDING = 1e-9  # of a number of sections


def roughness(road: Road, length: float = SECTION) -> pd.DataFrame:
    """Roughness of each section of a road.

    The filters run through the whole road once, so that no section starts cold.

    Parameters
    ----------
    road : Road
        One track or two.
    length : float
        Of a section, m; cut to whole samples.

    Returns
    -------
    DataFrame
        A row a section:

        ``begin``, ``end``
            where it lies, m
        ``complete``
            False for a last section that is shorter by more than an interval. A rest of no more
            than the 250 mm which carry no index belongs to the section before it.
        ``iri_left``, ``iri_right``
            International Roughness Index, m/km; NaN for a track that is not there
        ``mri``, ``hri``
            Mean and Half-car Roughness Index, m/km; NaN for a road of one track
        ``ride_number``
            Ride Number, 0 to 5; of a single track, as if both were alike. Good to a thousandth up
            to intervals of 0.5 m, and NaN above, where the 32-bit vehicle goes wrong
        ``filled``
            share of samples that were filled when the road was read, 0 to 1

    Raises
    ------
    VialtoError, ValueError
        As in `segment_ride_indices`; or sections that are shorter than an interval.

    See Also
    --------
    segment_ride_indices, two_track_segment_ride_indices
        Which give the same numbers in m/m; there, what the last section loses.

    References
    ----------
    ASTM E1926, ASTM E1489.
    """
    if not length >= road.interval:
        raise ValueError(f"length {length:g} m is shorter than an interval")
    bounds = section_bounds(road, length)
    points = np.diff(bounds) + 1
    average = road.moving_average

    def one(track: Doubles) -> Doubles:
        segments = segment_ride_indices(track, road.interval, points, moving_average=average)
        return PER_KM * segments.index.astype(np.float64)

    def both(index: RideIndex, scale: float = 1.0) -> Doubles:
        left, right = [*road.tracks.values()] * 2 if alone else road.tracks.values()
        segments = two_track_segment_ride_indices(
            left, right, road.interval, points, index=index, moving_average=average
        )
        return scale * segments.index.astype(np.float64)

    alone = len(road.tracks) == 1
    iri = {name: one(track) for name, track in road.tracks.items()}
    none = np.full(points.size, np.nan)
    fine = road.interval <= LONGEST_RIDE_NUMBER_INTERVAL
    return table(
        begin=road.start + road.interval * bounds[:-1],
        end=road.start + road.interval * bounds[1:],
        complete=np.diff(bounds) * road.interval > length - 1.5 * road.interval,
        **{f"iri_{name}": iri.get(name, none) for name in TRACKS},
        mri=none if alone else both(RideIndex.MRI, PER_KM),
        hri=none if alone else both(RideIndex.HRI, PER_KM),
        ride_number=both(RideIndex.RIDE_NUMBER) if fine else none,
        filled=[float(road.filled[a:b].mean()) for a, b in pairwise(bounds)],
    )


def section_bounds(road: Road, length: float) -> NDArray[np.intp]:
    """The sample at which each section begins, and the one that ends the last."""
    last = road.samples - 1
    whole = int(last * road.interval / length * (1.0 + ROUNDING))
    bounds = np.asarray(np.rint(np.arange(whole + 1) * length / road.interval), np.intp)
    rest = last - bounds[-1]
    if whole > 0 and rest * road.interval <= UNFILTERED_END + road.interval:
        bounds[-1] = last
        return bounds
    return np.append(bounds, last)


def stretches(flags: ArrayLike, interval: float, *, start: float = 0.0) -> pd.DataFrame:
    """Where a road is flagged: what must be ground, or what exceeds a threshold.

    Parameters
    ----------
    flags : (N,) bool, or GrindFlag
        For each sample, such as ``continuous > 0.002``; of the flags of ``must_grind``, those
        above ``GrindFlag.NONE`` count.
    interval : float
        m
    start : float
        Distance of the first sample, m.

    Returns
    -------
    DataFrame
        A row a stretch: its ``first`` and ``last`` sample, ``begin``, ``end`` and ``length`` in
        metres, and its greatest ``flag``. A sample stands for the interval that begins at it, so
        that the lengths add up to the flagged share of the road.

    Raises
    ------
    ValueError
        Flags that are neither bool nor `GrindFlag`.
    """
    values = np.asarray(flags)
    if values.ndim != 1:
        raise ValueError(f"flags has {values.ndim} dimensions instead of one")
    if values.dtype != bool and not np.isin(values, list(GrindFlag)).all():
        raise ValueError("flags are neither bool nor GrindFlag")
    flagged = values if values.dtype == bool else values > GrindFlag.NONE
    edges = np.flatnonzero(np.diff(np.concatenate([[False], flagged, [False]]).astype(np.int8)))
    first, behind = edges[::2], edges[1::2]
    return table(
        first=first,
        last=behind - 1,
        begin=start + interval * first,
        end=start + interval * behind,
        length=interval * (behind - first),
        flag=[values[a:b].max() for a, b in zip(first, behind, strict=True)],
    )


def lot_table(index: ProfileIndex, interval: float, *, start: float = 0.0) -> pd.DataFrame:
    """The lots of a profile index.

    Parameters
    ----------
    index : ProfileIndex
        As of `profile_index` or `run_profilograph`.
    interval : float
        m
    start : float
        Distance of the first sample, m.

    Returns
    -------
    DataFrame
        A row a lot: ``begin`` and ``end`` in metres, ``raw_index`` and ``rounded_index`` in heights
        per km (mm/km where the trace is in mm; NaN for a lot of one sample).

    References
    ----------
    ASTM E1274.
    """

    def per_km(values: list[float]) -> Doubles:
        heights = np.array(values, np.float64)
        return PER_KM * np.where(heights == NO_LOT, np.nan, heights)

    return table(
        begin=[start + interval * lot.first for lot in index.lots],
        end=[start + interval * lot.last for lot in index.lots],
        raw_index=per_km([lot.raw_index for lot in index.lots]),
        rounded_index=per_km([lot.rounded_index for lot in index.lots]),
    )


def defect_table(index: ProfileIndex, *, start: float = 0.0) -> pd.DataFrame:
    """The defects of a profile index.

    Parameters
    ----------
    index : ProfileIndex
        As of `profile_index` or `run_profilograph`.
    start : float
        Distance of the first sample, m.

    Returns
    -------
    DataFrame
        A row a defect, in the order of the lots: its ``kind``, above or below the blanking band,
        ``begin`` and ``end`` in metres, and its ``height`` beyond the band in the unit of the
        trace.

    References
    ----------
    ASTM E1274.
    """
    return table(
        kind=[defect.kind.name.lower() for defect in index.defects],
        begin=[start + defect.begin[0] for defect in index.defects],
        end=[start + defect.end[0] for defect in index.defects],
        height=[defect.height for defect in index.defects],
    )


def joint_table(
    road: Road,
    *,
    spacing: float = JOINT_SPACING,
    method: JointMethod = JointMethod.ANTI_SMOOTHING,
    window_mm: float = JOINT_WINDOW_MM,
) -> pd.DataFrame:
    """Joints and cracks of a concrete pavement, and the fault at each.

    Parameters
    ----------
    road : Road
        One track or two.
    spacing, method
        As in `find_joints`.
    window_mm
        As in `joint_faults`.

    Returns
    -------
    DataFrame
        A row for each feature of a track: ``track``, ``location`` in metres, ``kind``, joint or
        crack, and ``fault`` in millimetres, positive where the road drops, NaN within 2.4384 m of
        either end.

    Raises
    ------
    VialtoError, ValueError
        As in `find_joints` and `joint_faults`.

    References
    ----------
    AASHTO R 36.
    """
    sides = list(road.tracks)
    found = find_joints(
        road.tracks[sides[0]], road.tracks[sides[-1]], road.interval, spacing=spacing, method=method
    )
    parts = [
        table(
            track=side,
            location=road.start + features.location,
            kind=[Feature(kind).name.lower() for kind in features.kind],
            fault=joint_faults(
                MM_PER_M * road.tracks[side],
                road.interval,
                features.location,
                window_mm=window_mm,
            ),
        )
        for side, features in zip(sides, found, strict=False)
    ]
    joined: pd.DataFrame = pandas().concat(parts, ignore_index=True)
    return joined
