"""A network of roads: files analysed in sections, on the cores of a machine or on a cluster."""

from .analysis import COLUMNS, Outcome, Settings, sections
from .files import find_roads
from .run import NetworkWarning, analyse

__all__ = [
    "COLUMNS",
    "NetworkWarning",
    "Outcome",
    "Settings",
    "analyse",
    "find_roads",
    "sections",
]
