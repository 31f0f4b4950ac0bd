"""A network on a cluster: every road is a task of its own, and none is lost with a worker."""

from __future__ import annotations

import os
import tempfile
import warnings
from collections.abc import Iterable, Iterator, Sequence
from contextlib import contextmanager
from itertools import count
from typing import TYPE_CHECKING

from .analysis import Outcome, Settings, analyse_road
from .files import find_roads, together

if TYPE_CHECKING:
    import pandas as pd
    from distributed import Client, Future

MOST_DEATHS = 3  # workers that one road may take with it

# A worker asks for arrays of the same size road after road. By default it would give freed memory
# back to the system at once, and spend half of its time on getting it again.
KEPT_BY_A_WORKER = 256 * 2**20  # bytes

_runs = count()


class NetworkWarning(UserWarning):
    """Roads of a network that gave no result."""


def analyse(
    paths: str | os.PathLike[str] | Iterable[str | os.PathLike[str]],
    client: Client | None = None,
    *,
    settings: Settings | None = None,
) -> pd.DataFrame:
    """Analyse roads in sections.

    Parameters
    ----------
    paths : path, or iterable of paths
        Files, directories or patterns, as for ``find_roads``.
    client : distributed.Client, optional
        Of the cluster to run on; by default a cluster of this machine's cores, for this call.
        What it starts are processes, so that a script calls this behind
        ``if __name__ == "__main__":``.
    settings : Settings, optional
        A tenth of a mile by default, and 2.5 m/km.

    Returns
    -------
    DataFrame
        The rows of each road, in the order of the files; ``vialto.network.COLUMNS`` tells what
        the columns are. ``attrs["errors"]`` tells of each road without a result why, and a
        NetworkWarning says that there are any.
    """
    roads = find_roads([paths] if isinstance(paths, (str, os.PathLike)) else paths)
    tables, errors = [], {}
    with _given(client) if client is not None else local_client() as used:
        for outcome in outcomes(roads, Settings() if settings is None else settings, used):
            if outcome.rows is None:
                errors[outcome.road] = outcome.error
            else:
                tables.append(outcome.rows)
    frame = together(tables, {road: place for place, road in enumerate(roads)})
    frame.attrs["errors"] = errors
    if errors:
        road, error = next(iter(errors.items()))
        more = f" (and {len(errors) - 1} more, in attrs['errors'])" if len(errors) > 1 else ""
        warnings.warn(f"no result of {road}: {error}{more}", NetworkWarning, stacklevel=2)
    return frame


@contextmanager
def local_client(workers: int | None = None) -> Iterator[Client]:
    """A cluster of processes on this machine, one a core by default.

    A worker that dies is replaced. The temporary files of all of them go with the cluster.
    """
    import dask
    from distributed import Client, LocalCluster

    with (
        tempfile.TemporaryDirectory(prefix="vialto-network-") as directory,
        dask.config.set(
            {
                # Who was with a worker that died is a suspect at once, and then runs alone.
                "distributed.scheduler.allowed-failures": 0,
                "distributed.nanny.pre-spawn-environ.MALLOC_TRIM_THRESHOLD_": KEPT_BY_A_WORKER,
                "distributed.nanny.pre-spawn-environ.MALLOC_MMAP_THRESHOLD_": KEPT_BY_A_WORKER,
            }
        ),
        LocalCluster(
            n_workers=workers if workers is not None else len(os.sched_getaffinity(0)),
            threads_per_worker=1,
            dashboard_address="127.0.0.1:0",  # a free port: the usual one may be taken
            local_directory=directory,
            env={"TMPDIR": directory},
            silence_logs="CRITICAL",
        ) as cluster,
        Client(cluster) as client,
    ):
        yield client


@contextmanager
def _given(client: Client) -> Iterator[Client]:
    yield client


def outcomes(roads: Sequence[str], settings: Settings, client: Client) -> Iterator[Outcome]:
    """What becomes of each road, in the order in which they are done.

    A road whose worker dies is a suspect, as are those that waited there. Each of them then runs
    alone, so that a death is its own; with the third it is given up.
    """
    _check_workers(client)
    deaths: dict[str, int] = {}
    for road, future in _done(client, roads, settings):
        died = _killed(future)
        if died == 0:
            yield _outcome(road, future)
        else:
            deaths[road] = died
    for road, died in deaths.items():
        yield _alone(client, road, settings, died)


def _check_workers(client: Client) -> None:
    """Refuse workers without the package: the first task would end them, and the rest wait.

    They are asked by `eval`, since a function from here could not reach them.
    """
    answers = client.run(eval, "__import__('vialto.network').__version__", on_error="return")
    without = {worker: told for worker, told in answers.items() if isinstance(told, ImportError)}
    if without:
        worker, told = next(iter(without.items()))
        more = f" (and {len(without) - 1} more)" if len(without) > 1 else ""
        raise ConnectionError(f"worker {worker} cannot load vialto: {told}{more}")


def _done(
    client: Client, roads: Sequence[str], settings: Settings
) -> Iterator[tuple[str, Future[Outcome]]]:
    """The roads and their tasks, as they are done; what is not, when this ends, is cancelled."""
    from distributed import as_completed

    run = f"{os.getpid()}-{next(_runs)}-{id(client):x}"
    futures = client.map(
        analyse_road,
        roads,
        [os.path.abspath(road) for road in roads],
        settings=settings,
        key=[f"analyse_road-{run}-{number}" for number in range(len(roads))],
        pure=False,
    )
    road_of = {future.key: road for future, road in zip(futures, roads, strict=True)}
    try:
        completed = as_completed(futures)
        del futures
        for future in completed:
            yield road_of.pop(future.key), future
            future.release()
    finally:
        if road_of:
            client.cancel(list(completed.futures), force=True)


def _alone(client: Client, road: str, settings: Settings, deaths: int) -> Outcome:
    while deaths < MOST_DEATHS:
        for _, future in _done(client, [road], settings):
            died = _killed(future)
            if died == 0:
                return _outcome(road, future)
            deaths += died
    return Outcome(road, error=f"each of {deaths} workers that took this road was killed by it")


def _killed(future: Future[Outcome]) -> int:
    """How many workers died with a task; 0 for one that came to an end of its own."""
    from distributed.scheduler import KilledWorker

    fault = future.exception() if future.status == "error" else None
    return fault.allowed_failures + 1 if isinstance(fault, KilledWorker) else 0


def _outcome(road: str, future: Future[Outcome]) -> Outcome:
    if future.status == "finished":
        outcome: Outcome = future.result()
        return outcome
    if future.status == "error":  # of the cluster; the analysis itself raises nothing
        return Outcome(road, error=str(future.exception()))
    raise ConnectionError("the cluster is gone")
