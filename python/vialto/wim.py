"""The WIM error index: how a road disturbs a weigh-in-motion scale."""

from __future__ import annotations

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Reals
from ._library import call, yes_or_no
from ._profiles import profile_in_metres
from ._series import as_given, per_sample


@per_sample
def wim_error_index(
    profile: ArrayLike,
    interval: float,
    *,
    bridging_filter: bool = True,
    shrouding_distance: float = 0.0,
    allow_nonfinite: bool = False,
) -> Reals:
    """WIM error index at each sample (``wimindex_dlldrv``).

    How strongly the roughness around a sample would disturb a weigh-in-motion scale placed there.

    Parameters
    ----------
    profile : (N,) array_like
        Elevations, m, within some 16 m of 0.0: subtract a constant from higher ones. At most
        50,000 samples: cut a longer road into pieces that overlap by 100 m or more.
    interval : float
        m; up to 0.46 m.
    bridging_filter : bool
        Lets a tyre of 0.25 m bridge what is narrower first.
    shrouding_distance : float
        m; goes to the diagnostic file, and has no effect.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    (N,) float32
        m/m. A rough spot shades far ahead of it, against the direction of travel, and little
        behind it. A Series where the profile is one.

    Raises
    ------
    VialtoError
        More than 50,000 samples, an interval above 0.46 m, or elevations so high that the bridging
        filter does not settle.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    ASTM E1318; S. M. Karamihas and T. D. Gillespie, "Advancement of Smoothness Criteria for WIM
    Scale Approaches", UMTRI-2004-12, 2004.
    """
    samples = profile_in_metres(profile, interval, "profile", allow_nonfinite)
    result = np.zeros_like(samples)
    call(
        "wimindex_dlldrv",
        yes_or_no(bridging_filter),
        interval,
        shrouding_distance,
        samples.size,
        samples,
        result,
    )
    return as_given(profile, result)
