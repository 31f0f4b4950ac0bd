"""One road of a network: the row of each of its sections, and that of the whole."""

from __future__ import annotations

import time
import warnings
from collections.abc import Callable
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

import vialto
from vialto._arrays import Doubles
from vialto._library import VialtoError
from vialto._pandas import pandas
from vialto._profiles import MM_PER_M
from vialto.defaults import (
    BLANKING_BAND,
    LOCAL_BASE_LENGTH,
    LOCAL_ROUGHNESS,
    STRAIGHTEDGE,
    TENTH_OF_A_MILE,
    TWELVE_WHEELS,
)
from vialto.profile_indices import profile_index
from vialto.profilograph import profilograph_trace
from vialto.reading import read_road
from vialto.ride import continuous_ride_index
from vialto.road import Road, RoadError
from vialto.spectra import rolling_straightedge
from vialto.tables import PER_KM, roughness, section_bounds

if TYPE_CHECKING:
    import pandas as pd


#: The columns of a result, in their order.
COLUMNS = {
    "road": "the file, as it was named",
    "kind": "section or road: the last row of each road is that of the whole",
    "begin": "m",
    "end": "m",
    "complete": "False for a last section that is shorter",
    "iri_left": "m/km; NaN for a track that is not there, as below",
    "iri_right": "m/km",
    "mri": "m/km",
    "hri": "m/km",
    "ride_number": "0 to 5; NaN for intervals above 0.5 m",
    "straightedge": f"mm; the greatest deflection under {STRAIGHTEDGE:g} m, of either track",
    "profile_index": (
        f"mm/km; of a profilograph with a blanking band of {BLANKING_BAND:g} mm, mean of the"
        " tracks; NaN for a stretch of more scallops than a lot may have, as long roads are"
    ),
    "exceeding": "m; how much of it has a moving IRI above the threshold in either track",
    "filled": "share of samples that were filled, 0 to 1",
    "section": "m; the length asked for",
    "threshold": "m/km; the one asked for",
    "interval": "m; from one sample to the next, as analysed",
    "columns": "of the file, that were taken: the distance, the left track and the right one",
    "resample": "whether samples were to be brought onto an even step",
    "fill_gaps": "m; the longest gap that was to be filled",
    "version": "of vialto, where the row was made",
    "warning": "of the whole road: what is surely wrong with its elevations; empty as a rule",
}


@dataclass(frozen=True)
class Settings:
    """What every road of a network is analysed with.

    Attributes
    ----------
    section : float
        Length of a section, m.
    threshold : float
        Of the moving IRI over 7.62 m, m/km.
    columns, resample, fill_gaps
        Those of ``read_road``.
    """

    section: float = TENTH_OF_A_MILE
    threshold: float = LOCAL_ROUGHNESS
    columns: tuple[str, ...] | None = None
    resample: float | bool = False
    fill_gaps: float = 0.0


@dataclass(frozen=True)
class Outcome:
    """What became of one road.

    Attributes
    ----------
    road : str
        What it is called in the result.
    rows : DataFrame, optional
        Its sections and the whole, in the columns of `COLUMNS`; None where it was refused.
    error : str
        The words in which it was refused.
    reading, analysing : float
        How long either took, s.
    """

    road: str
    rows: pd.DataFrame | None = None
    error: str = ""
    reading: float = 0.0
    analysing: float = 0.0


def analyse_road(road: str, path: str, settings: Settings) -> Outcome:
    """Read a road and analyse it; never raises, since other roads wait.

    Parameters
    ----------
    road : str
        What the road is called in the result.
    path : str
        Its file.
    settings : Settings
        The same for the whole network.
    """
    begin = time.perf_counter()
    try:
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")
            profile = read_road(
                path,
                columns=settings.columns,
                resample=settings.resample,
                fill_gaps=settings.fill_gaps,
            )
            read = time.perf_counter()
            said = dict.fromkeys(str(warning.message) for warning in caught)
            rows = sections(profile, settings)  # which would say the same again
        rows.insert(0, "road", road)
        rows["columns"] = ",".join(profile.quality.columns if profile.quality is not None else ())
        rows["resample"] = settings.resample is not False
        rows["fill_gaps"] = float(settings.fill_gaps)
        rows["version"] = vialto.__version__
        rows["warning"] = ""
        rows.loc[rows.index[-1], "warning"] = "; ".join(said)
        return Outcome(road, rows[list(COLUMNS)], "", read - begin, time.perf_counter() - read)
    except (RoadError, VialtoError, OSError, ValueError) as refusal:
        return Outcome(road, error=str(refusal).removeprefix(f"{path}: "))
    except Exception as fault:
        return Outcome(road, error=f"{type(fault).__name__}: {fault}")


def sections(road: Road, settings: Settings | None = None) -> pd.DataFrame:
    """The rows of one road: its sections, and last the road as a whole.

    The filters run through the whole road once. What a road or a section is too short for is NaN.

    Parameters
    ----------
    road : Road
        One track or two, out of a file or of arrays.
    settings : Settings, optional
        A tenth of a mile by default, and 2.5 m/km. What tells how to read a file plays no part.

    Returns
    -------
    DataFrame
        As of ``analyse``, without the columns that tell of a file.

    Raises
    ------
    VialtoError, ValueError
        As in `vialto.roughness`.
    """
    settings = Settings() if settings is None else settings
    deflection = _deflection(road)
    over = _over(road, settings.threshold)
    traces = [trace for track in road.tracks.values() if (trace := _trace(road, track)) is not None]

    def table(length: float, kind: str) -> pd.DataFrame:
        frame = roughness(road, length)
        bounds = section_bounds(road, length)

        def each(measure: Callable[[slice], float]) -> Doubles:
            ends = [*bounds[1:-1], bounds[-1] + 1]  # the last sample belongs to the last section
            stretches = (slice(a, b) for a, b in zip(bounds[:-1], ends, strict=True))
            return np.array([measure(stretch) for stretch in stretches])

        frame["kind"] = kind
        frame["straightedge"] = each(lambda part: _greatest(deflection[part]))
        frame["profile_index"] = each(lambda part: _index(road, traces, part))
        frame["exceeding"] = each(lambda part: road.interval * float(over[part].sum()))
        return frame

    frame: pd.DataFrame = pandas().concat(
        [table(settings.section, "section"), table(max(road.length, road.interval), "road")],
        ignore_index=True,
    )
    for name in ("section", "threshold"):
        frame[name] = float(getattr(settings, name))
    frame["interval"] = road.interval
    return frame


def _deflection(road: Road) -> Doubles:
    """The greater deflection of the tracks at each sample, mm; NaN where there is none."""
    deflection = np.full(road.samples, np.nan)
    for track in road.tracks.values():
        response = rolling_straightedge(track, road.interval)
        valid = response.valid
        there = np.abs(MM_PER_M * response.deflection[valid].astype(np.float64))
        deflection[valid] = np.fmax(deflection[valid], there)
    return deflection


def _over(road: Road, threshold: float) -> NDArray[np.bool_]:
    """Whether the moving IRI of either track lies above the threshold at each sample."""
    over = np.zeros(road.samples, bool)
    if road.samples * road.interval > LOCAL_BASE_LENGTH + road.interval:
        for track in road.tracks.values():
            moving = continuous_ride_index(
                track,
                road.interval,
                base_length=LOCAL_BASE_LENGTH,
                moving_average=road.moving_average,
            )
            over |= moving.astype(np.float64) > threshold / PER_KM
    return over


def _trace(road: Road, track: Doubles) -> tuple[int, NDArray[Any]] | None:
    """The valid trace, mm, behind the sample that it begins at; None for a road without one."""
    reach = int(max(TWELVE_WHEELS) / road.interval) + 2  # samples; one for a wheel between two
    if road.samples <= 2 * reach:
        return None
    trace = profilograph_trace(MM_PER_M * track, road.interval)
    return trace.first, trace.height[trace.valid]


def _greatest(values: Doubles) -> float:
    values = values[np.isfinite(values)]
    return float(values.max()) if values.size > 0 else np.nan


def _index(road: Road, traces: list[tuple[int, NDArray[Any]]], part: slice) -> float:
    """Mean profile index of the tracks over a stretch, mm/km; NaN for too many scallops."""
    found = []
    for first, trace in traces:
        heights = trace[max(part.start - first, 0) : max(part.stop - first, 0)]
        if heights.size > 1:
            try:
                lot = profile_index(heights, road.interval).lots[0]
            except VialtoError as refusal:
                if "scallops" not in refusal.description:
                    raise
                return np.nan  # all else is told of a road of any length
            found.append(PER_KM * lot.rounded_index)
    return float(np.mean(found)) if found else np.nan
