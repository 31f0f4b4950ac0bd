"""The files of a network: roads that are found, results that are kept."""

from __future__ import annotations

import glob
import os
from collections.abc import Callable, Iterable, Sequence
from pathlib import Path
from typing import TYPE_CHECKING

from vialto._pandas import pandas

from .analysis import COLUMNS, Settings

if TYPE_CHECKING:
    from pandas import DataFrame

ROADS = (".csv", ".parquet", ".pq")  # what a directory is searched for
RESULTS = (".parquet", ".csv")


def find_roads(
    arguments: Iterable[str | os.PathLike[str]], results: Path | None = None
) -> list[str]:
    """The files that arguments name, each once, in a fixed order.

    Parameters
    ----------
    arguments : iterable of path
        A file, a directory, which is searched with all below it for CSV and Parquet files, or a
        pattern such as ``2026/*/left*.csv``. A file that is not there is kept: to read it will
        fail, and be told.
    results : Path, optional
        Where the results go, which is no road.

    Returns
    -------
    list of str
        Paths as they were given or found.
    """
    found: dict[str, str] = {}  # each path under its absolute one

    def add(paths: Iterable[str]) -> None:
        for path in paths:
            found.setdefault(os.path.abspath(path), path)

    for argument in (os.fspath(given) for given in arguments):
        if os.path.isdir(argument):
            below = (path for path in Path(argument).rglob("*") if path.suffix.lower() in ROADS)
            add(sorted(map(str, below)))
        elif glob.has_magic(argument) and not os.path.exists(argument):
            add(sorted(glob.glob(argument, recursive=True)))
        else:
            add([argument])
    own = set() if results is None else {results.resolve(), errors_path(results).resolve()}
    return [road for road in found.values() if Path(road).resolve() not in own]


def errors_path(results: Path) -> Path:
    """Where the roads without a result are told: results.errors.csv beside results.parquet."""
    return results.with_suffix(".errors.csv")


def read_results(path: Path, settings: Settings) -> DataFrame:
    """What an earlier run left, for the same settings.

    Raises
    ------
    ValueError
        It is no result of a network, or one with other settings.
    """
    pd = pandas()
    frame: DataFrame
    if path.suffix.lower() == ".csv":
        frame = pd.read_csv(
            path, float_precision="round_trip", keep_default_na=False, na_values=[""]
        )
        texts = [name for name in ("columns", "warning") if name in frame]
        frame[texts] = frame[texts].fillna("")
    else:
        frame = pd.read_parquet(path)
    if list(frame.columns) != list(COLUMNS):
        raise ValueError(f"{path} holds no results of a network")
    for name in ("section", "threshold"):
        other = frame[name][frame[name] != getattr(settings, name)]
        if len(other) > 0:
            raise ValueError(
                f"{path} was made with --{name} {other.iloc[0]:g}, not {getattr(settings, name):g}"
            )
    return frame


def write_results(
    path: Path, roads: Sequence[str], tables: Iterable[DataFrame], errors: dict[str, str]
) -> None:
    """Write the results, roads in the order given, and the errors, if there are any.

    Either file is whole at any time: it takes the place of the one before in one step.
    """
    order = {road: place for place, road in enumerate(roads)}
    frame = together(tables, order)
    if path.suffix.lower() == ".csv":
        _replace(path, lambda part: frame.to_csv(part, index=False))
    else:
        _replace(path, lambda part: frame.to_parquet(part, index=False))
    told = errors_path(path)
    if errors:
        listed = sorted(errors.items(), key=lambda error: order.get(error[0], len(order)))
        refused = pandas().DataFrame(listed, columns=["road", "error"])
        _replace(told, lambda part: refused.to_csv(part, index=False))
    else:
        told.unlink(missing_ok=True)


def together(tables: Iterable[DataFrame], order: dict[str, int]) -> DataFrame:
    """One table of all, the roads in this order, those without a place in it last."""
    frames = [table for table in tables if len(table) > 0]
    frame: DataFrame
    if not frames:
        frame = pandas().DataFrame(columns=list(COLUMNS))
        return frame
    frame = pandas().concat(frames, ignore_index=True)
    place = frame["road"].map(order).fillna(len(order))
    return frame.iloc[place.argsort(kind="stable")].reset_index(drop=True)


def _replace(path: Path, write: Callable[[Path], object]) -> None:
    part = path.with_name(f".{path.name}.part")
    try:
        write(part)
        part.replace(path)
    finally:
        part.unlink(missing_ok=True)
