"""The pictures of a road beside its reference."""

from __future__ import annotations

import plotly.graph_objects as go

from vialto._profiles import MM_PER_M
from vialto.comparison import Comparison, compare_profiles
from vialto.filters import Filter
from vialto.road import Road

from .drawing import COLOURS, by_distance, styled, track_line
from .settings import Settings

REFERENCE = {"left": "#56b4e9", "right": "#8b5a00"}  # beside the colours of the road's tracks


def agreement(road: Road, settings: Settings) -> tuple[go.Figure, str]:
    """The agreement over the offsets that were tried, and what it is at best."""
    figure = go.Figure()
    told = []
    for side, found in _comparisons(road, settings).items():
        line = {"color": COLOURS[side]}
        figure.add_trace(go.Scatter(x=found.offsets, y=found.coefficients, name=side, line=line))
        told.append(f"{side} {found.coefficient:.1f} % at {found.offset:.3f} m")
    figure.update_xaxes(title="offset, m")
    figure.update_yaxes(title="agreement, %")
    figure.update_layout(showlegend=True)
    return styled(figure), (
        f"Best agreement of the slopes behind the quarter car: {', '.join(told)}. An offset is"
        " positive where this road begins farther along than the reference."
    )


def filtered(road: Road, settings: Settings) -> tuple[go.Figure, str]:
    """Both roads as the quarter car sees them, one over the other."""
    assert settings.reference is not None
    lines = []
    for side, found in _comparisons(road, settings).items():
        lines.append(
            track_line(
                settings.reference,
                side,
                MM_PER_M * found.reference_filtered,
                x0=road.start - found.offset,
                name=f"{side}, reference",
                line={"color": REFERENCE[side], "width": 2.4},
            )
        )
        lines.append(track_line(road, side, MM_PER_M * found.test_filtered))
    figure = by_distance(road, lines, "filtered slope, mm/m")
    return figure, "Both roads behind the quarter car, the reference moved by the best offset."


def _comparisons(road: Road, settings: Settings) -> dict[str, Comparison]:
    """The agreement of each track that both roads have, or of their only ones."""
    reference = settings.reference
    assert reference is not None
    pairs = {side: side for side in road.tracks if side in reference.tracks} or {
        next(iter(road.tracks)): next(iter(reference.tracks))
    }
    return {
        side: compare_profiles(
            reference.tracks[other],
            road.tracks[side],
            reference.interval,
            road.interval,
            settings=Filter(moving_average=road.moving_average),
        )
        for side, other in pairs.items()
    }
