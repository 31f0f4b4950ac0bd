"""Profiles as the library reads them. What is surely no road is refused, or warned of."""

from __future__ import annotations

import sys
import warnings
from pathlib import Path

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Doubles, Reals, reals
from ._series import same_index

MM_PER_M = 1000.0

SHORTEST_INTERVAL, LONGEST_INTERVAL = 0.001, 1.0  # m
STEEPEST_ROAD = 0.5  # m/m; mean slope between samples, which a profile in mm has at 0.5 mm/m
SMOOTHEST_ROAD_MM = 0.05  # mm/m; likewise: a profile in m that is rougher than 50 mm/m has more
FLATTEST_TRACE = 0.04  # of the blanking band; in metres, a trace has less up to 0.1 m
HIGHEST_STEP = 0.5  # m; between two samples, which a kerb does not have
HIGHEST_ROAD = 512.0  # m; 32-bit heights above it are 0.06 mm apart and more

_PACKAGE = str(Path(__file__).parent)


class UnitWarning(UserWarning):
    """Data that is surely in another unit than the function takes, or that is no elevation."""


def check_interval(interval: float, name: str = "interval") -> float:
    """The interval, if samples of a road may be so far apart."""
    if not SHORTEST_INTERVAL <= interval <= LONGEST_INTERVAL:
        raise ValueError(
            f"{name} {interval:g} m lies outside {SHORTEST_INTERVAL:g} m to {LONGEST_INTERVAL:g} m"
        )
    return interval


def profile_in_metres(
    values: ArrayLike, interval: float, name: str = "profile", allow_nonfinite: bool = False
) -> Reals:
    """Elevations in metres; warns of those that surely are in another unit."""
    check_interval(interval)
    samples = reals(values, name, allow_nonfinite)
    check_metres(samples, interval, name)
    return samples


def tracks_in_metres(
    left: ArrayLike, right: ArrayLike, interval: float, allow_nonfinite: bool = False
) -> tuple[Reals, Reals]:
    """The profiles of two wheel tracks, of one length."""
    pair = (
        profile_in_metres(left, interval, "left", allow_nonfinite),
        profile_in_metres(right, interval, "right", allow_nonfinite),
    )
    if pair[0].size != pair[1].size:
        raise ValueError(f"the tracks have {pair[0].size} and {pair[1].size} samples")
    if not same_index(left, right):
        raise ValueError("left and right are Series with different indexes")
    return pair


def profile_in_mm(
    values: ArrayLike, interval: float, name: str, allow_nonfinite: bool = False
) -> Reals:
    """Elevations in millimetres; warns of those that surely are in metres."""
    check_interval(interval)
    samples = reals(values, name, allow_nonfinite)
    if 0.0 < float(np.mean(_rises(samples))) / interval < SMOOTHEST_ROAD_MM:
        _warn(f"{name} has slopes below {SMOOTHEST_ROAD_MM} mm/m: is it in millimetres?")
    return samples


def check_metres(samples: Reals | Doubles, interval: float, name: str) -> None:
    """Warn of elevations that are surely not in metres, no elevations, or too high for 32 bits."""
    rises = _rises(samples)
    steepness = float(np.mean(rises)) / interval
    step = float(np.max(rises))
    if steepness > STEEPEST_ROAD:
        _warn(f"{name} has slopes of {steepness:.3g} m/m: is it in metres?")
    elif step > HIGHEST_STEP:
        _warn(f"{name} jumps by {step:.4g} m in one step: is it a mark for a missing sample?")
    highest = float(np.max(np.abs(samples), initial=0.0))
    if highest > HIGHEST_ROAD and np.isfinite(highest):
        apart = MM_PER_M * float(np.spacing(np.float32(highest)))
        _warn(
            f"{name} reaches {highest:.0f} m, where 32-bit heights are {apart:.2g} mm apart:"
            " subtract a constant"
        )


def check_trace_in_mm(heights: Reals, blanking_band: float) -> None:
    """Warn of a trace that surely is in metres beside a blanking band in millimetres."""
    highest = float(np.max(np.abs(heights), initial=0.0))
    if 0.0 < highest < FLATTEST_TRACE * blanking_band:
        _warn(
            f"trace stays within {highest:.2g} of 0 and the blanking band is {blanking_band:g}"
            " wide: is it in the same unit?"
        )


def _rises(samples: Reals | Doubles) -> Reals | Doubles:
    """How far neighbours lie apart, of those that are finite; 0.0 where there are none."""
    with np.errstate(invalid="ignore", over="ignore"):
        rises = np.abs(np.diff(samples))
    rises = rises[np.isfinite(rises)]
    return rises if rises.size > 0 else np.zeros(1, np.float32)


def _warn(words: str) -> None:
    """Warn in the line of the host that called the package."""
    level, frame = 1, sys._getframe()
    while frame.f_back and frame.f_code.co_filename.startswith(("<string>", _PACKAGE)):
        level, frame = level + 1, frame.f_back
    warnings.warn(words, UnitWarning, stacklevel=level)
