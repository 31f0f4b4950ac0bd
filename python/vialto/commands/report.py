"""The command `vialto report`."""

from __future__ import annotations

import time
import warnings
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from pathlib import Path
from typing import Annotated

import typer
from rich.console import Console

import vialto
from vialto.defaults import LOCAL_ROUGHNESS, SECTION

USAGE = 2
PATIENCE = 1.0  # s, after which progress is shown


def report(
    road: Annotated[
        Path, typer.Argument(metavar="ROAD", help="CSV or Parquet: a distance, elevations.")
    ],
    output: Annotated[
        Path | None, typer.Option("--output", "-o", help="The page; else beside ROAD, in .html.")
    ] = None,
    section: Annotated[
        float, typer.Option(help=f"Length of a section: {SECTION:g} m.", show_default=False)
    ] = SECTION,
    threshold: Annotated[
        float,
        typer.Option(help=f"Highest moving IRI: {LOCAL_ROUGHNESS:g} m/km.", show_default=False),
    ] = LOCAL_ROUGHNESS,
    joints: Annotated[
        float | None, typer.Option(help="Look for joints so many metres apart.")
    ] = None,
    compare: Annotated[Path | None, typer.Option(help="A reference road to compare with.")] = None,
    columns: Annotated[str | None, typer.Option(help="Which to read: distance,left,right")] = None,
    resample: Annotated[
        bool, typer.Option("--resample", help="Bring uneven samples onto the usual step.")
    ] = False,
    fill_gaps: Annotated[
        float, typer.Option(help="Fill gaps of up to so many metres.", show_default=False)
    ] = 0.0,
) -> None:
    """Report one road on a page with its numbers and pictures.

    The page holds all it shows and opens offline. Exit status 0, or 2 when a file is no road or
    the page cannot be written.
    """
    target = road.with_suffix(".html") if output is None else output
    try:
        from vialto.reading import read_road
        from vialto.report import Settings, page

        with _progress() as progress, warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")

            def read(path: Path) -> vialto.Road:
                return read_road(
                    path,
                    columns=columns.split(",") if columns is not None else None,
                    resample=resample,
                    fill_gaps=fill_gaps,
                )

            if target in (road, compare):
                raise ValueError(f"{target}: the page would take the place of the road")
            measured = read(road)
            reference = read(compare) if compare is not None else None
            remarks = dict.fromkeys(str(warning.message) for warning in caught)
            progress("reading")
            text = page(
                measured,
                Settings(section, threshold, joints, reference),
                remarks=remarks,
                progress=progress,
            )
        target.write_text(text, "utf-8")
    except (ValueError, OSError) as refusal:
        typer.echo(f"vialto report: {refusal}", err=True)
        raise typer.Exit(USAGE) from None
    for remark in remarks:
        typer.echo(f"vialto report: {remark}", err=True)
    typer.echo(f"{target}: {len(text) / 1e6:.1f} MB")


@contextmanager
def _progress() -> Iterator[Callable[[str], None]]:
    """On a terminal, a line that tells what was done last, once it takes long."""
    console = Console(stderr=True)
    begun = time.monotonic()
    with console.status("") as status:
        status.stop()

        def done(step: str) -> None:
            if console.is_terminal and time.monotonic() - begun > PATIENCE:
                status.update(f"{step} done, {time.monotonic() - begun:.0f} s")
                status.start()

        yield done
