"""The roads that the tests drive over."""

import numpy as np
from numpy.typing import NDArray

INTERVAL = 0.125  # m; exact in binary
SAMPLES = 2400
DISTANCE = INTERVAL * np.arange(SAMPLES)
FLAT = np.zeros(SAMPLES)
WAVE = 0.005 * np.sin(2.0 * np.pi * DISTANCE / 10.0)
SLAB = 5.0  # m
# Every second slab lies 4 mm higher.
SLABS = np.where(DISTANCE // SLAB % 2 == 1, 0.004, 0.0)


def rough_road(seed: int) -> NDArray[np.float64]:
    slope = np.random.default_rng(seed).normal(0.0, 0.002, SAMPLES)
    road: NDArray[np.float64] = np.cumsum(slope - slope.mean()) * INTERVAL
    return road
