"""Roads out of files: CSV and Parquet."""

from __future__ import annotations

import csv
import os
import re
from collections.abc import Sequence
from dataclasses import dataclass
from pathlib import Path
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from ._arrays import Doubles
from ._pandas import pandas, table
from ._profiles import check_interval
from .road import TRACKS, Quality, Road, RoadError

if TYPE_CHECKING:
    import pandas as pd

#: metres in each unit that a column may be in
UNITS = {"mm": 0.001, "cm": 0.01, "m": 1.0, "km": 1e3, "in": 0.0254, "ft": 0.3048, "mi": 1609.344}

EVEN = 0.01  # of the interval: how far a step may be off
ROUNDED = 0.1  # of the interval: how far one may be off for the rounding of printed distances

_DISTANCES = {"distance", "dist", "station", "chainage", "position", "x"}
_UNIT = re.compile(rf"[\s_(\[]+({'|'.join(UNITS)})[\s)\]]*$")


def read_road(
    path: str | os.PathLike[str],
    *,
    columns: Sequence[str] | None = None,
    resample: float | bool = False,
    fill_gaps: float = 0.0,
    name: str | None = None,
) -> Road:
    """Read a road from a CSV or Parquet file, and refuse what is none.

    The file has a column of distances and one or two of elevations. They are those called so
    (``distance``, ``station``, ``chainage``, ``position`` or ``x``; a name with ``left`` and one
    with ``right``); else the first column is the distance, and one or two others are the tracks,
    the left one first. A CSV has a header line or none, commas, semicolons or tabs; lines that
    start with ``#`` ahead of it are passed over. A name that ends in a unit, such as
    ``elevation_mm`` or ``distance (ft)``, is in that unit (m, mm, cm, km, in, ft, mi), any other
    in metres.

    Parameters
    ----------
    path : path
        The file; what ends in ``.parquet`` or ``.pq`` is Parquet, all else CSV.
    columns : sequence of str, optional
        The columns of the distance and of the elevations, the left one first.
    resample : float or bool
        Brings uneven samples onto an even step, along straight lines: this one in metres, or,
        with True, the file's own usual step. A longer step lets short waves through as long ones:
        low-pass the profile first.
    fill_gaps : float
        Fills gaps of missing samples up to this length in metres along a straight line, and cuts
        off what is missing at either end. The result tells which samples were filled.
    name : str, optional
        Of the road; the file's name without its ending by default.

    Returns
    -------
    Road
        Finite elevations at an even interval. Its ``quality`` tells what the file held.

    Raises
    ------
    RoadError
        The file is no road: cells without a number, missing samples or steps that are off by more
        than 1 % (or, up to 10 %, by more than the rounding of the printed distances) that were not
        asked to be mended. Its ``quality`` lists all of them, with line numbers.
    OSError
        The file cannot be opened.
    """
    path = Path(path)
    rows = _read_rows(path, columns)
    usual = _usual_step(rows)
    quality = Quality(
        cells=rows.cells,
        uneven=_uneven_steps(rows, usual),
        gaps=_gaps(rows, usual, fill_gaps),
        interval=usual,
        place=rows.place,
        resampled=resample is not False,
        mended=fill_gaps > 0.0,
    )
    if quality.problems:
        raise RoadError(f"{path}: {'; '.join(quality.problems)}", quality)
    try:
        step = check_interval(usual if isinstance(resample, bool) else resample)
        start, step, tracks = _on_even_grid(rows, usual, step, even=resample is False)
        grid = np.asarray(start + step * np.arange(tracks[0].size), np.float64)
        return Road(
            name=path.stem if name is None else name,
            interval=step,
            tracks=dict(zip(rows.tracks, tracks, strict=True)),
            start=start,
            filled=_filled(grid, step, quality.gaps),
            quality=quality,
        )
    except ValueError as problem:
        raise RoadError(f"{path}: {problem}", quality) from problem


@dataclass
class _Rows:
    """The rows of a file that have a distance, in metres; NaN where an elevation is missing."""

    path: Path
    distance: Doubles
    tracks: dict[str, Doubles]
    line: NDArray[np.int64]
    place: str
    cells: pd.DataFrame
    rounding: float  # m; the last decimal of the distances


def _read_rows(path: Path, columns: Sequence[str] | None) -> _Rows:
    frame, first_line, place = _read_frame(path)
    line = first_line + np.arange(len(frame))
    kept = ~frame.isna().all(axis=1).to_numpy()  # blank lines hold nothing
    frame, line = frame[kept], line[kept]
    distance_column, track_columns = _choose(path, frame, columns)
    bad: list[tuple[int, str, str]] = []
    values = {
        column: _numbers(frame[column], line, bad)
        for column in (distance_column, *track_columns.values())
    }
    there = np.isfinite(values[distance_column])
    printed = values[distance_column][there]
    scale = _unit(distance_column)
    bad.sort()
    return _Rows(
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
        return frame.reset_index(drop=frame.index.names == [None]), 1, "row"
    with path.open(encoding="utf-8-sig", errors="replace", newline="") as file:
        skipped, head = 0, file.readline()
        while head.startswith("#"):
            skipped, head = skipped + 1, file.readline()
        delimiter = max(",;\t", key=head.count)
        titles = next(csv.reader([head], delimiter=delimiter), [])
        titled = not all(_is_number(title) for title in titles)
        file.seek(0)
        try:
            frame = pd.read_csv(
                file,
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
    return frame, skipped + (2 if titled else 1), "line"


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
        if not 1 <= len(others) <= 2:
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
    missing = ~np.isfinite(numbers)
    cells = column[missing]
    for place, cell, empty in zip(line[missing], cells, cells.isna(), strict=True):
        bad.append((int(place), str(column.name), "" if empty else str(cell).strip()))
    numbers[missing] = np.nan
    return numbers


def _number(cell: Any) -> float:
    try:
        return float(cell)
    except (TypeError, ValueError):
        return float("nan")


def _rounding(column: pd.Series[Any], numbers: Doubles) -> float:
    """How far the distances are rounded: to a decimal, or to the digits of float32."""
    if column.dtype == np.float32:
        return float(np.spacing(np.float32(np.max(np.abs(numbers), initial=0.0))))
    for decimals in range(7):
        if np.allclose(np.round(numbers, decimals), numbers, rtol=0.0, atol=1e-9):
            return float(10.0**-decimals)
    return 0.0


def _usual_step(rows: _Rows) -> float:
    steps = np.diff(rows.distance)
    if steps.size == 0:
        raise RoadError(f"{rows.path}: at least two samples are needed")
    median = float(np.quantile(steps, 0.5, method="lower"))  # a step that occurs
    near = np.abs(steps - median) <= ROUNDED * abs(median)
    usual = float(np.mean(steps[near])) if near.any() else median
    if not usual > 0.0:
        raise RoadError(f"{rows.path}: distances must ascend")
    return usual


def _is_uneven(rows: _Rows, usual: float) -> NDArray[np.bool_]:
    """Whether each step is neither the usual one nor a whole number of them."""
    steps = np.diff(rows.distance)
    whole = np.maximum(np.rint(steps / usual), 1.0)
    tolerance = max(EVEN * usual, min(rows.rounding, ROUNDED * usual))
    return np.asarray(np.abs(steps - whole * usual) > tolerance)


def _uneven_steps(rows: _Rows, usual: float) -> pd.DataFrame:
    behind = np.flatnonzero(_is_uneven(rows, usual)) + 1
    return table(
        line=rows.line[behind],
        distance=rows.distance[behind],
        step=rows.distance[behind] - rows.distance[behind - 1],
    )


def _places(rows: _Rows, usual: float) -> Doubles:
    """The number of each row on an even grid."""
    steps = np.diff(rows.distance) / usual
    # What is longer than one step and shorter than two misses no sample.
    whole = np.where(_is_uneven(rows, usual), np.floor(steps), np.rint(steps))
    return np.concatenate([[0.0], np.cumsum(whole)])


def _gaps(rows: _Rows, usual: float, fill_gaps: float) -> pd.DataFrame:
    """All rows of missing samples. Those at an end are cut off where gaps are filled at all."""
    place = _places(rows, usual)
    at_end = "cut off" if fill_gaps > 0.0 else ""
    found: list[tuple[int, str, float, float, int, str]] = []
    for track, values in rows.tracks.items():
        there = np.flatnonzero(np.isfinite(values))
        if there.size == 0:
            found.append((int(rows.line[0]), track, np.nan, np.nan, values.size, ""))
            continue
        first, last = there[0], there[-1]
        missing = np.diff(place[there]).astype(int) - 1
        for k in np.flatnonzero(missing > 0):
            mended = "filled" if missing[k] * usual <= fill_gaps * (1.0 + EVEN) else ""
            begin, end = rows.distance[there[k]], rows.distance[there[k + 1]]
            line = int(rows.line[there[k] + 1])
            found.append((line, track, begin, end, int(missing[k]), mended))
        if first > 0:
            end = rows.distance[first]
            found.append((int(rows.line[0]), track, np.nan, end, int(place[first]), at_end))
        if last + 1 < values.size:
            begin, cut = rows.distance[last], int(place[-1] - place[last])
            found.append((int(rows.line[last + 1]), track, begin, np.nan, cut, at_end))
    names = ("line", "track", "begin", "end", "missing", "mended")
    return table(**{name: [row[k] for row in sorted(found)] for k, name in enumerate(names)})


def _on_even_grid(
    rows: _Rows, usual: float, step: float, even: bool
) -> tuple[float, float, list[Doubles]]:
    """Start and step of the grid in metres, and the tracks on it."""
    there = [np.flatnonzero(np.isfinite(values)) for values in rows.tracks.values()]
    first, last = max(found[0] for found in there), min(found[-1] for found in there)
    if last <= first:
        raise ValueError("at least two samples are needed")
    start, length = rows.distance[first], rows.distance[last] - rows.distance[first]
    if even:  # the samples stay as they are
        known = _places(rows, usual) - _places(rows, usual)[first]
        grid = np.arange(known[last] + 1.0)
        step = length / known[last]
    else:
        back = rows.line[1:][np.diff(rows.distance) <= 0.0]
        if back.size > 0:
            raise ValueError(f"{rows.place} {back[0]}: distances must ascend")
        known = rows.distance
        grid = start + step * np.arange(np.floor(length / step + EVEN) + 1.0)
    return (
        float(start),
        round(float(step), 9),  # to the nanometre, which 32 bits do not hold
        [
            np.interp(grid, known[found], values[found])
            for found, values in zip(there, rows.tracks.values(), strict=True)
        ],
    )


def _filled(grid: Doubles, step: float, gaps: pd.DataFrame) -> NDArray[np.bool_]:
    """Whether each sample of the grid lies in a gap."""
    filled = np.zeros(grid.size, bool)
    for begin, end in zip(gaps["begin"], gaps["end"], strict=True):
        filled |= (grid > begin + step / 2.0) & (grid < end - step / 2.0)
    return filled
