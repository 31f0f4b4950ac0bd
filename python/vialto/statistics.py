"""Distribution of a series of values, such as a ride index along a road."""

from __future__ import annotations

from ctypes import c_float
from dataclasses import dataclass

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, mask, reals
from ._library import NO, YES, call


@dataclass(frozen=True)
class Histogram:
    """How values spread over K classes.

    Attributes
    ----------
    percentages : (K,) float32
        Of the values, in each class.
    above_threshold : float
        Percentage of the values above the threshold.
    """

    percentages: Reals
    above_threshold: float


def histogram(
    values: ArrayLike,
    *,
    classes: int,
    low: float,
    high: float,
    step: float | None = None,
    threshold: float | None = None,
    excluded: ArrayLike | None = None,
    allow_nonfinite: bool = False,
) -> Histogram:
    """Percentages of the values in classes (``histgrm_dlldrv``).

    Parameters
    ----------
    values : (N,) array_like
        In any unit, which boundaries, step and threshold share.
    classes : int
        How many, the open ones below ``low`` and above ``high`` among them.
    low, high : float
        First and last boundary; a value on a boundary belongs to the class below it.
    step : float, optional
        Between the inner boundaries; by default it makes the inner classes equally wide.
    threshold : float, optional
        Of the exceedance; ``high`` by default.
    excluded : (N,) array_like of bool, optional
        Values to leave out.
    allow_nonfinite : bool
        Asks the library about values that are not finite, which else are refused.

    Returns
    -------
    Histogram
        The percentages.

    Raises
    ------
    VialtoError
        No value, or no class.
    ValueError
        Values that are not finite, or flags of another length.
    """
    series = reals(values, "values", allow_nonfinite)
    if step is None:
        step = (high - low) / (classes - 2) if classes > 2 else high - low
    if threshold is None:
        threshold = high
    percentages = np.zeros(max(classes, 0), np.float32)
    above = c_float()
    call(
        "histgrm_dlldrv",
        NO if excluded is None else YES,
        classes,
        series.size,
        low,
        high,
        step,
        threshold,
        series,
        mask(excluded, series.size, "excluded"),
        percentages,
        above,
    )
    return Histogram(percentages, above.value)
