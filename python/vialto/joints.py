"""Joints and cracks of concrete pavement, and faulting at the joints."""

from __future__ import annotations

from dataclasses import dataclass
from enum import IntEnum

import numpy as np
from numpy.typing import ArrayLike

from ._arrays import Doubles, Integers, Reals, doubles
from ._library import NO, call
from ._profiles import profile_in_mm, tracks_in_metres
from ._records import JointIDCfg
from ._series import as_given
from .defaults import JOINT_SPACING, JOINT_WINDOW_MM


class JointMethod(IntEnum):
    """How joints are detected, which depends on what shows of them in the profile."""

    STEP = 1  #: a step between two neighbouring samples: faulted pavement, whose slabs lie uneven
    VALLEY = 2  #: refused: not implemented
    ANTI_SMOOTHING = 3  #: a downward spike: joints that are open or sawn, at intervals up to 0.25 m
    CURLED_EDGE = 4  #: a peak under the rolling straightedge: slabs whose edges curl


class Feature(IntEnum):
    """What lies across a concrete pavement."""

    NONE = 0  #: nothing; no result has it
    JOINT = 1  #: the first feature, and each that keeps the spacing
    CRACK = 2  #: what is nearer than 0.95 spacings to the last joint


@dataclass(frozen=True)
class Features:
    """What was found in one track, in the direction of travel.

    Attributes
    ----------
    location : (F,) float64
        m from the start of the profile.
    kind : (F,) int32
        A `Feature` for each location.
    """

    location: Doubles
    kind: Integers

    @property
    def joints(self) -> Doubles:
        """The locations of the joints alone, m."""
        joints: Doubles = self.location[self.kind == Feature.JOINT]
        return joints


def find_joints(
    left: ArrayLike,
    right: ArrayLike,
    interval: float,
    *,
    spacing: float = JOINT_SPACING,
    method: JointMethod = JointMethod.ANTI_SMOOTHING,
    allow_nonfinite: bool = False,
) -> tuple[Features, Features]:
    """Joints and cracks of the left and the right track (``joint_id_dlldrv``).

    The threshold of the method falls, in up to 20 passes, until the right track has 0.9 of the
    features that the spacing promises. The left track has no say in that.

    Parameters
    ----------
    left, right : (N,) array_like
        Elevations, m. Give a single track twice.
    interval : float
        m
    spacing : float
        Nominal distance of the joints, m.
    method : JointMethod
        `JointMethod` tells which is for which pavement.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    tuple of Features
        The joints and cracks of the left and the right track, in the direction of travel.

    Raises
    ------
    VialtoError
        A track has no detection in some pass, be it the first and strictest. `JointMethod.STEP`
        then reports one joint, at a location that is not a number.
    """
    pair = tracks_in_metres(left, right, interval, allow_nonfinite)
    size = pair[0].size
    kinds = np.zeros(size, np.int32), np.zeros(size, np.int32)
    locations = np.full(size, np.nan), np.full(size, np.nan)
    settings = JointIDCfg(i_jntid_method=method, if_skewed=NO, xDomJointSpacing=spacing)
    call("joint_id_dlldrv", settings, interval, size, *pair, *kinds, *locations)
    return (_features(locations[0], kinds[0]), _features(locations[1], kinds[1]))


def joint_faults(
    profile_mm: ArrayLike,
    interval: float,
    joints: ArrayLike,
    *,
    window_mm: float = JOINT_WINDOW_MM,
    allow_nonfinite: bool = False,
) -> Reals:
    """Fault at each joint (``joint_fault_dlldrv``).

    A straight line is fitted to each slab, from 2.4384 m away up to the window, and both are
    carried to one point past the joint, 0.175 m at an interval of 0.025 m.

    Parameters
    ----------
    profile_mm : (N,) array_like
        Elevations, mm.
    interval : float
        m
    joints : (J,) array_like
        m from the start of the profile, as `find_joints` gives them.
    window_mm : float
        Half width about a joint of what belongs to neither slab, mm.
    allow_nonfinite : bool
        Asks the library about samples that are not finite, which else are refused.

    Returns
    -------
    (J,) float32
        mm, positive where the road drops: the slab that a car comes from lies higher than the one
        that it comes to. NaN at a joint nearer than 2.4384 m to either end of the profile. A
        Series where the joints are one.

    Raises
    ------
    VialtoError
        A joint outside the profile, or a window that leaves a slab fewer than two samples.
    ValueError
        Samples that are not finite, or an interval outside 1 mm to 1 m.

    References
    ----------
    AASHTO R 36.
    """
    samples = profile_in_mm(profile_mm, interval, "profile_mm", allow_nonfinite)
    places = doubles(joints, "joints")
    faults = np.full(places.size, np.nan, np.float32)
    call(
        "joint_fault_dlldrv",
        samples.size,
        places.size,
        interval,
        window_mm,
        samples,
        places,
        faults,
    )
    return as_given(joints, faults)


def _features(location: Doubles, kind: Integers) -> Features:
    """The first 0 among the kinds stands behind the last feature."""
    found = np.append(kind, 0)
    count = int(np.flatnonzero(found == 0)[0])
    return Features(location[:count], kind[:count])
