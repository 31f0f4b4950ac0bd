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
from ._library import call
from ._profiles import profile_in_metres
from .defaults import POINTS_PER_OCTAVE, STRAIGHTEDGE


class Density(IntEnum):
    """Which power spectral density."""

    ELEVATION = 1  #: m^3, that is m^2 per cycle/m
    SLOPE = 2  #: m, that is 1 per cycle/m


class FrequencyGrid(IntEnum):
    """How the frequencies of a spectrum lie."""

    OCTAVE = 1  #: so many points per octave
    EVEN = 2  #: evenly spaced


@dataclass(frozen=True)
class Spectrum:
    """Power spectral density at F frequencies.

    Attributes
    ----------
    frequency : (F,) float32
        cycles/m, ascending; its inverse is a wavelength in metres.
    density : (F,) float32
        One-sided density there; `Density` tells its unit.
    """

    frequency: Reals
    density: Reals


@dataclass(frozen=True)
class StraightedgeResponse(ValidRange):
    """What a rolling straightedge shows.

    Attributes
    ----------
    first, last : int
        The valid elements, inclusive: half a length of straightedge from the ends. Outside them
        the deflection is 0.0.
    deflection : (N,) float32
        m; the height at the middle less the mean of those at the two ends: positive over a bump.
    rms_vertical_acceleration : float
        Per unit speed squared, 1/m.
    """

    deflection: Reals
    rms_vertical_acceleration: float


def power_spectral_density(
    profile: ArrayLike,
    interval: float,
    *,
    kind: Density = Density.SLOPE,
    points_per_octave: int = POINTS_PER_OCTAVE,
    frequency_interval: float | None = None,
    first: int = 0,
    last: int | None = None,
    allow_nonfinite: bool = False,
) -> Spectrum:
    """Power spectral density of a stretch of profile (``psd_dll``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m.
    interval : float
        m
    kind : Density
        Of elevation or of slope.
    points_per_octave : int
        Of the grid of frequencies.
    frequency_interval : float, optional
        cycles/m; asks for an evenly spaced grid instead, with this spacing or, if that is wider,
        the finest one that the stretch allows.
    first, last : int
        The stretch, inclusive, of at most 10,000,000 samples; by default the whole profile.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    Spectrum
        Of the stretch less its mean slope. A density is the mean over the band about its
        frequency: summed over even bands it is half the squared amplitude of a wave.

    Raises
    ------
    VialtoError
        A stretch of more than 10,000,000 samples, or one that begins ahead of the profile.
    IndexError
        A stretch that ends behind the profile.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    J. S. Bendat, A. G. Piersol, "Random Data: Analysis and Measurement Procedures".
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    last = last_sample(last, samples.size)
    size = last - first + 1
    frequency = np.zeros(max(size, 0), np.float32)
    density = np.zeros_like(frequency)
    begin, end = c_int32(), c_int32()
    call(
        "psd_dll",
        first,
        last,
        kind,
        FrequencyGrid.OCTAVE if frequency_interval is None else FrequencyGrid.EVEN,
        points_per_octave,
        frequency_interval or 0.0,
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
    length: float = STRAIGHTEDGE,
    allow_nonfinite: bool = False,
) -> StraightedgeResponse:
    """Deflection under a rolling straightedge (``rse_dlldrv``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m.
    interval : float
        m
    length : float
        Of the straightedge, m. A profile shorter than it has no valid element.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    StraightedgeResponse
        The deflections, m, and where they are valid.

    Raises
    ------
    VialtoError
        The length is negative or not a number.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    EN 13036-7, "Irregularity measurement of pavement courses: the straightedge test".
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    deflection = np.zeros_like(samples)
    acceleration = c_float()
    first, last = c_int32(), c_int32()
    call(
        "rse_dlldrv",
        samples.size,
        interval,
        length,
        samples,
        deflection,
        acceleration,
        first,
        last,
    )
    return StraightedgeResponse(
        first=first.value,
        last=last.value,
        deflection=deflection,
        rms_vertical_acceleration=acceleration.value,
    )
