"""Profile index of each lot of a profilograph's trace, and the defects.

Distances are in metres. Heights have the unit of the trace; the defaults of `profile_index` are in
millimetres, and `run_profilograph` takes a profile in metres.
"""

from __future__ import annotations

from collections.abc import Iterable
from ctypes import c_int32
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import last_sample, reals
from ._library import call
from ._profiles import MM_PER_M, check_interval, check_trace_in_mm, profile_in_metres
from ._records import PGDefect, PGLot
from .defaults import (
    BLANKING_BAND,
    SCALLOP_HEIGHT,
    SCALLOP_ROUNDING,
    SCALLOP_WIDTH,
    TWELVE_WHEELS,
)
from .profilograph import ProfilographTrace, profilograph_trace

MOST_DEFECTS = 5000  # of a whole trace; the library wants room for them

# The settings of an index as the library has them; the last two are without effect.
SETTINGS = (
    *("BlankingBand", "MinScallopWidth", "MinScallopHeight", "ScallopRound"),
    *("BumpCutoffHeight", "BumpChordlength"),
)


@dataclass(frozen=True)
class Lot:
    """The index of one lot.

    Attributes
    ----------
    first, last : int
        Its first sample, from 0, and its last, inclusive.
    raw_index : float
        Height per metre, from heights as they are: times 1000 from mm in mm/km. -1.0 for a lot of
        one sample. It can be negative where a scallop across a lot's end leaves it.
    rounded_index : float
        The same from rounded heights.
    upper_band, lower_band : (float, float)
        An edge of the blanking band, at the lot's start and end.
    """

    first: int
    last: int
    raw_index: float
    rounded_index: float
    upper_band: tuple[float, float]
    lower_band: tuple[float, float]


class DefectKind(IntEnum):
    """On which side of the blanking band a defect lies."""

    ABOVE = 1  #: a bump
    BELOW = 2  #: a dip


@dataclass(frozen=True)
class Defect:
    """A scallop that counts.

    Attributes
    ----------
    first, last : int
        Its first sample, from 0, and its last, inclusive.
    begin, end : (float, float)
        Distance from the start of the trace in metres, and height of the band there.
    height : float
        Above or below the band.
    kind : DefectKind
        On which side.
    """

    first: int
    last: int
    begin: tuple[float, float]
    end: tuple[float, float]
    height: float
    kind: DefectKind


@dataclass(frozen=True)
class ProfileIndex:
    """The lots of a trace, in the order asked for, and their defects, lot by lot.

    Attributes
    ----------
    lots : tuple of Lot
        At least the whole stretch.
    defects : tuple of Defect
        At most 5000.
    """

    lots: tuple[Lot, ...]
    defects: tuple[Defect, ...]


@dataclass(frozen=True)
class Profilograph:
    """A profilograph's run over a road, heights in millimetres.

    Attributes
    ----------
    trace : ProfilographTrace
        mm
    index : ProfileIndex
        Indices in mm/m: times 1000 in mm/km.
    """

    trace: ProfilographTrace
    index: ProfileIndex


def profile_index(
    trace: ArrayLike | ProfilographTrace,
    interval: float,
    *,
    first: int | None = None,
    last: int | None = None,
    lots: Iterable[tuple[int, int]] | None = None,
    lots_in_metres: Iterable[tuple[float, float]] | None = None,
    lot_length: float | None = None,
    blanking_band: float = BLANKING_BAND,
    min_width: float = SCALLOP_WIDTH,
    min_height: float = SCALLOP_HEIGHT,
    rounding: float = SCALLOP_ROUNDING,
    allow_nonfinite: bool = False,
) -> ProfileIndex:
    """Profile index and defects of a profilograph trace (``pgindex_dll``).

    Parameters
    ----------
    trace : ProfilographTrace, or (N,) array_like
        Heights in any unit; the defaults are for millimetres.
    interval : float
        m
    first, last : int, optional
        The stretch to use, inclusive; by default the valid samples of a `ProfilographTrace`, and
        all of an array.
    lots : iterable of (int, int), optional
        First and last sample of each lot; by default the stretch is one. Lots that share their
        boundary sample leave nothing between them.
    lots_in_metres : iterable of (float, float), optional
        The same in distances from sample 0, brought to the nearest samples of the stretch.
    lot_length : float, optional
        Cuts the stretch into lots of this length in metres; the last one may be shorter.
    blanking_band : float
        Full width of the band about the trend line of a lot.
    min_width : float
        m; of a scallop that counts.
    min_height : float
        Of a scallop that counts.
    rounding : float
        Step that scallop heights are rounded to; 0.0 for none.
    allow_nonfinite : bool
        Asks the library about heights that are not finite, which else are refused: they make an
        index of 0.0, that of a perfect road.

    Returns
    -------
    ProfileIndex
        The indices in heights per metre. At most 5000 defects, else it fails: take a long road in
        pieces.

    Raises
    ------
    VialtoError
        More than 5000 defects, more than 1000 scallops in a lot, or a lot that reaches outside the
        stretch.
    IndexError
        A stretch that ends behind the trace.
    ValueError
        Heights that are not finite, an interval outside 1 mm to 1 m, or lots that are given in more
        than one way or are shorter than an interval.

    References
    ----------
    ASTM E1274, Measuring Pavement Roughness Using a Profilograph.
    """
    check_interval(interval)
    if isinstance(trace, ProfilographTrace):
        heights = trace.height
        first = trace.first if first is None else first
        last = trace.last if last is None else last
        reals(heights[max(first, 0) : last + 1], "trace", allow_nonfinite)
    else:
        heights = reals(trace, "trace", allow_nonfinite)
        first = 0 if first is None else first
    last = last_sample(last, heights.size)
    check_trace_in_mm(heights[max(first, 0) : last + 1], blanking_band)
    if sum(given is not None for given in (lots, lots_in_metres, lot_length)) > 1:
        raise ValueError("lots are given in more than one way")
    if lot_length is not None:
        lots_in_metres = _even_lots(first, last, interval, lot_length)
    if lots_in_metres is not None:
        lots = [_nearest_lot(lot, first, last, interval) for lot in lots_in_metres]
    spans = [(first, last)] if lots is None else list(lots)
    lot_records = (PGLot * len(spans))(*(PGLot(iStart=begin, iEnd=end) for begin, end in spans))
    defect_records = (PGDefect * MOST_DEFECTS)()
    defect_count = c_int32()
    bump_count = c_int32(0)
    settings = {
        "BlankingBand": blanking_band,
        "MinScallopWidth": min_width,
        "MinScallopHeight": min_height,
        "ScallopRound": rounding,
    }
    call(
        "pgindex_dll",
        first,
        last,
        interval,
        np.array([settings.get(name, 0.0) for name in SETTINGS], np.float32),
        heights.size,
        heights,
        len(spans),
        lot_records,
        defect_count,
        defect_records,
        bump_count,
        None,
    )
    return ProfileIndex(
        lots=tuple(_lot(record) for record in lot_records),
        defects=tuple(_defect(record) for record in defect_records[: defect_count.value]),
    )


def run_profilograph(
    profile: ArrayLike,
    interval: float,
    *,
    wheel_offsets: ArrayLike = TWELVE_WHEELS,
    lots_in_metres: Iterable[tuple[float, float]] | None = None,
    lot_length: float | None = None,
    blanking_band: float = BLANKING_BAND,
    min_width: float = SCALLOP_WIDTH,
    min_height: float = SCALLOP_HEIGHT,
    rounding: float = SCALLOP_ROUNDING,
) -> Profilograph:
    """Trace, profile index and defects of a profile in metres.

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m.
    interval, wheel_offsets
        As in `profilograph_trace`.
    lots_in_metres, lot_length, blanking_band, min_width, min_height, rounding
        As in `profile_index`, heights in millimetres.

    Returns
    -------
    Profilograph
        Heights in millimetres.

    Raises
    ------
    VialtoError, ValueError
        As in `profilograph_trace` and `profile_index`.

    References
    ----------
    ASTM E1274, Measuring Pavement Roughness Using a Profilograph.
    """
    profile_in_metres(profile, interval)
    heights = MM_PER_M * np.asarray(profile, np.float64)
    trace = profilograph_trace(heights, interval, wheel_offsets=wheel_offsets)
    index = profile_index(
        trace,
        interval,
        lots_in_metres=lots_in_metres,
        lot_length=lot_length,
        blanking_band=blanking_band,
        min_width=min_width,
        min_height=min_height,
        rounding=rounding,
    )
    return Profilograph(trace, index)


def _even_lots(first: int, last: int, interval: float, length: float) -> list[tuple[float, float]]:
    """Lots of a length in metres, from the first sample to the last."""
    if not length >= interval:
        raise ValueError(f"lot_length {length:g} m is shorter than an interval")
    begin, end = first * interval, last * interval
    edges = np.arange(begin, end - interval / 2.0, length)
    return [(float(edge), min(float(edge) + length, end)) for edge in edges]


def _nearest_lot(
    lot: tuple[float, float], first: int, last: int, interval: float
) -> tuple[int, int]:
    begin, end = (min(max(round(edge / interval), first), last) for edge in lot)
    return begin, end


def _lot(record: PGLot) -> Lot:
    return Lot(
        first=record.iStart,
        last=record.iEnd,
        raw_index=record.RawPI,
        rounded_index=record.RndPI,
        upper_band=(record.xBBUpperStart, record.xBBUpperEnd),
        lower_band=(record.xBBLowerStart, record.xBBLowerEnd),
    )


def _defect(record: PGDefect) -> Defect:
    return Defect(
        first=record.iStart,
        last=record.iEnd,
        begin=(record.BeginX, record.BeginY),
        end=(record.EndX, record.EndY),
        height=record.MxHts,
        kind=DefectKind(record.Type),
    )
