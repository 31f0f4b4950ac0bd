"""What a report is asked for."""

from __future__ import annotations

import math
from dataclasses import dataclass

from vialto.defaults import LOCAL_ROUGHNESS, SECTION
from vialto.road import Road


@dataclass(frozen=True)
class Settings:
    """What a report shows.

    Attributes
    ----------
    section : float
        Length of a section, m: of the table, and of the lots of the profilograph.
    threshold : float
        Of the moving IRI over 7.62 m, m/km: what is above it is marked, and ground.
    joints : float, optional
        Expected spacing of joints, m; without it none are looked for.
    reference : Road, optional
        What the road is compared with.
    """

    section: float = SECTION
    threshold: float = LOCAL_ROUGHNESS
    joints: float | None = None
    reference: Road | None = None

    def __post_init__(self) -> None:
        for name in ("section", "threshold", "joints"):
            value = getattr(self, name)
            if value is not None and not 0.0 < value < math.inf:
                raise ValueError(f"{name} is {value:g}, which is not above zero")
