"""The numbers that a road is accepted by."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass

import numpy as np

from vialto._arrays import Doubles
from vialto._library import VialtoError
from vialto._profiles import MM_PER_M
from vialto.defaults import BLANKING_BAND, STRAIGHTEDGE
from vialto.profile_indices import run_profilograph
from vialto.ride import RideIndex, ride_index
from vialto.road import Road
from vialto.spectra import rolling_straightedge
from vialto.tables import LONGEST_RIDE_NUMBER_INTERVAL, PER_KM
from vialto.two_tracks import two_track_ride_index


@dataclass(frozen=True)
class Number:
    """One number of a road.

    Attributes
    ----------
    name : str
        What it is, and of which track.
    value : float
        NaN where the road is too short for it; ``left_out`` tells why.
    unit : str
        Of the value.
    standard : str
        By which it is defined.
    left_out : str
        Why there is no value; empty where there is one.
    """

    name: str
    value: float
    unit: str
    standard: str
    left_out: str = ""


def acceptance(road: Road) -> list[Number]:
    """IRI, MRI, HRI, Ride Number, profile index and worst straightedge of a whole road.

    Parameters
    ----------
    road : Road
        One track or two; one track has no MRI and HRI, and a Ride Number as if both were alike.

    Returns
    -------
    list of Number
        Each in the unit that it is accepted by; each tells its standard.
    """
    average = road.moving_average
    sides = list(road.tracks.items())
    left, right = sides[0][1], sides[-1][1]
    numbers: list[Number] = []

    def add(name: str, unit: str, standard: str, scale: float, index: Callable[[], float]) -> None:
        try:
            value = index()
        except (VialtoError, ValueError) as short:
            numbers.append(Number(name, np.nan, unit, standard, str(short)))
        else:
            numbers.append(Number(name, scale * value, unit, standard))

    def both(index: RideIndex) -> Callable[[], float]:
        return lambda: two_track_ride_index(
            left, right, road.interval, index=index, moving_average=average
        )

    def ride_number() -> float:
        if road.interval > LONGEST_RIDE_NUMBER_INTERVAL:
            raise ValueError(f"wrong for intervals above {LONGEST_RIDE_NUMBER_INTERVAL:g} m")
        return both(RideIndex.RIDE_NUMBER)()

    def iri(track: Doubles) -> Callable[[], float]:
        return lambda: ride_index(track, road.interval, moving_average=average)

    def profile_index(track: Doubles) -> Callable[[], float]:
        return lambda: run_profilograph(track, road.interval).index.lots[0].rounded_index

    for side, track in sides:
        add(f"IRI {side}", "m/km", "ASTM E1926", PER_KM, iri(track))
    if len(sides) == 2:
        add("MRI", "m/km", "ASTM E1926, AASHTO R 54", PER_KM, both(RideIndex.MRI))
        add("HRI", "m/km", "Sayers, TRR 1215", PER_KM, both(RideIndex.HRI))
    add("Ride Number", "of 5", "ASTM E1489", 1.0, ride_number)
    for side, track in sides:
        band = f"ASTM E1274, blanking band {BLANKING_BAND:g} mm"
        add(f"Profile index {side}", "mm/km", band, PER_KM, profile_index(track))
    add(
        f"Worst {STRAIGHTEDGE:g} m straightedge",
        "mm",
        "middle against ends; EN 13036-7 has the gap",
        MM_PER_M,
        lambda: max(_worst_deflection(track, road.interval) for _, track in sides),
    )
    return numbers


def _worst_deflection(track: Doubles, interval: float) -> float:
    response = rolling_straightedge(track, interval, length=STRAIGHTEDGE)
    valid = np.abs(response.deflection[response.valid])
    if valid.size == 0:
        raise ValueError(f"the road is shorter than a straightedge of {STRAIGHTEDGE:g} m")
    return float(valid.max())
