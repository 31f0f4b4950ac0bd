"""The command `vialto network`."""

from __future__ import annotations

import os
import signal
import time
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from dataclasses import dataclass, field
from pathlib import Path
from typing import TYPE_CHECKING, Annotated

import typer
from rich.console import Console
from rich.progress import (
    BarColumn,
    MofNCompleteColumn,
    Progress,
    TextColumn,
    TimeRemainingColumn,
)

from vialto.defaults import LOCAL_ROUGHNESS, TENTH_OF_A_MILE

if TYPE_CHECKING:
    import pandas as pd
    from distributed import Client

    from vialto.network.analysis import Outcome, Settings

SAVED_EVERY = 60.0  # s
TOLD_EVERY = 30.0  # s, where the output is no terminal

USAGE, SOME_FAILED, INTERRUPTED = 2, 1, 130


def network(
    roads: Annotated[
        list[str],
        typer.Argument(
            metavar="ROADS...",
            help="Files, directories or patterns of CSV or Parquet: a road each.",
        ),
    ],
    to: Annotated[Path, typer.Option(help="The results: a .parquet or .csv file.")],
    section: Annotated[float, typer.Option(help="Length of a section in metres.")] = (
        TENTH_OF_A_MILE
    ),
    threshold: Annotated[
        float, typer.Option(help="Of the moving IRI over 7.62 m, in m/km.")
    ] = LOCAL_ROUGHNESS,
    workers: Annotated[
        int | None, typer.Option(min=1, help="Processes on this machine; by default one a core.")
    ] = None,
    scheduler: Annotated[
        str | None, typer.Option(help="Run on the Dask cluster at this address: tcp://...")
    ] = None,
    resume: Annotated[
        bool, typer.Option("--resume", help="Keep what the results hold and do what is missing.")
    ] = False,
    columns: Annotated[
        str | None, typer.Option(help="The distance and the elevations: distance,left,right")
    ] = None,
    resample: Annotated[
        bool, typer.Option("--resample", help="Bring uneven samples onto the usual step.")
    ] = False,
    fill_gaps: Annotated[float, typer.Option(help="Fill gaps up to this length in metres.")] = 0.0,
) -> None:
    """Analyse many roads in sections, on all cores or a cluster.

    A row a section, and one a road: IRI, MRI, HRI, Ride Number, the worst of the 3 m straightedge,
    profile index, and how much exceeds the threshold. Exit status 0; 1 if a road gave no result
    (results.errors.csv tells why, and --resume tries again); 2 for what cannot be begun; 130 when
    interrupted, with what was finished.
    """
    from vialto.network.analysis import Settings
    from vialto.network.files import RESULTS, find_roads, read_results

    console = Console(stderr=True)
    if to.suffix.lower() not in RESULTS:
        _refuse(f"{to}: results are a .parquet or a .csv file")
    if not to.parent.is_dir():
        _refuse(f"{to.parent} is no directory")
    found = find_roads(roads, to)
    if not found:
        _refuse(f"no CSV or Parquet files in {' '.join(roads)}")
    settings = Settings(
        section=section,
        threshold=threshold,
        columns=tuple(columns.split(",")) if columns is not None else None,
        resample=resample,
        fill_gaps=fill_gaps,
    )
    results = _Results(to, found)
    if resume and to.exists():
        try:
            results.keep(read_results(to, settings))
        except (ValueError, OSError) as problem:
            _refuse(str(problem))
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # what a job system ends a job by
    try:
        with _client(scheduler, workers) as client:
            _run(results, settings, client, console)
    except KeyboardInterrupt:
        results.save()
        words = f"interrupted: {results.told()}; --resume does what is missing"
        console.print(words, soft_wrap=True)
        raise typer.Exit(INTERRUPTED) from None
    except ConnectionError as problem:
        results.save()
        _refuse(f"{problem}; {results.told()}; --resume does what is missing")
    results.save()
    console.print(f"{results.told()}{results.speed()}", soft_wrap=True)
    for words, roads_told in (("warning of", results.warnings), ("no result of", results.errors)):
        if roads_told:
            road, why = next(iter(roads_told.items()))
            more = f" (and {len(roads_told) - 1} more)" if len(roads_told) > 1 else ""
            console.print(f"{words} {road}: {why}{more}", markup=False, soft_wrap=True)
    if results.errors:
        raise typer.Exit(SOME_FAILED)


def _refuse(words: str) -> None:
    typer.echo(f"vialto network: {words}", err=True)
    raise typer.Exit(USAGE)


@dataclass
class _Results:
    """What is done so far, and where it is kept."""

    path: Path
    roads: list[str]
    tables: list[pd.DataFrame] = field(default_factory=list)
    errors: dict[str, str] = field(default_factory=dict)
    warnings: dict[str, str] = field(default_factory=dict)
    kept: set[str] = field(default_factory=set)
    done: int = 0
    reading: float = 0.0
    analysing: float = 0.0
    begun: float = field(default_factory=time.monotonic)
    working: float = 0.0  # s of all workers together
    saved: float = field(default_factory=time.monotonic)

    def keep(self, earlier: pd.DataFrame) -> None:
        """Take over earlier rows, under the names that the roads have now."""
        now = {os.path.abspath(road): road for road in self.roads}
        earlier["road"] = [now.get(os.path.abspath(road), road) for road in earlier["road"]]
        self.tables.append(earlier)
        self.kept = set(earlier.loc[earlier["kind"] == "road", "road"])

    def missing(self) -> list[str]:
        return [road for road in self.roads if road not in self.kept]

    def add(self, outcome: Outcome) -> None:
        self.done += 1
        self.reading += outcome.reading
        self.analysing += outcome.analysing
        if outcome.rows is None:
            self.errors[outcome.road] = outcome.error
        else:
            self.tables.append(outcome.rows)
            if warning := str(outcome.rows["warning"].iloc[-1]):
                self.warnings[outcome.road] = warning
        if time.monotonic() - self.saved > SAVED_EVERY:
            self.save()

    def save(self) -> None:
        from vialto.network.files import write_results

        if self.tables or self.errors:  # nothing takes the place of an earlier run's results
            write_results(self.path, self.roads, self.tables, self.errors)
        self.saved = time.monotonic()

    def rate(self) -> float:
        """Roads per second."""
        return self.done / (time.monotonic() - self.begun)

    def failed(self) -> str:
        return f", {len(self.errors)} without a result" if self.errors else ""

    def told(self) -> str:
        kept = f", {len(self.kept)} from before" if self.kept else ""
        others = len(self.kept.difference(self.roads))
        if others > 0:
            kept += f" ({others} of them not among those named)"
        return f"{self.done} roads{kept}{self.failed()}: {self.path}"

    def speed(self) -> str:
        if self.done == 0 or self.working == 0.0:
            return ""
        reading, analysing = (
            round(100.0 * part / self.working) for part in (self.reading, self.analysing)
        )
        return (
            f"; {self.rate():.1f} roads/s; of the workers' time reading {reading} %, analysis"
            f" {analysing} %"
        )


@contextmanager
def _client(scheduler: str | None, workers: int | None) -> Iterator[Client]:
    from vialto.network.run import local_client

    if scheduler is None:
        with local_client(workers) as client:
            yield client
        return
    from distributed import Client

    try:
        client = Client(scheduler, timeout="10s")
    except (OSError, ValueError) as problem:
        raise ConnectionError(f"no cluster answers at {scheduler}: {problem}") from problem
    with client:
        yield client


def _run(results: _Results, settings: Settings, client: Client, console: Console) -> None:
    from vialto.network.run import outcomes

    missing = results.missing()
    if not client.nthreads():
        console.print("the cluster has no workers yet; waiting for one")
        client.wait_for_workers(1)
    results.begun = time.monotonic()
    with _progress(console, len(missing)) as advance:
        for outcome in outcomes(missing, settings, client):
            results.add(outcome)
            advance(results)
    threads = sum(client.nthreads().values())
    results.working = threads * (time.monotonic() - results.begun)


@contextmanager
def _progress(console: Console, total: int) -> Iterator[Callable[[_Results], None]]:
    """Shows how far it is: a bar on a terminal, elsewhere a line every so often."""
    if console.is_terminal:
        with Progress(
            TextColumn("{task.description}"),
            BarColumn(),
            MofNCompleteColumn(),
            TextColumn("roads, {task.fields[rate]:.1f}/s,"),
            TimeRemainingColumn(),
            TextColumn("left{task.fields[failed]}"),
            console=console,
        ) as bar:
            task = bar.add_task("network", total=total, rate=0.0, failed="")
            yield lambda results: bar.update(
                task, completed=results.done, rate=results.rate(), failed=results.failed()
            )
        return
    told = time.monotonic()

    def tell(results: _Results) -> None:
        nonlocal told
        if time.monotonic() - told >= TOLD_EVERY:
            told = time.monotonic()
            left = round((total - results.done) / results.rate())
            console.print(
                f"{results.done} of {total} roads, {results.rate():.1f}/s, {left} s left"
                f"{results.failed()}"
            )

    yield tell
