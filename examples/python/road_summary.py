#!/usr/bin/env python3
"""Summarises a road: roughness, profile index, spectrum and straightedge.

    road_summary.py PROFILE.csv

The file has a header line and two or three columns: distance, and the
elevations of one or two wheel tracks, all in metres.
"""

from __future__ import annotations

import math
import sys

import numpy as np
from numpy.typing import NDArray

import vialto
from vialto import RideIndex

Reals = NDArray[np.float64]

LONGEST_SMOOTHED_INTERVAL = 0.167  # m


def read_road(path: str) -> tuple[float, dict[str, Reals]]:
    """The sample interval and the tracks of a road, both in metres."""
    rows = np.loadtxt(path, delimiter=",", skiprows=1, ndmin=2)
    names = {2: ("profile",), 3: ("left", "right")}.get(rows.shape[1])
    if names is None or len(rows) < 2:
        raise ValueError(f"{path}: expected rows of a distance and one or two "
                         "elevations")
    steps = np.diff(rows[:, 0])
    if not np.allclose(steps, steps[0], rtol=0.01, atol=0.0):
        raise ValueError(f"{path}: the sample interval is not constant")
    return float(np.mean(steps)), dict(zip(names, rows[:, 1:].T))


def summarise_track(name: str, profile: Reals, interval: float) -> None:
    smoothed = interval < LONGEST_SMOOTHED_INTERVAL
    iri = vialto.ride_index(profile, interval, moving_average=smoothed)
    rn = vialto.ride_index(profile, interval, index=RideIndex.RN,
                           moving_average=smoothed)
    trace = vialto.profilograph_trace(1000.0 * profile, interval)
    index = vialto.profile_index(trace.height, interval, first=trace.first,
                                 last=trace.last)
    spectrum = vialto.power_spectral_density(profile, interval)
    peak = np.argmax(spectrum.density)
    straightedge = vialto.rolling_straightedge(profile, interval, length=3.0)
    deepest = 1000.0 * np.max(np.abs(straightedge.deflection))
    print(f"{name}\n"
          f"  IRI                {1000.0 * iri:8.2f} m/km\n"
          f"  Ride Number        {5.0 * math.exp(-160.0 * rn):8.2f}\n"
          f"  profile index      {1000.0 * index.lots[0].rounded_index:8.1f} "
          f"mm/km, {len(index.defects)} defects\n"
          f"  slope PSD peak     {spectrum.density[peak]:8.2e} m at "
          f"{1.0 / spectrum.frequency[peak]:.2f} m\n"
          f"  3 m straightedge   {deepest:8.2f} mm at most")


def summarise_both(left: Reals, right: Reals,
                   interval: float) -> None:
    smoothed = interval < LONGEST_SMOOTHED_INTERVAL
    mri, ride_number = (
        vialto.two_track_ride_index(left, right, interval, index=index,
                                    moving_average=smoothed)
        for index in (RideIndex.MRI, RideIndex.RIDE_NUMBER))
    print("both tracks\n"
          f"  MRI                {1000.0 * mri:8.2f} m/km\n"
          f"  Ride Number        {ride_number:8.2f}")


def main(arguments: list[str]) -> int:
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        interval, tracks = read_road(arguments[0])
        for name, profile in tracks.items():
            summarise_track(name, profile, interval)
        if len(tracks) == 2:
            summarise_both(tracks["left"], tracks["right"], interval)
    except (OSError, ValueError, vialto.VialtoError) as problem:
        print(f"road_summary: {problem}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
