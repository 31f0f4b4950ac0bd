"""Spectrum and rolling straightedge.

A profile holds elevations in metres at a constant interval, also in metres.
"""

from __future__ import annotations

from ctypes import c_float, c_int32
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, ValidRange, last_sample
from ._library import NO, YES, call
from ._profiles import profile_in_metres


class Density(IntEnum):
    """Which power spectral density."""

    ELEVATION = 1  #: m^3, that is m^2 per cycle/m
    SLOPE = 2  #: m, that is 1 per cycle/m


@dataclass(frozen=True)
class Spectrum:
    frequency: Reals  #: cycles/m, ascending
    density: Reals  #: one-sided density there; see Density for its unit


@dataclass(frozen=True)
class StraightedgeResponse(ValidRange):
    """Outside the valid elements the deflection is 0.0."""

    deflection: Reals  #: m; the middle less the mean of the two ends
    rms_vertical_acceleration: float  #: per unit speed squared, 1/m


def power_spectral_density(
    profile: ArrayLike,
    interval: float,
    *,
    kind: Density = Density.SLOPE,
    points_per_octave: int = 12,
    frequency_interval: float | None = None,
    first: int = 0,
    last: int | None = None,
    allow_nonfinite: bool = False,
) -> Spectrum:
    """Power spectral density of a stretch of profile (psd_dll).

    points_per_octave   of the grid of frequencies
    frequency_interval  cycles/m; asks for an evenly spaced grid instead, with
                        this spacing or, if that is wider, the finest one that
                        the stretch allows
    first, last         the stretch, inclusive; by default the whole profile
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    last = last_sample(last, samples.size)
    size = last - first + 1
    even = frequency_interval is not None
    frequency = np.zeros(max(size, 0), np.float32)
    density = np.zeros_like(frequency)
    begin, end = c_int32(), c_int32()
    call(
        "psd_dll",
        first,
        last,
        kind,
        NO if even else YES,
        points_per_octave,
        frequency_interval if even else 0.0,
        size,
        interval,
        samples,
        frequency,
        density,
        begin,
        end,
    )
    valid = ValidRange(begin.value, end.value).valid
    return Spectrum(frequency[valid], density[valid])


def rolling_straightedge(
    profile: ArrayLike,
    interval: float,
    *,
    length: float = 3.0,
    allow_nonfinite: bool = False,
) -> StraightedgeResponse:
    """Deflection under a straightedge of a length in metres (rse_dlldrv)."""
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    deflection = np.zeros_like(samples)
    acceleration = c_float()
    first, last = c_int32(), c_int32()
    call(
        "rse_dlldrv", samples.size, interval, length, samples, deflection, acceleration, first, last
    )
    return StraightedgeResponse(
        first=first.value,
        last=last.value,
        deflection=deflection,
        rms_vertical_acceleration=acceleration.value,
    )
