"""Roads out of files: CSV and Parquet."""

from __future__ import annotations

import os
from collections.abc import Sequence
from pathlib import Path
from typing import TYPE_CHECKING

import numpy as np
from numpy.typing import NDArray

from ._arrays import Doubles
from ._pandas import table
from ._profiles import check_interval
from ._rows import EVEN, Rows, read_rows
from .road import Quality, Road, RoadError

if TYPE_CHECKING:
    import pandas as pd


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
    (``distance``, ``dist``, ``station``, ``chainage``, ``position`` or ``x``; a name with ``left``
    and one with ``right``); else the first column is the distance, and one or two others are the
    tracks, the left one first. A CSV has a header line or none, commas, semicolons or tabs; lines
    that start with ``#`` ahead of it are passed over. Numbers have a decimal point or, with
    semicolons or tabs, a decimal comma. A name that ends in a unit, such as ``elevation_mm`` or
    ``distance (feet)``, is in that unit (m, mm, cm, km, in, ft, mi; metres, millimetres, inches,
    feet, miles), any other in metres.

    Parameters
    ----------
    path : path
        The file; what ends in ``.parquet`` or ``.pq`` is Parquet, all else CSV.
    columns : sequence of str, optional
        The columns of the distance and of the elevations, the left one first. Where the file's
        names lack a unit, it goes here: ``("distance_mm", "left_mm")`` takes ``distance`` and
        ``left`` for millimetres.
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
    rows = read_rows(path, columns)
    quality = Quality(
        cells=rows.cells,
        uneven=_uneven_steps(rows),
        gaps=_gaps(rows, fill_gaps),
        interval=rows.usual,
        place=rows.place,
        resampled=resample is not False,
        mended=fill_gaps > 0.0,
        columns=rows.columns,
    )
    if quality.problems:
        raise RoadError(f"{path}: {'; '.join(quality.problems)}", quality)
    try:
        step = check_interval(rows.usual if isinstance(resample, bool) else resample)
        start, step, tracks = _on_even_grid(rows, step, even=resample is False)
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


def _uneven_steps(rows: Rows) -> pd.DataFrame:
    behind = np.flatnonzero(rows.uneven) + 1
    return table(
        line=rows.line[behind], distance=rows.distance[behind], step=rows.steps[behind - 1]
    )


def _gaps(rows: Rows, fill_gaps: float) -> pd.DataFrame:
    """All rows of missing samples. Those at an end are cut off where gaps are filled at all."""
    at_end = "cut off" if fill_gaps > 0.0 else ""
    found: list[tuple[int, str, float, float, int, str]] = []
    for track, values in rows.tracks.items():
        there = np.flatnonzero(np.isfinite(values))
        if there.size == 0:
            found.append((int(rows.line[0]), track, np.nan, np.nan, values.size, ""))
            continue
        first, last = there[0], there[-1]
        missing = np.diff(rows.number[there]).astype(int) - 1
        for k in np.flatnonzero(missing > 0):
            mended = "filled" if missing[k] * rows.usual <= fill_gaps * (1.0 + EVEN) else ""
            begin, end = rows.distance[there[k]], rows.distance[there[k + 1]]
            line = int(rows.line[there[k] + 1])
            found.append((line, track, begin, end, int(missing[k]), mended))
        if first > 0:
            end = rows.distance[first]
            found.append((int(rows.line[0]), track, np.nan, end, int(rows.number[first]), at_end))
        if last + 1 < values.size:
            begin, cut = rows.distance[last], int(rows.number[-1] - rows.number[last])
            found.append((int(rows.line[last + 1]), track, begin, np.nan, cut, at_end))
    names = ("line", "track", "begin", "end", "missing", "mended")
    return table(**{name: [row[k] for row in sorted(found)] for k, name in enumerate(names)})


def _on_even_grid(rows: Rows, step: float, even: bool) -> tuple[float, float, list[Doubles]]:
    """Start and step of the grid in metres, and the tracks on it."""
    there = [np.flatnonzero(np.isfinite(values)) for values in rows.tracks.values()]
    first, last = max(found[0] for found in there), min(found[-1] for found in there)
    if last <= first:
        raise ValueError("at least two samples are needed")
    start, length = rows.distance[first], rows.distance[last] - rows.distance[first]
    if even:  # the samples stay as they are
        known = rows.number - rows.number[first]
        grid = np.arange(known[last] + 1.0)
        step = length / known[last]
    else:
        back = rows.line[1:][rows.steps <= 0.0]
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
