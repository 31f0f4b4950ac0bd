"""How lines and figures look."""

from __future__ import annotations

from typing import Any

import numpy as np
import plotly.graph_objects as go
from numpy.typing import ArrayLike, NDArray

from vialto.road import Road

COLOURS = {"left": "#0072b2", "right": "#e69f00"}  # told apart by the colour-blind, too
MARK = "#c1272d"


def line(road: Road, heights: ArrayLike, name: str, **options: Any) -> go.Scatter:
    """A value for each sample. Distances are told by their start and step, which takes no room."""
    values = np.asarray(heights, np.float32)
    return go.Scatter(x0=road.start, dx=road.interval, y=values, name=name, mode="lines", **options)


def track_line(road: Road, side: str, heights: ArrayLike, name: str = "") -> go.Scatter:
    """A value for each sample of a track, in its colour."""
    return line(road, heights, f"{side}{name}", line={"color": COLOURS[side], "width": 1.2})


def segments(ends: list[tuple[float, float, float, float]]) -> tuple[list[Any], list[Any]]:
    """Separate straight lines as one: x and y, with a gap behind each."""
    x = [value for begin, _, end, _ in ends for value in (begin, end, None)]
    y = [value for _, begin, _, end in ends for value in (begin, end, None)]
    return x, y


def by_distance(road: Road, lines: list[go.Scatter], y_title: str) -> go.Figure:
    """A figure of lines over the distance, whose axis shows the whole road."""
    figure = go.Figure(lines)
    figure.update_xaxes(title="distance, m", range=[road.start, road.start + road.length])
    figure.update_yaxes(title=y_title)
    return styled(figure)


def styled(figure: go.Figure, height: int = 340) -> go.Figure:
    """The figure, as all of them look."""
    return figure.update_layout(
        template="plotly_white",
        height=height,
        margin={"l": 60, "r": 20, "t": 30, "b": 45},
        legend={"orientation": "h", "y": 1.02, "yanchor": "bottom", "x": 0.0},
        hovermode="x",
        dragmode="zoom",
    )


def marked_line(road: Road, heights: ArrayLike, flags: NDArray[np.bool_], name: str) -> go.Scatter:
    """The stretches of a line that are flagged, with a gap behind each."""
    values = np.asarray(heights, np.float32)
    places = np.flatnonzero(flags)
    behind = np.flatnonzero(np.diff(places) > 1) + 1
    return go.Scatter(
        x=np.insert(road.distance[places], behind, np.nan),
        y=np.insert(values[places], behind, np.nan),
        name=name,
        mode="lines",
        line={"color": MARK, "width": 2.5},
    )
