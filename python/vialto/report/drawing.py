"""How lines and figures look."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np
import plotly.graph_objects as go
from numpy.typing import ArrayLike

from vialto.road import Road

if TYPE_CHECKING:
    import pandas as pd

COLOURS = {"left": "#0072b2", "right": "#e69f00"}  # told apart by the colour-blind, too
MARK = "#c1272d"


def track_line(road: Road, side: str, heights: ArrayLike, **options: Any) -> go.Scatter:
    """A value for each sample of a track, in its colour.

    Distances are told by their start and step, which takes no room.
    """
    look = {
        "x0": road.start,
        "dx": road.interval,
        "mode": "lines",
        "line": {"color": COLOURS[side], "width": 1.2},
        "name": side,
        "legendgroup": side,
    }
    return go.Scatter(y=np.asarray(heights, np.float32), **(look | options))


def segments(ends: list[tuple[float, float, float, float]]) -> tuple[list[Any], list[Any]]:
    """Separate straight lines as one: x and y, with a gap behind each."""
    x = [value for begin, _, end, _ in ends for value in (begin, end, None)]
    y = [value for _, begin, _, end in ends for value in (begin, end, None)]
    return x, y


def bands(found: pd.DataFrame, name: str) -> list[dict[str, Any]]:
    """Shapes behind the stretches of a table, as high as the picture."""
    look = {
        "type": "rect",
        "yref": "y domain",
        "y0": 0.0,
        "y1": 1.0,
        "layer": "below",
        "opacity": 0.2,
        "fillcolor": MARK,
        "line": {"color": MARK, "width": 1},  # seen however far out
        "name": name,
    }
    return [
        {**look, "x0": begin, "x1": end, "showlegend": place == 0}
        for place, (begin, end) in enumerate(zip(found["begin"], found["end"], strict=True))
    ]


def by_distance(road: Road, lines: list[go.Scatter], y_title: str) -> go.Figure:
    """A figure of lines over the distance, whose axis shows the whole road."""
    figure = go.Figure(lines)
    figure.update_xaxes(title="distance, m", range=[road.start, road.start + road.length])
    figure.update_yaxes(title=y_title)
    return styled(figure)


def styled(figure: go.Figure, height: int = 340) -> go.Figure:
    """The figure, as all of them look. Plots begin at the same place, below each other."""
    plain = {"automargin": False, "exponentformat": "none"}  # 12,400 m and not 12.4k
    figure.update_xaxes(plain)
    figure.update_yaxes(plain)
    return figure.update_layout(
        template="plotly_white",
        height=height,
        margin={"l": 70, "r": 20, "t": 40, "b": 45},
        legend={"orientation": "h", "y": 1.02, "yanchor": "bottom", "x": 0.0},
        hovermode="x",
        dragmode="zoom",
    )
