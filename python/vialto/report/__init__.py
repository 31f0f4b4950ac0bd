"""A report of one road: the numbers that it is accepted by, and pictures to zoom into."""

from .numbers import Number, acceptance
from .page import page
from .pictures import Picture, figures, pictures
from .settings import Settings

__all__ = ["Number", "Picture", "Settings", "acceptance", "figures", "page", "pictures"]
