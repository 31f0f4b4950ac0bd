"""The simulated diamond grinder.

A profile holds elevations in metres at a constant interval, also in metres.
"""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Integers, Reals
from ._library import call
from ._profiles import profile_in_metres, tracks_in_metres
from ._records import MOST_PASSES, GrinderSetup, GrindSpotRecord
from .defaults import (
    GRINDER_DEPTH_MM,
    GRINDER_HEAD_POSITION,
    GRINDER_TANDEM_SPREAD,
    GRINDER_WHEEL_BASE,
    GRINDER_WHEEL_LENGTH,
)


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

    The wheels' average lies half a sample late or a whole one, unless ``wheel_length`` is a little
    below an odd number of intervals: so an even grade is cut uphill, by half a sample's rise or a
    whole one, and bumps are spared downhill. Take the grade off first.

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
        grinder_setup(grinder),
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
        grinder_setup(grinder),
        _spots(spots),
        *ground,
        flags,
    )
    return GroundTracks(*ground, flags)


def grinder_setup(grinder: Grinder) -> GrinderSetup:
    """The record that the library takes."""
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
