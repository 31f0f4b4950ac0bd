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
from .ride import RideIndex


class GrindFlag(IntEnum):
    """What becomes of a sample."""

    LEFT = 1  #: not ground
    GROUND = 2  #: ground, no deeper than the grinder's limit
    TOO_DEEP = 3  #: ground deeper


class Direction(IntEnum):
    """Where a pass is heading."""

    FORWARD = 1  #: towards higher sample numbers
    BACKWARD = 2  #: towards lower ones


@dataclass(frozen=True)
class Grinder:
    """A diamond grinder whose head runs between two tandem axles."""

    wheel_base: float = 5.5  #: m, from axle to axle
    head_position: float = 0.5  #: 0.0 at the axle ahead, 1.0 at the other
    tandem_spread: float = 0.9  #: m, between the two wheels of an axle
    wheel_length: float = 0.3  #: m; base of the wheels' moving average
    max_depth_mm: float = 8.0  #: mm; a deeper cut is made, and flagged


@dataclass(frozen=True)
class Pass:
    """One pass over a spot."""

    depth_mm: float = 0.0  #: mm; cutting level above the plane of the wheels
    direction: Direction = Direction.FORWARD


@dataclass(frozen=True)
class GrindSpot:
    """A stretch to grind, which may reach beyond the profile."""

    first: int  #: first sample, from 0
    last: int  #: last sample, inclusive
    passes: Sequence[Pass] = (Pass(),)  #: at most ten


@dataclass(frozen=True)
class Ground:
    profile: Reals  #: the ground profile, m
    flags: Integers  #: a GrindFlag for each sample


@dataclass(frozen=True)
class GroundTracks:
    left: Reals  #: the ground profiles, m
    right: Reals
    flags: Integers  #: the greater GrindFlag of the two tracks


@dataclass(frozen=True)
class MustGrind:
    """Settings of the search for what must be ground."""

    index: RideIndex = RideIndex.IRI
    threshold: float = 0.002  #: limit of the continuous ride index, m/m
    base_length: float = 7.62  #: m; of that index
    moving_average: bool = True  #: 250 mm, ahead of the quarter car
    drop_short: bool = True  #: drops spots not longer than min_length
    join_close: bool = True  #: joins spots closer than min_gap
    try_each: bool = True  #: keeps the spots whose grinding helps
    min_length: float = 0.3  #: m
    min_gap: float = 0.3  #: m


def grind(
    profile: ArrayLike,
    interval: float,
    spots: Sequence[GrindSpot],
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> Ground:
    """Grinds spots of one profile, in their order (grindsimu_dlldrv)."""
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
    """Grinds the same spots of two tracks (grindsimu_2chan_dlldrv)."""
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


def must_grind(
    profile: ArrayLike,
    interval: float,
    settings: MustGrind = MustGrind(),
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> Integers:
    """A GrindFlag for each sample: what must be ground (mustgrind_dlldrv).

    The index of the settings is RideIndex.IRI, .RN or .WIM.
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
    return flags


def must_grind_two_tracks(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    settings: MustGrind = MustGrind(index=RideIndex.MRI),
    grinder: Grinder = Grinder(),
    *,
    allow_nonfinite: bool = False,
) -> Integers:
    """The same for two tracks, of which each is searched for itself: the
    greater GrindFlag of each sample (mustgrind_2chan_dlldrv).

    The index of the settings is RideIndex.MRI or .HRI, which run as IRI, .RN,
    or .TWO_RN with a threshold on the Ride Number's scale of 0 to 5.
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
    return flags


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
