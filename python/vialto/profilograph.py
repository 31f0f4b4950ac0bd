"""The simulated profilograph: its trace, profile index and defects.

Distances are in metres. Heights have the unit of the profile, which may be
any; the defaults of profile_index are in millimetres.
"""

from __future__ import annotations

from collections.abc import Iterable
from ctypes import c_int32
from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, ValidRange, last_sample, reals
from ._library import call
from ._profiles import check_interval
from ._records import PGDefect, PGLot

#: m; twelve wheels in two groups, at the ends of a beam of 25 feet
TWELVE_WHEELS = (1.905, 2.286, 2.667, 3.048, 3.429, 3.81)

MOST_DEFECTS = 5000  # of a whole trace; the library wants room for them


@dataclass(frozen=True)
class ProfilographTrace(ValidRange):
    """The trace, at the indexes of the profile; NaN where it is not valid."""

    height: Reals


@dataclass(frozen=True)
class Lot:
    """The index of one lot: height per metre. -1.0 for a lot of one sample."""

    first: int  #: first sample, from 0
    last: int  #: last sample, inclusive
    raw_index: float  #: from heights as they are
    rounded_index: float  #: from rounded heights
    upper_band: tuple[float, float]  #: its edge at the lot's start and end
    lower_band: tuple[float, float]  #: likewise


class DefectKind(IntEnum):
    BUMP = 1  #: above the blanking band
    DIP = 2  #: below it


@dataclass(frozen=True)
class Defect:
    first: int  #: first sample, from 0
    last: int  #: last sample, inclusive
    begin: tuple[float, float]  #: distance in m, and height of the band there
    end: tuple[float, float]
    height: float  #: above or below the band
    kind: DefectKind


@dataclass(frozen=True)
class ProfileIndex:
    lots: tuple[Lot, ...]
    defects: tuple[Defect, ...]


def profilograph_trace(
    profile: ArrayLike,
    interval: float,
    *,
    wheel_offsets: ArrayLike = TWELVE_WHEELS,
    first: int = 0,
    last: int | None = None,
    allow_nonfinite: bool = False,
) -> ProfilographTrace:
    """The profile at the sensing wheel less the mean height of the support
    wheels, in the unit of the profile (pgfilt_dll).

    wheel_offsets  distance of each pair of wheels ahead of and behind the
                   sensing wheel, m
    first, last    the stretch to use, inclusive; by default the whole profile
    """
    check_interval(interval)
    samples = reals(profile, "profile", allow_nonfinite)
    offsets = reals(wheel_offsets, "wheel_offsets")
    height = np.full_like(samples, np.nan)
    begin, end = c_int32(), c_int32()
    call(
        "pgfilt_dll",
        first,
        last_sample(last, samples.size),
        interval,
        offsets.size,
        samples.size,
        offsets,
        samples,
        height,
        begin,
        end,
    )
    return ProfilographTrace(first=begin.value, last=end.value, height=height)


def profile_index(
    trace: ArrayLike,
    interval: float,
    *,
    first: int = 0,
    last: int | None = None,
    lots: Iterable[tuple[int, int]] | None = None,
    blanking_band: float = 2.54,
    min_width: float = 0.6,
    min_height: float = 0.889,
    rounding: float = 1.27,
    allow_nonfinite: bool = False,
) -> ProfileIndex:
    """Profile index and defects of a profilograph trace (pgindex_dll).

    first, last    the stretch to use, inclusive: those of a ProfilographTrace
    lots           first and last sample of each lot; by default the stretch
    blanking_band  full width of the band about the trend line of a lot
    min_width      of a scallop that counts, m
    min_height     of a scallop that counts
    rounding       step that scallop heights are rounded to; 0.0 for none

    Heights are in the unit of the trace; the defaults are millimetres.
    """
    check_interval(interval)
    heights = reals(trace, "trace", allow_nonfinite)
    last = last_sample(last, heights.size)
    spans = [(first, last)] if lots is None else list(lots)
    lot_records = (PGLot * len(spans))(*(PGLot(iStart=begin, iEnd=end) for begin, end in spans))
    defect_records = (PGDefect * MOST_DEFECTS)()
    defect_count = c_int32()
    bump_count = c_int32(0)
    settings = np.array(
        [blanking_band, min_width, min_height, rounding, 0.0, 0.0], np.float32
    )  # the last two without effect
    call(
        "pgindex_dll",
        first,
        last,
        interval,
        settings,
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
