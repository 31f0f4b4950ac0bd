"""Agreement of two profiles, and repeatability of an instrument.

A profile holds elevations in metres at a constant interval, also in metres.
"""

from __future__ import annotations

from ctypes import c_float, c_int32
from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, reals
from ._library import YES, call, yes_or_no
from ._profiles import check_interval, profile_in_metres
from ._records import ProfAnalysis, Profinfo
from .filters import Filter

RUNS, POINTS = 10, 1057  # of a repeatability test


@dataclass(frozen=True)
class ComparisonGrid:
    """What a comparison tries."""

    offsets: int  #: how many
    step: float  #: m, from one to the next


@dataclass(frozen=True)
class Comparison:
    """How a test profile agrees with a reference profile. A coefficient is the
    product of the roughness coefficient and the shape factor."""

    best: int  #: place of the best offset in the two arrays
    offset: float  #: m; the best offset
    coefficient: float  #: there, -100 to 100 percent
    roughness_coefficient: float  #: there, percent: do the shapes agree?
    shape_factor: float  #: there, 0 to 1: do the amplitudes?
    offsets: Reals  #: m; all that were tried
    coefficients: Reals  #: at each of them, percent
    reference_iri: float  #: m/m, of the unfiltered sections
    test_iri: float  #: m/m
    iri_difference: float  #: (test - reference) / reference, percent
    reference_filtered: Reals  #: the sections, filtered
    test_filtered: Reals


@dataclass(frozen=True)
class Repeatability:
    precision_mm: float  #: mm; mean standard deviation between the runs
    bias_mm: float  #: mm; mean distance of their mean from the reference
    precision_class: int  #: 1 to 3, the lower the better; 0 for none
    bias_class: int  #: likewise


def comparison_grid(
    reference_interval: float,
    test_interval: float,
    *,
    max_offset: float = 3.0,
    upsampling: bool = True,
) -> ComparisonGrid:
    """Number and step of the offsets of a comparison (CC_CoeffArray).

    max_offset  m, to either side
    upsampling  brings both profiles to a common finer step; otherwise the step
                is the reference profile's interval
    """
    check_interval(reference_interval, "reference_interval")
    check_interval(test_interval, "test_interval")
    profiles = (Profinfo * 2)(
        Profinfo(x_sampleinterval=reference_interval), Profinfo(x_sampleinterval=test_interval)
    )
    analysis = ProfAnalysis(x_offset_max=max_offset, if_upsampling=yes_or_no(upsampling))
    offsets = c_int32()
    call("CC_CoeffArray", offsets, analysis, profiles)
    return ComparisonGrid(offsets.value, analysis.x_normsampleinterval)


def compare_profiles(
    reference: ArrayLike,
    test: ArrayLike,
    reference_interval: float,
    test_interval: float | None = None,
    *,
    max_offset: float = 3.0,
    settings: Filter = Filter(),
    reference_section: tuple[int, int] | None = None,
    test_section: tuple[int, int] | None = None,
    padding: bool = True,
    upsampling: bool = True,
    allow_nonfinite: bool = False,
) -> Comparison:
    """Agreement of a test profile with a reference profile, by
    cross-correlation (CC_CoeffArray and ccfunc).

    test_interval           m; the reference profile's by default
    max_offset, upsampling  as in comparison_grid
    settings                the filter that both profiles go through first
    ..._section             first and last sample that are compared; all by
                            default
    padding                 reflects the profiles about their ends for the
                            filter
    """
    if test_interval is None:
        test_interval = reference_interval
    base = profile_in_metres(reference, reference_interval, "reference", allow_nonfinite)
    other = profile_in_metres(test, test_interval, "test", allow_nonfinite)
    grid = comparison_grid(
        reference_interval, test_interval, max_offset=max_offset, upsampling=upsampling
    )
    analysis = ProfAnalysis(
        if_outputfilt=YES,
        if_padding=yes_or_no(padding),
        if_upsampling=yes_or_no(upsampling),
        x_offset_max=max_offset,
        x_normsampleinterval=grid.step,
    )
    profiles = (Profinfo * 2)(
        _profile(base, reference_interval, reference_section, settings),
        _profile(other, test_interval, test_section, settings),
    )
    coefficients = np.zeros(max(grid.offsets, 0), np.float32)
    offsets = np.zeros_like(coefficients)
    filtered = np.zeros_like(base), np.zeros_like(other)
    call(
        "ccfunc",
        base.size,
        other.size,
        grid.offsets,
        base,
        other,
        analysis,
        profiles,
        coefficients,
        offsets,
        *filtered,
    )
    return Comparison(
        best=analysis.iIndexMaxCorr,
        offset=analysis.x_opt_offset,
        coefficient=analysis.x_opt_finalcc,
        roughness_coefficient=analysis.x_opt_roughcc,
        shape_factor=analysis.x_opt_shapefactor,
        offsets=offsets,
        coefficients=coefficients,
        reference_iri=analysis.x_ref_iri,
        test_iri=analysis.x_test_iri,
        iri_difference=analysis.x_iri_diff,
        reference_filtered=filtered[0][: profiles[0].i_filt_leadout + 1],
        test_filtered=filtered[1][: profiles[1].i_filt_leadout + 1],
    )


def repeatability(
    runs: ArrayLike, reference: ArrayLike, *, allow_nonfinite: bool = False
) -> Repeatability:
    """Precision and bias of ten runs of 1057 points against the true profile,
    all in metres (pcbia_dlldrv)."""
    rows = np.asarray(runs, np.float32)
    samples = reals(rows.ravel(), "runs", allow_nonfinite)
    truth = reals(reference, "reference", allow_nonfinite)
    if rows.shape != (RUNS, POINTS) or truth.size != POINTS:
        raise ValueError(f"{RUNS} runs of {POINTS} points are needed")
    precision, bias = c_float(), c_float()
    precision_class, bias_class = c_int32(), c_int32()
    call("pcbia_dlldrv", samples, truth, precision, bias, precision_class, bias_class)
    return Repeatability(precision.value, bias.value, precision_class.value, bias_class.value)


def _profile(
    samples: Reals, interval: float, section: tuple[int, int] | None, settings: Filter
) -> Any:
    first, last = section or (0, samples.size - 1)
    return Profinfo(
        i_raw_leadin=first, i_raw_leadout=last, x_sampleinterval=interval, tFilter=settings.record()
    )
