"""Agreement of two profiles, and repeatability of an instrument.

A profile holds elevations in metres at a constant interval, also in metres.
"""

from __future__ import annotations

from ctypes import c_float, c_int32
from dataclasses import dataclass

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals, reals
from ._library import YES, call, yes_or_no
from ._profiles import check_interval, profile_in_metres
from ._records import ProfAnalysis, Profinfo
from .defaults import LARGEST_OFFSET
from .filters import Filter

RUNS, POINTS = 10, 1057  # of a repeatability test


@dataclass(frozen=True)
class ComparisonGrid:
    """What a comparison tries.

    Attributes
    ----------
    offsets : int
        How many.
    step : float
        From one to the next, m.
    """

    offsets: int
    step: float


@dataclass(frozen=True)
class Comparison:
    """How a test profile agrees with a reference profile.

    A coefficient is the product of the roughness coefficient, which tells whether the shapes
    agree, and the shape factor, which tells whether the amplitudes do.

    Attributes
    ----------
    best : int
        Place of the best offset in the two arrays.
    offset : float
        The best offset, m: positive where the test profile begins farther along the road than the
        reference profile.
    coefficient : float
        There, -100 to 100 percent.
    roughness_coefficient : float
        There, percent.
    shape_factor : float
        There, 0 to 1.
    offsets : (K,) float32
        All that were tried, m.
    coefficients : (K,) float32
        At each of them, percent; NaN where one of the overlapping stretches is flat.
    reference_iri, test_iri : float
        Of the unfiltered sections, m/m.
    iri_difference : float
        (test - reference) / reference, percent.
    reference_filtered, test_filtered : (M,) float32
        The sections, filtered, each at its own interval.
    """

    best: int
    offset: float
    coefficient: float
    roughness_coefficient: float
    shape_factor: float
    offsets: Reals
    coefficients: Reals
    reference_iri: float
    test_iri: float
    iri_difference: float
    reference_filtered: Reals
    test_filtered: Reals


@dataclass(frozen=True)
class Repeatability:
    """Precision and bias of an instrument.

    Attributes
    ----------
    precision_mm : float
        Mean standard deviation between the runs, mm.
    bias_mm : float
        Mean distance of their mean from the reference, mm.
    precision_class, bias_class : int
        1 to 3, the lower the better; 0 for none.
    """

    precision_mm: float
    bias_mm: float
    precision_class: int
    bias_class: int


def comparison_grid(
    reference_interval: float,
    test_interval: float,
    *,
    max_offset: float = LARGEST_OFFSET,
    upsampling: bool = True,
) -> ComparisonGrid:
    """Number and step of the offsets of a comparison (``CC_CoeffArray``).

    Parameters
    ----------
    reference_interval, test_interval : float
        m
    max_offset : float
        m, to either side.
    upsampling : bool
        Brings both profiles to a common finer step; otherwise the step is the reference profile's
        interval.

    Returns
    -------
    ComparisonGrid
        What `compare_profiles` tries.

    Raises
    ------
    VialtoError
        The largest offset is not finite.
    ValueError
        An interval outside 1 mm to 1 m.

    References
    ----------
    As of `compare_profiles`.
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
    max_offset: float = LARGEST_OFFSET,
    settings: Filter = Filter(),
    reference_section: tuple[int, int] | None = None,
    test_section: tuple[int, int] | None = None,
    padding: bool = True,
    upsampling: bool = True,
    allow_nonfinite: bool = False,
) -> Comparison:
    """Agreement of two profiles, by cross-correlation (``CC_CoeffArray`` and ``ccfunc``).

    Parameters
    ----------
    reference : (R,) array_like
        Elevations, m.
    test : (T,) array_like
        Elevations, m.
    reference_interval : float
        m
    test_interval : float, optional
        m; the reference profile's by default.
    max_offset, upsampling
        As in `comparison_grid`; the offset is less than either profile is long.
    settings : Filter
        The filter that both profiles go through first.
    reference_section, test_section : (int, int), optional
        First and last sample that are compared, inclusive; all by default. At the end of a profile
        one sample is lost, with padding two.
    padding : bool
        Reflects the profiles about their ends for the filter.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    Comparison
        The best offset and what was found there, and all that were tried.

    Raises
    ------
    VialtoError
        A section that reaches outside its profile, an offset as large as a profile, two flat
        profiles, or a filter that does not fit the profile.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    S. M. Karamihas, "Development of Cross Correlation for Objective Comparison of Profiles",
    UMTRI-2002-36, 2002; AASHTO R 56.
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
    """Precision and bias of ten runs over one stretch (``pcbia_dlldrv``).

    Parameters
    ----------
    runs : (10, 1057) array_like
        Elevations, m.
    reference : (1057,) array_like
        The true profile, m.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    Repeatability
        Precision and bias, mm, and their classes.

    Raises
    ------
    ValueError
        Other shapes, or elevations that are not finite.

    References
    ----------
    ASTM E950.
    """
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
) -> Profinfo:
    first, last = section or (0, samples.size - 1)
    return Profinfo(
        i_raw_leadin=first,
        i_raw_leadout=last,
        x_sampleinterval=interval,
        tFilter=settings.record(),
    )
