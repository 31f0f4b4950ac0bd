"""The trace of a simulated profilograph.

Distances are in metres. Heights have the unit of the profile, which may be any.
"""

from __future__ import annotations

from ctypes import c_int32
from dataclasses import dataclass

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, ValidRange, last_sample, reals
from ._library import call
from ._profiles import check_interval
from .defaults import (
    TWELVE_WHEELS,
)


@dataclass(frozen=True)
class ProfilographTrace(ValidRange):
    """What a profilograph draws, at the indexes of the profile.

    Attributes
    ----------
    first, last : int
        The valid samples, inclusive: those with all wheels on the profile.
    height : (N,) float32
        In the unit of the profile; NaN where it is not valid.
    """

    height: Reals


def profilograph_trace(
    profile: ArrayLike,
    interval: float,
    *,
    wheel_offsets: ArrayLike = TWELVE_WHEELS,
    first: int = 0,
    last: int | None = None,
    allow_nonfinite: bool = False,
) -> ProfilographTrace:
    """The profile at the sensing wheel less the mean height of the support wheels (``pgfilt_dll``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, in any unit, which the trace has as well.
    interval : float
        m
    wheel_offsets : (W,) array_like
        Distance of each pair of wheels ahead of and behind the sensing wheel, m.
    first, last : int
        The stretch to use, inclusive; by default the whole profile.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    ProfilographTrace
        The trace, in the unit of the profile, and where it is valid.

    Raises
    ------
    VialtoError
        A stretch that is no longer than the beam, or no wheels.
    IndexError
        A stretch that ends behind the profile.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    ASTM E1274, Measuring Pavement Roughness Using a Profilograph.
    """
    check_interval(interval)
    samples = reals(profile, "profile", allow_nonfinite)
    offsets = reals(wheel_offsets, "wheel_offsets")
    height = np.full_like(samples, np.nan)
    begin, end = c_int32(), c_int32()
    call(
        "pgfilt_dll",
        first,
        last_sample(last, samples.size),
        interval,
        offsets.size,
        samples.size,
        offsets,
        samples,
        height,
        begin,
        end,
    )
    return ProfilographTrace(first=begin.value, last=end.value, height=height)
