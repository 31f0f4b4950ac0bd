"""What analyses take and give as arrays.

The library reads and writes contiguous arrays of float32 and int32, and trusts
the sizes that it is told: whatever a caller hands over is brought into that
form here, and its length checked against that of its companions.
"""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

Reals = NDArray[np.float32]
Doubles = NDArray[np.float64]
Integers = NDArray[np.int32]


@dataclass(frozen=True)
class ValidRange:
    """A result that is valid in a stretch of its array.

    Attributes
    ----------
    first, last : int
        The valid elements, inclusive, counted from 0; ``last`` lies below ``first`` where nothing
        is valid.
    """

    first: int
    last: int

    @property
    def valid(self) -> slice:
        """The valid elements, as in ``trace.height[trace.valid]``."""
        return slice(self.first, max(self.first, self.last + 1))


def _line(values: ArrayLike, name: str, dtype: type) -> NDArray[Any]:
    array: NDArray[Any] = np.asarray(values, dtype=dtype)
    if array.ndim != 1:
        raise ValueError(f"{name} has {array.ndim} dimensions instead of one")
    return np.ascontiguousarray(array)


def _finite(array: NDArray[Any], name: str, allow_nonfinite: bool) -> NDArray[Any]:
    """The array, if all of it is finite or need not be."""
    if allow_nonfinite or np.isfinite(array).all():
        return array
    spoilt = np.flatnonzero(~np.isfinite(array))
    first = spoilt[0]
    raise ValueError(
        f"{name} holds {spoilt.size} of {array.size} values that are not finite,"
        f" the first at index {first} ({array[first]})"
    )


def reals(values: ArrayLike, name: str, allow_nonfinite: bool = False) -> Reals:
    """The values as the library reads them; a copy only where it takes one."""
    return _finite(_line(values, name, np.float32), name, allow_nonfinite)


def doubles(values: ArrayLike, name: str, allow_nonfinite: bool = False) -> Doubles:
    """The same in 64-bit."""
    return _finite(_line(values, name, np.float64), name, allow_nonfinite)


def integers(values: ArrayLike, name: str) -> Integers:
    """The values as the library reads them, if int32 holds each of them."""
    array = np.asarray(values)
    if array.ndim != 1 or (array.size > 0 and array.dtype.kind not in "iu"):
        raise ValueError(f"{name} is no list of whole numbers")
    limits = np.iinfo(np.int32)
    if array.size > 0 and not (limits.min <= array.min() and array.max() <= limits.max):
        raise OverflowError(f"{name} holds a number that is no 32-bit integer")
    return np.ascontiguousarray(array, dtype=np.int32)


def mask(flags: ArrayLike | None, size: int, name: str) -> Integers | None:
    """1 where a flag is set, 0 elsewhere; None where no flags are given."""
    if flags is None:
        return None
    array = np.asarray(np.asarray(flags) != 0, dtype=np.int32)
    if array.shape != (size,):
        raise ValueError(f"{name} has the shape {array.shape} instead of {(size,)}")
    return array


def last_sample(last: int | None, size: int) -> int:
    """The inclusive end of a stretch, which must lie in the array."""
    if last is None:
        return size - 1
    if last >= size:
        raise IndexError(f"sample {last} of an array of {size}")
    return last
