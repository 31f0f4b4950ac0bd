"""The simulated diamond grinder, and the search for what it must grind.

A profile holds elevations in metres at a constant interval, also in metres.
"""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Integers, Reals
from ._library import call, yes_or_no
from ._profiles import profile_in_metres, tracks_in_metres
from ._records import MOST_PASSES, GrinderSetup, GrindSpotRecord, MustGrindCfg
from ._series import as_given, per_sample
from .defaults import (
    GRIND_GAP,
    GRIND_LENGTH,
    GRIND_THRESHOLD,
    GRINDER_DEPTH_MM,
    GRINDER_HEAD_POSITION,
    GRINDER_TANDEM_SPREAD,
    GRINDER_WHEEL_BASE,
    GRINDER_WHEEL_LENGTH,
    LOCAL_BASE_LENGTH,
)
from .ride import RideIndex


class GrindFlag(IntEnum):
    """What becomes of a sample."""

    NONE = 1  #: not ground, or not to be ground
    WITHIN = 2  #: ground no deeper than the grinder's limit
    DEEPER = 3  #: ground deeper


class Direction(IntEnum):
    """Where a pass is heading."""

    HIGHER = 1  #: towards higher sample numbers
    LOWER = 2  #: towards lower ones


@dataclass(frozen=True)
class Grinder:
    """A diamond grinder whose head runs between two tandem axles.

    Attributes
    ----------
    wheel_base : float
        From axle to axle, m.
    head_position : float
        0.0 at the axle ahead, 1.0 at the other.
    tandem_spread : float
        Between the two wheels of an axle, m.
    wheel_length : float
        Base of the wheels' moving average, m.
    max_depth_mm : float
        mm; a deeper cut is made, and flagged.
    """

    wheel_base: float = GRINDER_WHEEL_BASE
    head_position: float = GRINDER_HEAD_POSITION
    tandem_spread: float = GRINDER_TANDEM_SPREAD
    wheel_length: float = GRINDER_WHEEL_LENGTH
    max_depth_mm: float = GRINDER_DEPTH_MM


@dataclass(frozen=True)
class Pass:
    """One pass over a spot.

    Attributes
    ----------
    depth_mm : float
        Cutting level above the plane of the wheels, mm; below it, negative.
    direction : Direction
        Where it is heading.
    """

    depth_mm: float = 0.0
    direction: Direction = Direction.HIGHER


@dataclass(frozen=True)
class GrindSpot:
    """A stretch to grind, which may reach beyond the profile.

    Attributes
    ----------
    first, last : int
        Its first sample, from 0, and its last, inclusive.
    passes : sequence of Pass
        At most ten, in the order of the work.
    """

    first: int
    last: int
    passes: Sequence[Pass] = (Pass(),)


@dataclass(frozen=True)
class Ground:
    """A profile that was ground.

    Attributes
    ----------
    profile : (N,) float32
        m
    flags : (N,) int32
        A `GrindFlag` for each sample.
    """

    profile: Reals
    flags: Integers


@dataclass(frozen=True)
class GroundTracks:
    """Two tracks that were ground.

    Attributes
    ----------
    left, right : (N,) float32
        m
    flags : (N,) int32
        The greater `GrindFlag` of the two tracks.
    """

    left: Reals
    right: Reals
    flags: Integers


@dataclass(frozen=True)
class MustGrind:
    """Settings of the search for what must be ground.

    Attributes
    ----------
    index : RideIndex
        What must stay within the threshold.
    threshold : float
        Of the continuous index, m/m: an IRI of 2 m/km is 0.002.
    base_length : float
        Of that index, m.
    moving_average : bool
        250 mm, ahead of the quarter car.
    drop_short : bool
        Drops spots that are shorter than ``min_length``. Without it nothing is joined or tried.
    join_close : bool
        Joins spots closer than ``min_gap``.
    try_each : bool
        Keeps only the spots whose grinding helps.
    min_length, min_gap : float
        m
    """

    index: RideIndex = RideIndex.IRI
    threshold: float = GRIND_THRESHOLD
    base_length: float = LOCAL_BASE_LENGTH
    moving_average: bool = True
    drop_short: bool = True
    join_close: bool = True
    try_each: bool = True
    min_length: float = GRIND_LENGTH
    min_gap: float = GRIND_GAP


def grind(
    profile: ArrayLike,
    interval: float,
    spots: Sequence[GrindSpot],
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> Ground:
    """Grind spots of one profile, in their order (``grindsimu_dlldrv``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m; not changed.
    interval : float
        m
    spots : sequence of GrindSpot
        What to grind.
    grinder : Grinder
        The machine.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    Ground
        The profile, m, and a flag for each sample.

    Raises
    ------
    VialtoError
        A spot with more than ten passes, a direction that is none, or a profile that is no longer
        than the wheels' moving average.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    Notes
    -----
    The head cuts what stands above the plane of its wheels, and fills nothing. Wheels that run
    through a pothole take the head down with them: the road ahead of it and behind it is cut
    although it was even, and the dip comes out longer, which can be rougher than before. Compare
    the index before and after.

    References
    ----------
    FHWA, "Concrete Pavement Preservation Guide", second edition, 2014.
    """
    ground = profile_in_metres(profile, interval, "profile", allow_nonfinite).copy()
    flags = np.zeros(ground.size, np.int32)
    call(
        "grindsimu_dlldrv",
        interval,
        len(spots),
        ground.size,
        _grinder(grinder),
        _spots(spots),
        ground,
        flags,
    )
    return Ground(ground, flags)


def grind_two_tracks(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    spots: Sequence[GrindSpot],
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> GroundTracks:
    """Grind the same spots of two tracks (``grindsimu_2chan_dlldrv``).

    Parameters
    ----------
    left, right : (N,) array_like
        Elevations, m; not changed.
    interval, spots, grinder, allow_nonfinite
        As in `grind`.

    Returns
    -------
    GroundTracks
        The profiles, m, and a flag for each sample.

    Raises
    ------
    VialtoError
        As in `grind`.
    ValueError
        As in `grind`; or tracks with different lengths or indexes.

    References
    ----------
    As of `grind`.
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    ground = pair[0].copy(), pair[1].copy()
    flags = np.zeros(ground[0].size, np.int32)
    call(
        "grindsimu_2chan_dlldrv",
        interval,
        len(spots),
        flags.size,
        _grinder(grinder),
        _spots(spots),
        *ground,
        flags,
    )
    return GroundTracks(*ground, flags)


@per_sample
def must_grind(
    profile: ArrayLike,
    interval: float,
    settings: MustGrind = MustGrind(),
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> Integers:
    """What must be ground (``mustgrind_dlldrv``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m.
    interval : float
        m
    settings : MustGrind
        With ``RideIndex.IRI``, ``RN`` or ``WIM``.
    grinder : Grinder
        The machine.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    (N,) int32
        A `GrindFlag` for each sample; `stretches` makes a table of them. A Series where the
        profile is one.

    Raises
    ------
    VialtoError
        Another index, more than 100,000 spots, or a profile that is no longer than the base length
        of the index or the wheels' moving average.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    Notes
    -----
    A spot is kept where grinding it alone lowers the index anywhere in a stretch beyond the
    threshold, by as little as 32 bits can tell. That stretch begins up to 50 feet before the spot,
    or anywhere behind its start, however far: a car carries every shake on with it. So spots are
    ground far ahead of what is too rough. What `grind` says of potholes holds here, too: a road
    that was ground as flagged can be rougher there.

    References
    ----------
    FHWA, "Concrete Pavement Preservation Guide", second edition, 2014; AASHTO R 54.
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    flags = np.zeros(samples.size, np.int32)
    call(
        "mustgrind_dlldrv",
        samples.size,
        interval,
        _settings(settings),
        _grinder(grinder),
        samples,
        flags,
    )
    return as_given(profile, flags)


@per_sample
def must_grind_two_tracks(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    settings: MustGrind = MustGrind(index=RideIndex.MRI),
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> Integers:
    """What must be ground of two tracks, each searched for itself (``mustgrind_2chan_dlldrv``).

    Parameters
    ----------
    left, right : (N,) array_like
        Elevations, m.
    interval, grinder, allow_nonfinite
        As in `must_grind`.
    settings : MustGrind
        With ``RideIndex.MRI`` or ``HRI``, which run as IRI, ``RN``, or ``TWO_RN`` with a threshold
        on the Ride Number's scale of 0 to 5.

    Returns
    -------
    (N,) int32
        The greater `GrindFlag` of the two tracks. A Series where the left track is one.

    Raises
    ------
    VialtoError
        As in `must_grind`.
    ValueError
        As in `must_grind`; or tracks with different lengths or indexes.

    References
    ----------
    As of `must_grind`; ASTM E1489 for the Ride Number.
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    flags = np.zeros(pair[0].size, np.int32)
    call(
        "mustgrind_2chan_dlldrv",
        flags.size,
        interval,
        _settings(settings),
        _grinder(grinder),
        *pair,
        flags,
    )
    return as_given(left, flags)


def _grinder(grinder: Grinder) -> GrinderSetup:
    return GrinderSetup(
        WheelBase=grinder.wheel_base,
        HeadPosition=grinder.head_position,
        TandemSpread=grinder.tandem_spread,
        ShortWavelength=grinder.wheel_length,
        MaxGrindingDepth_mm=grinder.max_depth_mm,
    )


def _spots(spots: Sequence[GrindSpot]) -> object:
    """Passes beyond the tenth are only counted: the library refuses them."""
    records = (GrindSpotRecord * len(spots))()
    for record, spot in zip(records, spots, strict=True):
        record.iNumPasses = len(spot.passes)
        record.iStart, record.iEnd = spot.first, spot.last
        for k, one in enumerate(spot.passes[:MOST_PASSES]):
            record.iDirection[k] = one.direction
            record.xDepth_mm[k] = one.depth_mm
    return records


def _settings(settings: MustGrind) -> MustGrindCfg:
    options = settings.drop_short, settings.join_close, settings.try_each
    return MustGrindCfg(
        iRideIndexType=settings.index,
        if250mmFilter=yes_or_no(settings.moving_average),
        xRideThreshold=settings.threshold,
        xSlideBaseLength=settings.base_length,
        ib_grindopt=tuple(yes_or_no(option) for option in options),
        x_grindlength_min=settings.min_length,
        x_grindgap_min=settings.min_gap,
    )
