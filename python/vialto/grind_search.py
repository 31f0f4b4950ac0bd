"""The search for the stretches of a road that must be ground.

A profile holds elevations in metres at a constant interval, also in metres.
"""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Integers
from ._library import call, yes_or_no
from ._profiles import profile_in_metres, tracks_in_metres
from ._records import MustGrindCfg
from ._series import as_given, per_sample
from .defaults import (
    GRIND_GAP,
    GRIND_LENGTH,
    GRIND_THRESHOLD,
    LOCAL_BASE_LENGTH,
)
from .grinding import Grinder, grinder_setup
from .ride import RideIndex


@dataclass(frozen=True)
class MustGrind:
    """Settings of the search for what must be ground.

    Attributes
    ----------
    index : RideIndex, optional
        What must stay within the threshold; by default ``IRI`` for one track, ``MRI`` for two.
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

    index: RideIndex | None = None
    threshold: float = GRIND_THRESHOLD
    base_length: float = LOCAL_BASE_LENGTH
    moving_average: bool = True
    drop_short: bool = True
    join_close: bool = True
    try_each: bool = True
    min_length: float = GRIND_LENGTH
    min_gap: float = GRIND_GAP


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

    A grade is cut, or spares what stands up on it, as `grind` tells: take it off first.

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
        _settings(settings, RideIndex.IRI),
        grinder_setup(grinder),
        samples,
        flags,
    )
    return as_given(profile, flags)


@per_sample
def must_grind_two_tracks(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    settings: MustGrind = MustGrind(),
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
        _settings(settings, RideIndex.MRI),
        grinder_setup(grinder),
        *pair,
        flags,
    )
    return as_given(left, flags)


def _settings(settings: MustGrind, default: RideIndex) -> MustGrindCfg:
    options = settings.drop_short, settings.join_close, settings.try_each
    return MustGrindCfg(
        iRideIndexType=default if settings.index is None else settings.index,
        if250mmFilter=yes_or_no(settings.moving_average),
        xRideThreshold=settings.threshold,
        xSlideBaseLength=settings.base_length,
        ib_grindopt=tuple(yes_or_no(option) for option in options),
        x_grindlength_min=settings.min_length,
        x_grindgap_min=settings.min_gap,
    )
