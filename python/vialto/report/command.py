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
        Path, typer.Argument(help="CSV or Parquet: a distance and one or two elevations.")
    ],
    output: Annotated[
        Path | None,
        typer.Option("--output", "-o", help="The page; by default beside the road, in .html."),
    ] = None,
    section: Annotated[float, typer.Option(help="Length of a section in metres.")] = SECTION,
    threshold: Annotated[
        float, typer.Option(help="Of the moving IRI over 7.62 m, in m/km.")
    ] = LOCAL_ROUGHNESS,
    joints: Annotated[
        float | None, typer.Option(help="Look for joints, expected at this spacing in metres.")
    ] = None,
    compare: Annotated[
        Path | None, typer.Option(help="A reference road, measured where this one was.")
    ] = None,
    columns: Annotated[
        str | None, typer.Option(help="The distance and the elevations: distance,left,right")
    ] = None,
    resample: Annotated[
        bool, typer.Option("--resample", help="Bring uneven samples onto the usual step.")
    ] = False,
    fill_gaps: Annotated[float, typer.Option(help="Fill gaps up to this length in metres.")] = 0.0,
) -> None:
    """Report one road on a page with its numbers and pictures.

    The page holds all it shows and opens offline. Exit status 0, or 2 when the file is no road or
    the page cannot be written.
    """
    try:
        from vialto.reading import read_road

        from .page import page
        from .pictures import Settings

        with _progress() as progress, warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")

            def read(path: Path, names: str | None) -> vialto.Road:
                return read_road(
                    path,
                    columns=names.split(",") if names is not None else None,
                    resample=resample,
                    fill_gaps=fill_gaps,
                )

            measured = read(road, columns)
            reference = read(compare, columns) if compare is not None else None
            progress("reading")
            text = page(
                measured,
                Settings(section, threshold, joints, reference),
                remarks=dict.fromkeys(str(warning.message) for warning in caught),
                progress=progress,
            )
        target = road.with_suffix(".html") if output is None else output
        target.write_text(text, "utf-8")
    except (ValueError, OSError) as refusal:
        typer.echo(f"vialto report: {refusal}", err=True)
        raise typer.Exit(USAGE) from None
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
