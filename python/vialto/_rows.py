"""The rows of a file: distances and elevations as they stand there, in metres."""

from __future__ import annotations

import csv
import re
from collections.abc import Sequence
from dataclasses import dataclass
from functools import cached_property
from pathlib import Path
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from ._arrays import Doubles
from ._pandas import pandas, table
from .road import NO_NUMBER, TRACKS, RoadError, first_of

if TYPE_CHECKING:
    import pandas as pd

#: metres in each unit that a column may be in
UNITS = {"mm": 0.001, "cm": 0.01, "m": 1.0, "km": 1e3, "in": 0.0254, "ft": 0.3048, "mi": 1609.344}
UNITS |= {"millimetres": UNITS["mm"], "millimeters": UNITS["mm"], "metres": 1.0, "meters": 1.0}
UNITS |= {"inches": UNITS["in"], "feet": UNITS["ft"], "miles": UNITS["mi"]}

EVEN = 0.01  # of the interval: how far a step may be off
ROUNDED = 0.1  # of the interval: how far one may be off for the rounding of printed distances
SHORTEST_STEP = 1e-6  # m
LARGEST = 1e12  # in any unit; what is larger is taken for no number

_DISTANCES = {"distance", "dist", "station", "chainage", "position", "x"}
_UNIT = re.compile(rf"[\s_(\[]+({'|'.join(UNITS)})[\s)\]]*$", re.IGNORECASE)
_DECIMAL = r"\s*[-+]?\d*{}\d*(?:[eE][-+]?\d+)?\s*"  # a number with this mark


@dataclass(frozen=True)
class Rows:
    """Those rows of a file that have a distance.

    Attributes
    ----------
    path : Path
        The file.
    distance : (R,) float64
        m
    tracks : dict of str to (R,) float64
        Elevations, m; NaN where one is missing.
    line : (R,) int
        Where each row stands.
    place : str
        What that is called: line or row.
    cells : DataFrame
        The cells without a number, as in `Quality`.
    rounding : float
        The last decimal of the distances, m.
    columns : tuple of str
        Those of the file that were taken: the distance, and each track.
    """

    path: Path
    distance: Doubles
    tracks: dict[str, Doubles]
    line: NDArray[np.int64]
    place: str
    cells: pd.DataFrame
    rounding: float
    columns: tuple[str, ...]

    @cached_property
    def steps(self) -> Doubles:
        """From one row to the next, m."""
        return np.diff(self.distance)

    @cached_property
    def usual(self) -> float:
        """The usual step, m."""
        if self.steps.size == 0:
            text = self.cells[self.cells["text"] != ""]
            why = "at least two samples are needed"
            if len(text) > 0:
                why = first_of(text, self.place, NO_NUMBER)
            raise RoadError(f"{self.path}: {why}")
        median = float(np.quantile(self.steps, 0.5, method="lower"))  # a step that occurs
        if not median > SHORTEST_STEP:
            back = ", and these descend: count them in the direction of travel"
            least = f", by {SHORTEST_STEP:g} m at least"
            why = back if median < -SHORTEST_STEP else least
            raise RoadError(f"{self.path}: distances must ascend{why}")
        return float(np.mean(self.steps[self._near(median)]))

    def _near(self, step: float) -> NDArray[np.bool_]:
        """Whether each step is this one, rounded at most."""
        return np.asarray(np.abs(self.steps - step) <= ROUNDED * step)

    @cached_property
    def uneven(self) -> NDArray[np.bool_]:
        """Whether each step is neither the usual one nor a whole number of them."""
        whole = np.maximum(np.rint(self.steps / self.usual), 1.0)
        usual = np.count_nonzero(self._near(self.usual))
        rows = self.steps.size - usual + 1  # of usual steps: each is off by a rounding at most
        rounding = self.rounding * (1.0 + whole * rows / usual)
        tolerance = np.maximum(EVEN * self.usual, np.minimum(rounding, ROUNDED * self.usual))
        return np.asarray(np.abs(self.steps - whole * self.usual) > tolerance)

    @cached_property
    def number(self) -> Doubles:
        """The number of each row on an even grid, from 0."""
        steps = self.steps / self.usual
        # What is longer than one step and shorter than two misses no sample.
        whole = np.where(self.uneven, np.floor(steps), np.rint(steps))
        return np.concatenate([[0.0], np.cumsum(whole)])


def read_rows(path: Path, columns: Sequence[str] | None) -> Rows:
    """The rows of a file, of the columns asked for or those that are called so."""
    frame, first_line, place = _read_frame(path)
    line = first_line + np.arange(len(frame))
    kept = ~frame.isna().all(axis=1).to_numpy()  # blank lines hold nothing
    frame, line = frame[kept], line[kept]
    if columns is not None:
        lacking = {_UNIT.sub("", name): name for name in columns if name not in frame}
        frame = frame.rename(columns=lacking)
    distance_column, track_columns = _choose(path, frame, columns)
    bad: list[tuple[int, str, str]] = []
    taken = (distance_column, *track_columns.values())
    values = {column: _numbers(frame[column], line, bad) for column in taken}
    there = np.isfinite(values[distance_column])
    printed = values[distance_column][there]
    scale = _unit(distance_column)
    bad.sort()
    return Rows(
        path=path,
        distance=printed * scale,
        tracks={
            track: values[column][there] * _unit(column) for track, column in track_columns.items()
        },
        line=line[there],
        place=place,
        cells=table(
            line=[cell[0] for cell in bad],
            column=[cell[1] for cell in bad],
            text=[cell[2] for cell in bad],
        ),
        rounding=scale * _rounding(frame[distance_column], printed),
        columns=taken,
    )


def _read_frame(path: Path) -> tuple[pd.DataFrame, int, str]:
    """The table of a file, where its first row stands, and what its rows are called."""
    pd = pandas()
    if path.suffix.lower() in (".parquet", ".pq"):
        with path.open("rb") as file:
            try:
                frame = pd.read_parquet(file)
            except (ValueError, OSError) as problem:
                raise RoadError(f"{path}: no Parquet file that can be read: {problem}") from problem
        # An index without a name numbers rows, unless it is all there is of a distance.
        floats = frame.index.dtype.kind == "f"
        numbers = not floats or any(_stem(str(name)) in _DISTANCES for name in frame)
        return frame.reset_index(drop=numbers and frame.index.names == [None]), 1, "row"
    with path.open(encoding="utf-8-sig", errors="replace") as file:
        skipped, head = 0, file.readline()
        while head.startswith("#"):
            skipped, head = skipped + 1, file.readline()
        first = next((line for line in file if line.strip()), "")
    delimiter = _delimiter(head, first)
    titles, cells = (next(csv.reader([line], delimiter=delimiter), []) for line in (head, first))
    if any(cell.strip() for cell in cells[len(titles) :]):  # which pandas would pass over
        raise RoadError(f"{path}: rows of {len(cells)} fields under a header of {len(titles)}")
    if delimiter != ",":  # which may be a decimal comma then
        titles = [title.replace(",", ".") for title in titles]
    titled = not all(_is_number(title) for title in titles)
    try:
        frame = pd.read_csv(
            path,
            encoding="utf-8",
            encoding_errors="replace",
            sep=delimiter,
            skiprows=skipped,
            header=0 if titled else None,
            skip_blank_lines=False,
            skipinitialspace=True,
            **_exact_numbers(pd.__version__),
            low_memory=False,
            index_col=False,
        )
    except pd.errors.EmptyDataError as problem:
        raise RoadError(f"{path}: the file is empty") from problem
    except pd.errors.ParserError as problem:
        raise RoadError(f"{path}: {str(problem).split('error: ')[-1].strip()}") from problem
    frame.columns = [str(column).strip() for column in frame.columns]
    if delimiter != ",":
        frame = pd.DataFrame(
            {place: _with_points(frame.iloc[:, place]) for place in range(frame.shape[1])}
        ).set_axis(frame.columns, axis=1)
    return frame, skipped + (2 if titled else 1), "line"


def _delimiter(head: str, first: str) -> str:
    """What separates cells: a tab or a semicolon that lines agree in, whatever commas there are."""
    for mark in "\t;":
        if 0 < head.count(mark) == first.count(mark):
            return mark
    return max(",;\t", key=head.count)


def _with_points(column: pd.Series[Any]) -> pd.Series[Any]:
    """A column with points for its decimal commas; as it is, where a number has a point."""
    if column.dtype.kind in "fiub":
        return column
    text = column.astype(str)
    commas = text.str.fullmatch(_DECIMAL.format(","))
    if text.str.fullmatch(_DECIMAL.format(r"\.")).any():
        return column
    return column.where(~commas, text.str.replace(",", "."))


def _exact_numbers(version: str) -> dict[str, str]:
    """What makes pandas read each number as the nearest one, as from 3.1 on it always does."""
    newer = tuple(int(number) for number in version.split(".")[:2]) >= (3, 1)
    return {} if newer else {"float_precision": "round_trip"}


def _is_number(text: str) -> bool:
    try:
        float(text)
    except ValueError:
        return False
    return True


def _choose(
    path: Path, frame: pd.DataFrame, columns: Sequence[str] | None
) -> tuple[str, dict[str, str]]:
    """The column of the distance, and that of each track."""
    names = [str(column) for column in frame.columns]
    if columns is not None:
        missing = [column for column in columns if column not in names]
        if missing or not 2 <= len(columns) <= 3:
            raise RoadError(
                f"{path}: columns are {', '.join(names)}; asked for {', '.join(columns)}"
            )
        distance, *others = columns
    else:
        distance = next((name for name in names if _stem(name) in _DISTANCES), names[0])
        others = [name for name in names if name != distance]
        sides = {track: [name for name in others if track in _stem(name)] for track in TRACKS}
        if all(len(found) == 1 for found in sides.values()):
            return distance, {track: found[0] for track, found in sides.items()}
        if not others:
            raise RoadError(
                f"{path}: a distance and one or two elevations are needed, and the one column is"
                f" {names[0]:.40}; commas, semicolons or tabs separate columns, and lines ahead of"
                " their names begin with #"
            )
        if len(others) > 2:
            raise RoadError(
                f"{path}: a distance and one or two elevations are needed, and the columns are"
                f" {', '.join(names)}; name those to take"
            )
    if len(others) == 1:
        return distance, {"right" if "right" in _stem(others[0]) else "left": others[0]}
    return distance, dict(zip(TRACKS, others, strict=True))


def _stem(name: str) -> str:
    """What a column is called, without its unit."""
    return _UNIT.sub("", name.lower())


def _unit(name: str) -> float:
    """The unit of a column, in metres."""
    unit = _UNIT.search(name.lower())
    return UNITS[unit[1]] if unit else 1.0


def _numbers(column: pd.Series[Any], line: NDArray[np.int64], bad: list[Any]) -> Doubles:
    """The numbers of a column, NaN where a cell has none; those cells are added to `bad`."""
    if column.dtype.kind in "fiu":
        numbers = column.to_numpy(np.float64, na_value=np.nan, copy=True)
    else:
        numbers = np.array([_number(cell) for cell in column], np.float64)
    missing = ~(np.abs(numbers) <= LARGEST)
    cells = column[missing]
    for place, cell, empty in zip(line[missing], cells, cells.isna(), strict=True):
        bad.append((int(place), str(column.name), "" if empty else " ".join(str(cell).split())))
    numbers[missing] = np.nan
    return numbers


def _number(cell: Any) -> float:
    try:
        return float(cell)
    except (TypeError, ValueError, OverflowError):
        return float("nan")


def _rounding(column: pd.Series[Any], numbers: Doubles) -> float:
    """How far the distances are rounded: to a decimal, or to the digits of float32."""
    if column.dtype == np.float32:
        return float(np.spacing(np.float32(np.max(np.abs(numbers), initial=0.0))))
    for decimals in range(7):
        if np.allclose(np.round(numbers, decimals), numbers, rtol=0.0, atol=1e-9):
            return float(10.0**-decimals)
    return 0.0
