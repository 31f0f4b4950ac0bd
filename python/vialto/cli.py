"""The commands. What one of them alone needs it imports when it runs."""

from __future__ import annotations

from typing import Annotated

import typer

import vialto
from vialto.commands.network import network
from vialto.commands.report import report

app = typer.Typer(
    no_args_is_help=True,
    add_completion=False,
    pretty_exceptions_enable=False,
    rich_markup_mode="markdown",
)


def _show_version(asked: bool) -> None:
    if asked:
        typer.echo(f"vialto {vialto.__version__}")
        raise typer.Exit


@app.callback()
def _main(
    _version: Annotated[
        bool,
        typer.Option("--version", callback=_show_version, is_eager=True, help="Show the version."),
    ] = False,
) -> None:
    """Numerical analyses of measured road profiles."""


app.command()(report)
app.command()(network)
