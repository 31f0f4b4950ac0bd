"""Series of pandas: whoever hands one over gets one back, with its index."""

from __future__ import annotations

import sys
from collections.abc import Callable
from typing import TYPE_CHECKING, Any, Concatenate, ParamSpec, Protocol, TypeVar, cast, overload

from numpy.typing import ArrayLike, NDArray

if TYPE_CHECKING:
    import pandas as pd

_P = ParamSpec("_P")
_A = TypeVar("_A", bound=NDArray[Any])
_Result = TypeVar("_Result", bound=NDArray[Any], covariant=True)


class PerSample(Protocol[_P, _Result]):
    """An analysis with a value for each sample: an array, or a Series where it takes one."""

    @overload
    def __call__(
        self, profile: pd.Series[Any], /, *args: _P.args, **kwargs: _P.kwargs
    ) -> pd.Series[Any]: ...

    @overload
    def __call__(self, profile: ArrayLike, /, *args: _P.args, **kwargs: _P.kwargs) -> _Result: ...


def per_sample(analysis: Callable[Concatenate[ArrayLike, _P], _A]) -> PerSample[_P, _A]:
    """Say of an analysis that gives `as_given` what its types are; changes nothing."""
    return cast("PerSample[_P, _A]", analysis)


def as_given(samples: Any, result: _A) -> _A:
    """The result as a Series with the index of the samples, if they are one."""
    if not is_series(samples):
        return result
    return cast(_A, sys.modules["pandas"].Series(result, index=samples.index, name=samples.name))


def same_index(left: Any, right: Any) -> bool:
    """Whether two columns belong together: not if they are Series that are indexed differently."""
    return not (is_series(left) and is_series(right)) or bool(left.index.equals(right.index))


def is_series(values: Any) -> bool:
    """Whether this is a Series. Whoever has one has loaded pandas."""
    pandas = sys.modules.get("pandas")
    return pandas is not None and isinstance(values, pandas.Series)
