"""The report as one page that needs nothing but a browser."""

from __future__ import annotations

import math
from collections.abc import Callable, Iterable
from html import escape
from importlib.resources import files
from string import Template
from typing import Any

from plotly.offline import get_plotlyjs

import vialto
from vialto._profiles import MM_PER_M
from vialto.road import Road
from vialto.tables import roughness

from .numbers import Number, acceptance
from .pictures import Picture, pictures
from .settings import Settings

# The columns of the table of sections: heading, unit and decimals.
SECTION_COLUMNS = {
    "begin": ("from", "m", 1),
    "end": ("to", "m", 1),
    "iri_left": ("IRI left", "m/km", 2),
    "iri_right": ("IRI right", "m/km", 2),
    "mri": ("MRI", "m/km", 2),
    "hri": ("HRI", "m/km", 2),
    "ride_number": ("Ride Number", "of 5", 2),
}


def page(
    road: Road,
    settings: Settings | None = None,
    *,
    remarks: Iterable[str] = (),
    progress: Callable[[str], None] = lambda _step: None,
) -> str:
    """The report of a road: one HTML page that holds all it shows, and opens without a network.

    Parameters
    ----------
    road : Road
        One track or two.
    settings : Settings, optional
        Those of a highway at 25 mm by default.
    remarks : iterable of str
        What the reader must know first, such as that a unit is surely wrong.
    progress : callable
        Is told each step, as it is done.

    Returns
    -------
    str
        The page, as HTML.
    """
    settings = Settings() if settings is None else settings
    numbers = acceptance(road)
    progress("numbers")
    sections = _sections(road, settings)
    progress("sections")
    drawn = []
    for picture in pictures(road, settings):
        drawn.append(_picture(picture))
        progress(picture.title)
    shared = files(__package__)
    return Template(shared.joinpath("page.html").read_text("utf-8")).substitute(
        title=escape(road.name),
        style=shared.joinpath("page.css").read_text("utf-8"),
        plotly=get_plotlyjs(),
        summary=escape(_summary(road)),
        remarks="".join(f'<p class="remark">{escape(remark)}</p>' for remark in remarks),
        numbers="".join(_card(number) for number in numbers),
        sections=sections,
        pictures="".join(drawn),
        script=shared.joinpath("page.js").read_text("utf-8"),
        version=escape(vialto.__version__),
    )


def _summary(road: Road) -> str:
    quality = f"; {road.quality}" if road.quality is not None else ""
    return (
        f"{road.length:.3f} m from {road.start:.10g} m on, {road.samples} samples every"
        f" {MM_PER_M * road.interval:g} mm, {' and '.join(road.tracks)}{quality}"
    )


def _number(value: Any, decimals: int) -> str:
    return f"{value:.{decimals}f}" if math.isfinite(value) else "-"


def _card(number: Number) -> str:
    reason = f'<div class="reason">{escape(number.left_out)}</div>' if number.left_out else ""
    return (
        f'<div class="card"><div class="name">{escape(number.name)}</div>'
        f'<div class="value">{_number(number.value, 2)} <span>{escape(number.unit)}</span></div>'
        f'<div class="standard">{escape(number.standard)}</div>{reason}</div>'
    )


def _sections(road: Road, settings: Settings) -> str:
    try:
        table = roughness(road, settings.section)
    except (vialto.VialtoError, ValueError) as short:
        return f'<p class="reason">Left out: {escape(str(short))}</p>'
    shown = [name for name in SECTION_COLUMNS if not table[name].isna().all()]
    head = "".join(
        "<th>{}<br><span>{}</span></th>".format(*map(escape, SECTION_COLUMNS[name][:2]))
        for name in shown
    )
    rows = []
    for _, row in table.iterrows():
        rough = any(row[name] > settings.threshold for name in ("iri_left", "iri_right", "mri"))
        cells = "".join(
            f"<td>{_number(row[name], SECTION_COLUMNS[name][2])}</td>" for name in shown
        )
        classes = ' class="rough"' if rough else ""
        rows.append(f"<tr{classes}>{cells}</tr>")
    limit = (
        f"<p>Red: an IRI or MRI above {settings.threshold:g} m/km, the limit of the moving IRI.</p>"
    )
    note = limit if any("rough" in row for row in rows) else ""
    return f"{note}<table><thead><tr>{head}</tr></thead><tbody>{''.join(rows)}</tbody></table>"


def _picture(picture: Picture) -> str:
    note = f"<p>{escape(picture.note)}</p>"
    if picture.figure is None:
        return f'<section class="reason"><h2>{escape(picture.title)}</h2>{note}</section>'
    drawn = picture.figure.to_html(
        full_html=False,
        include_plotlyjs=False,
        div_id=picture.name,
        config={"responsive": True, "displaylogo": False},
    ).replace(r"\u002f", "/")  # harmless where "<" is escaped, and every 64th character of data
    shared = ' class="by-distance"' if picture.by_distance else ""
    return f"<section{shared}><h2>{escape(picture.title)}</h2>{note}{drawn}</section>"
