"""Numerical analyses of measured road profiles.

One function for each analysis of the library Vialto, with numpy arrays in and out; an analysis
with a value for each sample also takes a Series of pandas and gives one back, with its index. A
failure raises `VialtoError`; the arrays that are handed over are never changed.

Around them, for those who have pandas: `read_road` reads a `Road` from a file and refuses what is
none, and `roughness`, `stretches`, `lot_table`, `defect_table` and `joint_table` make tables.

`defaults` names the settings that are taken where nothing else is asked for.
"""

from importlib.metadata import PackageNotFoundError, version

from . import defaults
from ._arrays import ValidRange
from ._library import VialtoError, load
from ._profiles import UnitWarning
from .comparison import (
    Comparison,
    ComparisonGrid,
    Repeatability,
    compare_profiles,
    comparison_grid,
    repeatability,
)
from .defaults import TWELVE_WHEELS
from .filters import AntiSmoothed, Filter, FilterBand, FilterKind, FilterOutput, anti_smooth
from .grind_search import MustGrind, must_grind, must_grind_two_tracks
from .grinding import (
    Direction,
    Grinder,
    GrindFlag,
    GrindSpot,
    Ground,
    GroundTracks,
    Pass,
    grind,
    grind_two_tracks,
)
from .joints import Feature, Features, JointMethod, find_joints, joint_faults
from .profile_indices import (
    Defect,
    DefectKind,
    Lot,
    ProfileIndex,
    Profilograph,
    profile_index,
    run_profilograph,
)
from .profilograph import ProfilographTrace, profilograph_trace
from .reading import read_road
from .ride import RideIndex, SegmentIndices, continuous_ride_index, ride_index, segment_ride_indices
from .road import Quality, Road, RoadError
from .spectra import (
    Density,
    FrequencyGrid,
    Spectrum,
    StraightedgeResponse,
    power_spectral_density,
    rolling_straightedge,
)
from .statistics import Histogram, histogram
from .tables import defect_table, joint_table, lot_table, roughness, stretches
from .two_tracks import (
    two_track_continuous_ride_index,
    two_track_ride_index,
    two_track_segment_ride_indices,
)
from .wim import wim_error_index

__all__ = [
    "TWELVE_WHEELS",
    "AntiSmoothed",
    "Comparison",
    "ComparisonGrid",
    "Defect",
    "DefectKind",
    "Density",
    "Direction",
    "Feature",
    "Features",
    "Filter",
    "FilterBand",
    "FilterKind",
    "FilterOutput",
    "FrequencyGrid",
    "GrindFlag",
    "GrindSpot",
    "Grinder",
    "Ground",
    "GroundTracks",
    "Histogram",
    "JointMethod",
    "Lot",
    "MustGrind",
    "Pass",
    "ProfileIndex",
    "Profilograph",
    "ProfilographTrace",
    "Quality",
    "Repeatability",
    "RideIndex",
    "Road",
    "RoadError",
    "SegmentIndices",
    "Spectrum",
    "StraightedgeResponse",
    "UnitWarning",
    "ValidRange",
    "VialtoError",
    "anti_smooth",
    "compare_profiles",
    "comparison_grid",
    "continuous_ride_index",
    "defaults",
    "defect_table",
    "find_joints",
    "grind",
    "grind_two_tracks",
    "histogram",
    "joint_faults",
    "joint_table",
    "load",
    "lot_table",
    "must_grind",
    "must_grind_two_tracks",
    "power_spectral_density",
    "profile_index",
    "profilograph_trace",
    "read_road",
    "repeatability",
    "ride_index",
    "rolling_straightedge",
    "roughness",
    "run_profilograph",
    "segment_ride_indices",
    "stretches",
    "two_track_continuous_ride_index",
    "two_track_ride_index",
    "two_track_segment_ride_indices",
    "wim_error_index",
]

try:
    __version__ = version("vialto")
except PackageNotFoundError:  # a source tree on the path, not installed
    __version__ = "0+source"
