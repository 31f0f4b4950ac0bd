"""Filter settings, and anti-smoothing."""

from __future__ import annotations

from ctypes import c_int32
from dataclasses import dataclass
from enum import IntEnum

from numpy.typing import ArrayLike

from ._arrays import Reals, ValidRange
from ._library import call, yes_or_no
from ._profiles import profile_in_metres
from ._records import FiltCon
from .defaults import ANTI_SMOOTHING_LENGTH, RIDE_NUMBER_SPEED


class FilterKind(IntEnum):
    """What a filter does."""

    NONE = 0  #: nothing
    MOVING_AVERAGE = 1  #: mean about each sample, or what it leaves
    IRI = 2  #: quarter car with the IRI parameters
    RN = 3  #: quarter car with the Ride Number parameters
    BUTTERWORTH = 4  #: third order
    ANTI_SMOOTHING = 5  #: distance from the local mean
    DETREND = 6  #: less the straight line
    BRIDGE = 7  #: what a tyre bridges


class FilterBand(IntEnum):
    """What a moving average or Butterworth filter lets pass."""

    NONE = 0  #: for all other filters
    BAND_PASS = 1  #: between two wavelengths
    LOW_PASS = 2  #: long waves
    HIGH_PASS = 3  #: short waves
    CENTRED_BAND = 4  #: Butterworth only: about a centre frequency


class FilterOutput(IntEnum):
    """What a filter gives."""

    ELEVATION = 1  #: m
    SLOPE = 2  #: m/m


@dataclass(frozen=True)
class Filter:
    """Settings of a filter; by default the quarter car of the IRI.

    Attributes
    ----------
    kind : FilterKind
        What it does.
    band : FilterBand
        For a moving average or Butterworth filter.
    output : FilterOutput
        Elevation or slope.
    moving_average : bool
        250 mm, ahead of a quarter car.
    long_wavelength : float
        m; cutoff or base length of a high-pass.
    short_wavelength : float
        m; of a low-pass, of anti-smoothing and of the bridge filter.
    velocity : float
        km/h; of the Ride Number filter.
    """

    kind: FilterKind = FilterKind.IRI
    band: FilterBand = FilterBand.NONE
    output: FilterOutput = FilterOutput.SLOPE
    moving_average: bool = True
    long_wavelength: float = 0.0
    short_wavelength: float = 0.0
    velocity: float = RIDE_NUMBER_SPEED

    def record(self) -> FiltCon:
        """The settings as the library reads them."""
        return FiltCon(
            iMainFilterType=self.kind,
            iSubFilterType=self.band,
            iOutType=self.output,
            if250mmFilter=yes_or_no(self.moving_average),
            xLongWavelength=self.long_wavelength,
            xShortWavelength=self.short_wavelength,
            xSimuVelocity=self.velocity,
        )


@dataclass(frozen=True)
class AntiSmoothed(ValidRange):
    """Distance of each sample from the mean about it.

    Attributes
    ----------
    first, last : int
        The valid elements, inclusive; outside them the deviation is 0.0.
    deviation : (N,) float32
        m. Element i belongs to the sample half a window behind it, i + trunc(base / (2 interval))
        + 1: the shift is not undone.
    """

    deviation: Reals


def anti_smooth(
    profile: ArrayLike,
    interval: float,
    *,
    base_length: float = ANTI_SMOOTHING_LENGTH,
    allow_nonfinite: bool = False,
) -> AntiSmoothed:
    """Distance of each sample from the mean of a window around it (``antismth_dlldrv``).

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m.
    interval : float
        m
    base_length : float
        Of the window, m: from one interval to less than the profile.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    AntiSmoothed
        The deviations and where they are valid.

    Raises
    ------
    VialtoError
        The base length is below an interval, or not shorter than the profile.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    M. W. Sayers and S. M. Karamihas, "The Little Book of Profiling", 1998.
    """
    deviation = profile_in_metres(profile, interval, "profile", allow_nonfinite).copy()
    first, last = c_int32(), c_int32()
    call("antismth_dlldrv", interval, base_length, deviation.size, deviation, first, last)
    return AntiSmoothed(first=first.value, last=last.value, deviation=deviation)
