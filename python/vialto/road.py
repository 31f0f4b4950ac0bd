"""A road: tracks of elevations at an even interval, read from a file and found fit for analysis."""

from __future__ import annotations

from collections.abc import Mapping
from dataclasses import dataclass, field
from typing import TYPE_CHECKING

import numpy as np
from numpy.typing import NDArray

from ._arrays import Doubles, doubles
from ._profiles import check_interval, check_metres
from .defaults import LONGEST_SMOOTHED_INTERVAL

if TYPE_CHECKING:
    import pandas as pd

TRACKS = ("left", "right")
NO_NUMBER = "'{text:.40}' in column {column} is not a number"


@dataclass(frozen=True, eq=False)
class Quality:
    """What a file holds that a road does not, and what was done about it.

    Attributes
    ----------
    cells : DataFrame
        Every cell without a number: ``line``, ``column`` and ``text``, which is empty where the
        cell is. Lines count from 1, the header's included; in a Parquet file they are rows.
    uneven : DataFrame
        Every step that is neither the interval nor a whole number of them: the ``line`` it leads
        to, the ``distance`` there and the ``step``, both in metres.
    gaps : DataFrame
        Every row of missing samples: its ``track``, the distances ``begin`` and ``end`` of the
        samples on either side in metres (NaN where there is none), the ``line`` where it shows, how
        many samples are ``missing``, and how it was ``mended``: ``"filled"``, ``"cut off"`` at an
        end of the road, or not at all (``""``).
    interval : float
        The usual step, m.
    place : str
        What lines are called in this file: ``"line"`` or ``"row"``.
    resampled : bool
        Whether the samples were brought onto an even step.
    mended : bool
        Whether filling short gaps was asked for.
    columns : tuple of str
        What was taken of the file: the columns of the distance and of each track.
    """

    cells: pd.DataFrame
    uneven: pd.DataFrame
    gaps: pd.DataFrame
    interval: float
    place: str = "line"
    resampled: bool = False
    mended: bool = False
    columns: tuple[str, ...] = ()

    @property
    def problems(self) -> list[str]:
        """What stands between the file and a road: the first of each kind, and how many more."""
        found = []
        text = self.cells[self.cells["text"] != ""]
        gaps = self.gaps[self.gaps["mended"] == ""]
        if len(text) > 0 and (not self.mended or len(gaps) > 0):
            found.append(first_of(text, self.place, NO_NUMBER))
        if len(self.uneven) > 0 and not self.resampled:
            words = f"a step of {{step:.6g}} m where {self.interval:.6g} m is usual"
            taken = f", with {self.columns[0]} for the distance" if self.columns else ""
            uneven = first_of(self.uneven, self.place, words)
            back = bool((self.uneven["step"] < 0.0).any())
            hint = "where it falls back, another road may begin" if back else "resample evens steps"
            found.append(f"{uneven}{taken}; {hint}")
        if len(gaps) > 0:
            words = "samples missing in the {track} track: {missing}"
            longest = gaps["missing"].max() * self.interval
            found.append(
                f"{first_of(gaps, self.place, words)}, {longest:.3g} m at the longest: fill_gaps"
                " fills short ones"
            )
        return found

    def __str__(self) -> str:
        filled = int(self.gaps.loc[self.gaps["mended"] == "filled", "missing"].sum())
        return (
            f"{len(self.cells)} cells without a number, {len(self.uneven)} uneven steps"
            f"{' (resampled)' if self.resampled else ''}, {len(self.gaps)} gaps"
            f"{f' ({filled} elevations filled)' if self.mended else ''}"
        )


def first_of(rows: pd.DataFrame, place: str, words: str) -> str:
    """What is told of the first of some lines, and how many more there are."""
    first = {str(name): rows[name].iloc[0] for name in rows.columns}
    more = f" (and {len(rows) - 1} more)" if len(rows) > 1 else ""
    return f"{place} {first['line']}: {words.format_map(first)}{more}"


class RoadError(ValueError):
    """A file that holds no road; ``quality`` tells all that was found, where it got so far."""

    def __init__(self, message: str, quality: Quality | None = None) -> None:
        super().__init__(message)
        self.quality = quality


@dataclass(frozen=True, eq=False)
class Road:
    """One road: elevations of one or two wheel tracks at an even interval.

    Attributes
    ----------
    name : str
        What the road is called.
    interval : float
        From one sample to the next, m: from 1 mm to 1 m.
    tracks : mapping of str to (N,) float64
        Elevations in metres, all of them finite, under ``"left"`` and ``"right"``, or one of these.
    start : float
        Distance of the first sample, m.
    filled : (N,) bool
        Which samples were filled in one track at least; by default none.
    quality : Quality, optional
        What was found in the file.

    Raises
    ------
    ValueError
        Tracks under other names, of different lengths or with elevations that are not finite, or an
        interval outside 1 mm to 1 m.
    """

    name: str
    interval: float
    tracks: Mapping[str, Doubles]
    start: float = 0.0
    filled: NDArray[np.bool_] = field(default_factory=lambda: np.zeros(0, bool))
    quality: Quality | None = None

    def __post_init__(self) -> None:
        if not self.tracks or not set(self.tracks) <= set(TRACKS):
            raise ValueError(f"the tracks are {list(self.tracks)} instead of left, right or both")
        check_interval(self.interval)
        tracks = {name: doubles(self.tracks[name], name) for name in TRACKS if name in self.tracks}
        sizes = {track.size for track in tracks.values()}
        if len(sizes) > 1:
            raise ValueError(
                f"the tracks have {tracks['left'].size} and {tracks['right'].size} samples"
            )
        for name, track in tracks.items():
            check_metres(track, self.interval, name)
        object.__setattr__(self, "tracks", tracks)
        if self.filled.size != self.samples:
            object.__setattr__(self, "filled", np.zeros(self.samples, bool))

    @property
    def samples(self) -> int:
        """How many samples each track has."""
        return next(iter(self.tracks.values())).size

    @property
    def length(self) -> float:
        """From the first sample to the last, m."""
        return (self.samples - 1) * self.interval

    @property
    def moving_average(self) -> bool:
        """Whether the 250 mm moving average belongs ahead of the quarter car: up to 167 mm."""
        return self.interval < LONGEST_SMOOTHED_INTERVAL

    @property
    def distance(self) -> Doubles:
        """Where each sample lies, m: (N,) float64."""
        return np.asarray(self.start + self.interval * np.arange(self.samples), np.float64)
