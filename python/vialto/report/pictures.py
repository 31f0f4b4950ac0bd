"""The pictures of a road, as Plotly figures."""

from __future__ import annotations

from collections.abc import Callable, Iterator, Mapping
from dataclasses import dataclass
from typing import TYPE_CHECKING

import numpy as np
import plotly.graph_objects as go
from plotly.subplots import make_subplots

from vialto._arrays import Doubles, Reals
from vialto._library import VialtoError
from vialto._profiles import MM_PER_M
from vialto.defaults import BLANKING_BAND, LOCAL_BASE_LENGTH, STRAIGHTEDGE
from vialto.grind_search import MustGrind, must_grind, must_grind_two_tracks
from vialto.grinding import Grinder, GrindSpot, grind, grind_two_tracks
from vialto.profile_indices import DefectKind, Profilograph, run_profilograph
from vialto.ride import RideIndex, continuous_ride_index
from vialto.road import Road
from vialto.spectra import power_spectral_density, rolling_straightedge
from vialto.tables import PER_KM, joint_table, stretches

from .agreement import agreement, filtered
from .drawing import COLOURS, MARK, bands, by_distance, segments, styled, track_line
from .settings import Settings

if TYPE_CHECKING:
    import pandas as pd

_EDGE = {"color": MARK, "width": 1.5}  # of a marker
WAVELENGTHS = (0.1, 0.3, 1, 3, 10, 30, 100, 300)  # m; ticks of the upper axis


@dataclass(frozen=True)
class Picture:
    """One picture, or why there is none.

    Attributes
    ----------
    name : str
        Of the picture, for programs.
    title : str
        For people.
    figure : plotly.graph_objects.Figure, optional
        The picture.
    by_distance : bool
        Whether its horizontal axis is the distance, which all such pictures share.
    note : str
        What it shows, or why it was left out.
    """

    name: str
    title: str
    figure: go.Figure | None
    by_distance: bool
    note: str


def figures(road: Road, settings: Settings | None = None) -> dict[str, go.Figure]:
    """The figures of a road, by name; without those that it gives no cause for.

    Parameters
    ----------
    road : Road
        One track or two.
    settings : Settings, optional
        Those of a highway at 25 mm by default.

    Returns
    -------
    dict of str to plotly.graph_objects.Figure
        ``elevation``, ``moving_iri``, ``profilograph``, ``straightedge``, ``grinding`` and
        ``spectrum``; ``joints``, ``agreement`` and ``filtered`` where the settings ask.
    """
    return {
        picture.name: picture.figure
        for picture in pictures(road, settings)
        if picture.figure is not None
    }


def pictures(road: Road, settings: Settings | None = None) -> Iterator[Picture]:
    """The pictures of a road, one after the other, with those that were left out.

    Parameters
    ----------
    road, settings
        As in `figures`.

    Yields
    ------
    Picture
        In the order of the report; without a figure where the road gives no cause for one.
    """
    settings = Settings() if settings is None else settings
    for name, (title, over_distance, draw, asked) in _PICTURES.items():
        if asked(settings):
            try:
                figure, note = draw(road, settings)
            except (VialtoError, ValueError) as short:
                yield Picture(name, title, None, over_distance, f"Left out: {short}")
            else:
                yield Picture(name, title, figure, over_distance, note)


_Drawn = tuple[go.Figure | None, str]


def _elevation(road: Road, _settings: Settings) -> _Drawn:
    lines = [track_line(road, side, track) for side, track in road.tracks.items()]
    figure = by_distance(road, lines, "elevation, m")
    filled = stretches(road.filled, road.interval, start=road.start)
    if len(filled) == 0:
        return figure, "The road as it was measured."
    figure.update_layout(shapes=bands(filled, "filled"))
    return figure, f"The road as it was measured, but for straight lines in gaps: {_told(filled)}."


def _moving(road: Road, track: Doubles | Reals) -> Doubles:
    moving = continuous_ride_index(
        track,
        road.interval,
        base_length=LOCAL_BASE_LENGTH,
        moving_average=road.moving_average,
    )
    return PER_KM * np.asarray(moving, np.float64)


def _moving_iri(road: Road, settings: Settings) -> _Drawn:
    lines, over = [], np.zeros(road.samples, bool)
    for side, track in road.tracks.items():
        moving = _moving(road, track)
        over |= moving > settings.threshold
        lines.append(track_line(road, side, moving))
    found = stretches(over, road.interval, start=road.start)
    limit = {
        "type": "line",
        "xref": "x domain",
        "x0": 0.0,
        "x1": 1.0,
        "y0": settings.threshold,
        "y1": settings.threshold,
        "line": {"color": MARK, "width": 1, "dash": "dot"},
    }
    figure = by_distance(road, lines, f"IRI over {LOCAL_BASE_LENGTH:g} m, m/km")
    figure.update_layout(shapes=[*bands(found, f"above {settings.threshold:g} m/km"), limit])
    ends = f" Within {LOCAL_BASE_LENGTH / 2.0:g} m of either end it is a guess."
    if len(found) == 0:
        return figure, f"No stretch exceeds {settings.threshold:g} m/km.{ends}"
    told = f"Above {settings.threshold:g} m/km, in one track at least: {_told(found)}."
    return figure, told + ends


def _told(found: pd.DataFrame) -> str:
    number = "one stretch" if len(found) == 1 else f"{len(found)} stretches"
    return f"{number}, {found['length'].sum():.1f} m in all"


def _profilograph(road: Road, settings: Settings) -> _Drawn:
    lines, told = [], []
    for side, track in road.tracks.items():
        run = run_profilograph(track, road.interval, lot_length=settings.section)
        lines.append(track_line(road, side, run.trace.height))
        bands = [
            (
                road.start + road.interval * lot.first,
                first,
                road.start + road.interval * lot.last,
                last,
            )
            for lot in run.index.lots
            for first, last in (lot.upper_band, lot.lower_band)
        ]
        x, y = segments(bands)
        dashed = {"color": COLOURS[side], "width": 1, "dash": "dash"}
        lines.append(
            go.Scatter(
                x=x,
                y=y,
                mode="lines",
                line=dashed,
                name=f"blanking band {side}",
                legendgroup=side,
                showlegend=False,
            )
        )
        lines.append(_defects(road, side, run))
        told.append(f"{len(run.index.defects)} {side}")
    figure = by_distance(road, lines, "trace, mm")
    return figure, (
        f"Twelve wheels, lots of {settings.section:g} m, blanking band of {BLANKING_BAND:g} mm"
        f" (dashed). Triangles stand at the defects beyond it: {', '.join(told)}."
    )


def _defects(road: Road, side: str, run: Profilograph) -> go.Scatter:
    """Each defect as far as it reaches beyond its band."""
    peaks = [
        (
            road.start + (defect.begin[0] + defect.end[0]) / 2.0,
            (defect.begin[1] + defect.end[1]) / 2.0
            + (1.0 if defect.kind == DefectKind.ABOVE else -1.0) * defect.height,
        )
        for defect in run.index.defects
    ]
    symbols = [
        "triangle-up" if defect.kind == DefectKind.ABOVE else "triangle-down"
        for defect in run.index.defects
    ]
    return go.Scatter(
        x=[x for x, _ in peaks],
        y=[y for _, y in peaks],
        name=f"defects {side}",
        mode="markers",
        marker={"color": COLOURS[side], "symbol": symbols, "size": 8, "line": _EDGE},
    )


def _straightedge(road: Road, _settings: Settings) -> _Drawn:
    lines = []
    for side, track in road.tracks.items():
        response = rolling_straightedge(track, road.interval, length=STRAIGHTEDGE)
        if response.last < response.first:
            raise ValueError(f"the road is shorter than a straightedge of {STRAIGHTEDGE:g} m")
        shown = np.full(road.samples, np.nan)
        shown[response.valid] = MM_PER_M * response.deflection[response.valid]
        lines.append(track_line(road, side, shown))
    figure = by_distance(road, lines, "deflection, mm")
    return figure, (
        f"The middle of {STRAIGHTEDGE:g} m against the mean of its ends, positive over a bump. The"
        " gap under a beam that lies on the road is another number."
    )


def _joints(road: Road, settings: Settings) -> _Drawn:
    assert settings.joints is not None
    found = joint_table(road, spacing=settings.joints)
    lines = []
    for (side, kind), rows in found.groupby(["track", "kind"]):
        lines.append(
            go.Scatter(
                x=rows["location"],
                y=rows["fault"],
                name=f"{side}, {kind}s",
                mode="markers",
                marker={
                    "color": COLOURS[str(side)],
                    "symbol": "circle" if kind == "joint" else "x",
                    "size": 7,
                },
            )
        )
    figure = by_distance(road, lines, "fault, mm")
    return figure, f"{len(found)} joints and cracks; a fault is positive where the road drops."


def _without_grade(track: Doubles) -> Doubles:
    """The track off the straight line through its ends, on which the grinder would cut or spare."""
    return track - np.linspace(track[0], track[-1], track.size)


def _grinding(road: Road, settings: Settings) -> _Drawn:
    sides = list(road.tracks)
    tracks = {side: _without_grade(track) for side, track in road.tracks.items()}
    left, right = tracks[sides[0]], tracks[sides[-1]]
    index = RideIndex.IRI if len(sides) == 1 else RideIndex.MRI
    wanted = MustGrind(
        index=index,
        threshold=settings.threshold / PER_KM,
        base_length=LOCAL_BASE_LENGTH,
        moving_average=road.moving_average,
    )
    if len(sides) == 1:
        flags = must_grind(left, road.interval, wanted)
    else:
        flags = must_grind_two_tracks(left, right, road.interval, wanted)
    found = stretches(flags, road.interval, start=road.start)
    limit = f"a moving {index.name} above {settings.threshold:g} m/km"
    if len(found) == 0:
        return None, f"Nothing to grind for {limit}."
    spots = [
        GrindSpot(int(first), int(last))
        for first, last in zip(found["first"], found["last"], strict=True)
    ]
    if len(sides) == 1:
        after = {sides[0]: grind(left, road.interval, spots).profile}
    else:
        ground = grind_two_tracks(left, right, road.interval, spots)
        after = {"left": ground.left, "right": ground.right}
    cuts = {side: np.asarray(tracks[side], np.float32) - after[side] for side in sides}
    worst = [
        max(float(_moving(road, heights[side]).max()) for side in sides)
        for heights in (tracks, after)
    ]
    return _before_and_after(road, tracks, cuts), (
        f"To grind for {limit}: {_told(found)}. Each, ground alone, lowers the moving IRI somewhere"
        " above the limit, however little. Above, the road off the line through its ends, before"
        f" and after a machine of {Grinder().wheel_base:g} m has ground them once; below, what it"
        f" cuts. The worst moving IRI of a track is {worst[0]:.2f} m/km before and"
        f" {worst[1]:.2f} m/km after."
    )


def _before_and_after(
    road: Road, tracks: Mapping[str, Doubles], cuts: Mapping[str, Reals]
) -> go.Figure:
    figure = make_subplots(rows=2, shared_xaxes=True, vertical_spacing=0.06)
    for place, (side, track) in enumerate(tracks.items()):
        figure.add_trace(track_line(road, side, track), row=1, col=1)
        ground = track_line(
            road,
            side,
            np.where(cuts[side] > 0.0, track - cuts[side], np.nan),
            name="after grinding",
            legendgroup="after",
            showlegend=place == 0,
            line={"color": MARK, "width": 2},
        )
        figure.add_trace(ground, row=1, col=1)
        depth = track_line(road, side, MM_PER_M * cuts[side], showlegend=False)
        figure.add_trace(depth, row=2, col=1)
    figure.update_xaxes(range=[road.start, road.start + road.length])
    figure.update_xaxes(title="distance, m", row=2, col=1)
    figure.update_yaxes(title="off the grade, m", row=1, col=1)
    figure.update_yaxes(title="cut, mm", rangemode="tozero", row=2, col=1)
    return styled(figure, height=480)


def _spectrum(road: Road, _settings: Settings) -> _Drawn:
    figure = go.Figure()
    for side, track in road.tracks.items():
        spectrum = power_spectral_density(track, road.interval)
        line = {"color": COLOURS[side]}
        figure.add_trace(go.Scatter(x=spectrum.frequency, y=spectrum.density, name=side, line=line))
    figure.add_trace(go.Scatter(x=[1.0], y=[np.nan], xaxis="x2", showlegend=False))
    styled(figure, height=420)
    figure.update_layout(
        margin={"t": 90},
        legend={"yref": "container", "y": 1.0, "yanchor": "top"},
        xaxis={"type": "log", "title": "wavenumber, cycles/m"},
        xaxis2={
            "type": "log",
            "title": "wavelength, m",
            "side": "top",
            "overlaying": "x",
            "matches": "x",
            "tickvals": [1.0 / length for length in WAVELENGTHS],
            "ticktext": [f"{length:g}" for length in WAVELENGTHS],
            "tickangle": 0,
            "showgrid": False,
        },
        yaxis={"type": "log", "title": "slope density, m", "exponentformat": "power"},
    )
    return figure, "How rough the road is at each wavelength, in twelve steps an octave."


_Draw = Callable[[Road, Settings], _Drawn]


def _always(_settings: Settings) -> bool:
    return True


def _compared(settings: Settings) -> bool:
    return settings.reference is not None


_PICTURES: dict[str, tuple[str, bool, _Draw, Callable[[Settings], bool]]] = {
    "elevation": ("Elevation", True, _elevation, _always),
    "moving_iri": ("Moving IRI", True, _moving_iri, _always),
    "profilograph": ("Profilograph", True, _profilograph, _always),
    "straightedge": ("Straightedge", True, _straightedge, _always),
    "joints": ("Joints and faults", True, _joints, lambda settings: settings.joints is not None),
    "grinding": ("Grinding", True, _grinding, _always),
    "spectrum": ("Slope spectrum", False, _spectrum, _always),
    "agreement": (
        "Agreement with the reference",
        False,
        agreement,
        _compared,
    ),
    "filtered": (
        "Filtered profiles",
        True,
        filtered,
        _compared,
    ),
}
