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


class FilterKind(IntEnum):
    NONE = 0
    MOVING_AVERAGE = 1
    IRI = 2  #: quarter car with the IRI parameters
    RN = 3  #: quarter car with the Ride Number parameters
    BUTTERWORTH = 4  #: third order
    ANTI_SMOOTHING = 5
    DETREND = 6  #: less the straight line
    BRIDGE = 7


class FilterBand(IntEnum):
    """What a moving average or Butterworth filter lets pass."""

    NONE = 0
    BAND_PASS = 1
    LOW_PASS = 2
    HIGH_PASS = 3
    CENTRED_BAND = 4  #: Butterworth only: about a centre frequency


class FilterOutput(IntEnum):
    ELEVATION = 1
    SLOPE = 2


@dataclass(frozen=True)
class Filter:
    """Settings of a filter; by default the quarter car of the IRI."""

    kind: FilterKind = FilterKind.IRI
    band: FilterBand = FilterBand.NONE
    output: FilterOutput = FilterOutput.SLOPE
    moving_average: bool = True  #: 250 mm, ahead of a quarter car
    long_wavelength: float = 0.0  #: m; cutoff or base length of a high-pass
    short_wavelength: float = 0.0  #: m; of a low-pass, ANTI_SMOOTHING, BRIDGE
    velocity: float = 80.46  #: km/h; of the Ride Number filter

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
    """Element i belongs to the sample half a window behind it: the shift is
    not undone. Outside the valid elements the deviation is 0.0."""

    deviation: Reals  #: m; distance of a sample from the mean about it


def anti_smooth(
    profile: ArrayLike,
    interval: float,
    *,
    base_length: float = 0.25,
    allow_nonfinite: bool = False,
) -> AntiSmoothed:
    """Distance of each sample from the mean of a window around it
    (antismth_dlldrv). Profile, interval and the window's base length are in
    metres."""
    deviation = profile_in_metres(profile, interval, "profile", allow_nonfinite).copy()
    first, last = c_int32(), c_int32()
    call("antismth_dlldrv", interval, base_length, deviation.size, deviation, first, last)
    return AntiSmoothed(first=first.value, last=last.value, deviation=deviation)
