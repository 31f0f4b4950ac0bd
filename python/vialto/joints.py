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


class JointMethod(IntEnum):
    """How joints are detected."""

    STEP = 1  #: a step between two neighbouring samples
    ANTI_SMOOTHING = 3  #: a downward spike about the smoothed profile
    CURLED_EDGE = 4  #: a peak under the rolling straightedge


class Feature(IntEnum):
    JOINT = 1
    CRACK = 2


@dataclass(frozen=True)
class Features:
    """What was found in one track, in the direction of travel."""

    location: Doubles  #: m from the start of the profile
    kind: Integers  #: a Feature for each location

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
    spacing: float = 4.572,
    method: JointMethod = JointMethod.ANTI_SMOOTHING,
    allow_nonfinite: bool = False,
) -> tuple[Features, Features]:
    """Joints and cracks of the left and the right track (joint_id_dlldrv).

    Elevations, interval and the nominal spacing of the joints are in metres. A
    track without a detection is a failure, except with JointMethod.STEP, which
    then reports one joint at a location that is not a number.
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
    window_mm: float = 100.0,
    allow_nonfinite: bool = False,
) -> Reals:
    """Fault at each joint in millimetres, positive where the slab behind
    stands higher (joint_fault_dlldrv).

    profile_mm  elevations, mm
    interval    m
    joints      m from the start of the profile, as find_joints gives them
    window_mm   mm; half width about a joint of what belongs to neither slab

    NaN at a joint nearer than 2.4384 m to either end of the profile.
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
    return faults


def _features(location: Doubles, kind: Integers) -> Features:
    """The first 0 among the kinds stands behind the last feature."""
    found = np.append(kind, 0)
    count = int(np.flatnonzero(found == 0)[0])
    return Features(location[:count], kind[:count])
