"""A network of roads on a real cluster, with the faults that a long run meets."""

import contextlib
import json
import os
import shutil
import signal
import stat
import subprocess
import sys
import threading
import time
from collections.abc import Iterator
from pathlib import Path

import numpy as np
import pandas as pd
import pytest
from distributed import Client
from numpy.typing import NDArray

import vialto
from roads import DISTANCE, INTERVAL, rough_road
from vialto import network
from vialto.network.run import local_client

ROADS = 6
WAIT = 120  # s; for a command to end


def rough_track(number: int) -> NDArray[np.float64]:
    return 3.0 * rough_road(number)


@pytest.fixture(scope="module")
def client() -> Iterator[Client]:
    with local_client(2) as client:
        yield client


@pytest.fixture
def roads(tmp_path: Path) -> Path:
    """Six roads of 300 m with two tracks: even numbers in CSV, odd ones in Parquet."""
    directory = tmp_path / "roads"
    directory.mkdir()
    for number in range(ROADS):
        left, right = rough_track(number), rough_track(ROADS + number)
        frame = pd.DataFrame({"distance": DISTANCE, "left": left, "right": right})
        if number % 2 == 0:
            frame.to_csv(directory / f"{number}.csv", index=False)
        else:
            frame.to_parquet(directory / f"{number}.parquet", index=False)
    return directory


def command(*arguments: object) -> subprocess.Popen[str]:
    return subprocess.Popen(
        [sys.executable, "-m", "vialto", "network", *map(str, arguments)],
        stderr=subprocess.PIPE,
        text=True,
        start_new_session=True,
    )


def told(*arguments: object) -> tuple[int, str]:
    """The exit status of a command, and what it says."""
    run = command(*arguments)
    words = run.communicate(timeout=WAIT)[1]
    return run.returncode, words


def test_sections_tell_what_the_analyses_of_the_whole_road_tell(
    roads: Path, client: Client
) -> None:
    rows = network.analyse(roads / "0.csv", client, settings=network.Settings(section=100.0))
    assert list(rows.columns) == list(network.COLUMNS)
    assert list(rows["kind"]) == ["section", "section", "section", "road"]
    left, right = rough_track(0), rough_track(ROADS)
    moving = [vialto.continuous_ride_index(track, INTERVAL) for track in (left, right)]
    deflections = [vialto.rolling_straightedge(track, INTERVAL) for track in (left, right)]
    traces = [vialto.profilograph_trace(1000.0 * track, INTERVAL) for track in (left, right)]
    whole = rows.iloc[-1]
    made = ["interval", "columns", "resample", "fill_gaps", "version"]
    assert list(whole[made]) == [INTERVAL, "distance,left,right", False, 0.0, vialto.__version__]
    assert whole["iri_left"] == pytest.approx(1000.0 * vialto.ride_index(left, INTERVAL))
    assert whole["mri"] == pytest.approx(
        1000.0 * vialto.two_track_ride_index(left, right, INTERVAL)
    )
    assert whole["straightedge"] == pytest.approx(
        1000.0 * max(np.abs(d.deflection).max() for d in deflections)
    )
    over = (moving[0] > 0.0025) | (moving[1] > 0.0025)
    assert 0.0 < whole["exceeding"] == pytest.approx(INTERVAL * over.sum())
    assert rows["exceeding"][:3].sum() == pytest.approx(whole["exceeding"])
    assert rows["straightedge"][:3].max() == whole["straightedge"]
    indices = [
        vialto.profile_index(t.height[t.valid], INTERVAL).lots[0].rounded_index for t in traces
    ]
    assert whole["profile_index"] == pytest.approx(1000.0 * np.mean(indices))


def test_a_short_road_has_what_it_is_long_enough_for() -> None:
    road = vialto.Road("short", INTERVAL, {"left": rough_road(0)[:48]})
    whole = network.sections(road).iloc[-1]
    assert whole["iri_left"] > 0.0
    assert np.isnan(whole["profile_index"])
    assert whole["exceeding"] == 0.0


def test_a_road_of_too_many_scallops_lacks_its_own_profile_index_alone() -> None:
    waves = 0.005 * np.sin(2.0 * np.pi * INTERVAL * np.arange(1_000_000) / 10.0)
    rows = network.sections(vialto.Road("25 km", INTERVAL, {"left": waves}))
    assert (rows["iri_left"] > 1.0).all()
    assert list(np.isnan(rows["profile_index"])) == [False] * (len(rows) - 1) + [True]


def readers(fifo: Path) -> set[int]:
    """The processes that read a file, other than this one."""
    found = set()
    for link in Path("/proc").glob("[0-9]*/fd/*"):
        with contextlib.suppress(OSError):
            if os.readlink(link) == str(fifo) and link.lstat().st_mode & stat.S_IRUSR:
                found.add(int(link.parts[2]))
    return found - {os.getpid()}


def kill_readers(fifo: Path, times: int, then: Path | None = None) -> None:
    """Kill whoever reads a road, so many processes, and then put another file in its place."""

    def kill() -> None:
        held = os.open(fifo, os.O_RDWR)  # keeps readers waiting
        killed: set[int] = set()
        while len(killed) < times:
            for victim in readers(fifo) - killed:
                killed.add(victim)
                if len(killed) == times and then is not None:
                    fifo.unlink()
                    shutil.copy(then, fifo)
                os.kill(victim, signal.SIGKILL)
            time.sleep(0.05)
        os.close(held)

    os.mkfifo(fifo)
    threading.Thread(target=kill, daemon=True).start()


def test_results_are_the_same_bytes_for_any_workers_and_after_a_kill(
    roads: Path, tmp_path: Path, client: Client
) -> None:
    fifo = roads / "6.csv"
    kill_readers(fifo, 1, then=roads / "0.csv")
    after_a_kill = network.analyse(roads, client)
    after_a_kill.attrs.clear()
    network.files.write_results(tmp_path / "killed.parquet", [], [after_a_kill], {})
    written = [(tmp_path / "killed.parquet").read_bytes()]
    for workers in (1, 4):
        path = tmp_path / f"{workers}.parquet"
        assert told(roads, "--to", path, "--workers", workers)[0] == 0
        written.append(path.read_bytes())
    assert written[0] == written[1] == written[2]


def test_a_road_without_a_result_is_told_and_the_others_go_on(roads: Path, client: Client) -> None:
    (roads / "1.parquet").write_bytes((roads / "1.parquet").read_bytes()[:1000])
    (roads / "2.csv").write_text("")
    (roads / "4.csv").write_text("distance,left\n0,0\n0.025,0\n")
    kill_readers(roads / "7.csv", 3)
    with pytest.warns(network.NetworkWarning, match=r"no result of .*and 4 more"):
        rows = network.analyse([roads, roads / "vanished" / "0.csv"], client)
    errors = {Path(road).name: error for road, error in rows.attrs["errors"].items()}
    assert sorted(Path(road).name for road in set(rows["road"])) == [
        "0.csv",
        "3.parquet",
        "5.parquet",
    ]
    for name, words in {
        "1.parquet": "no Parquet file that can be read",
        "2.csv": "the file is empty",
        "4.csv": "the calculated IRI is not a number (rideseg_dlldrv, code 101)",
        "7.csv": "each of 3 workers that took this road was killed by it",
        "0.csv": "No such file or directory",
    }.items():
        assert words in errors[name], name


@pytest.mark.skipif(os.geteuid() == 0, reason="permissions do not bind this user")
def test_a_file_without_permission_is_told(roads: Path, client: Client) -> None:
    (roads / "0.csv").chmod(0)
    with pytest.warns(network.NetworkWarning, match="Permission denied"):
        network.analyse(roads / "0.csv", client)


def test_what_is_finished_when_interrupted_is_kept_and_resumed(
    roads: Path, tmp_path: Path, client: Client
) -> None:
    to = tmp_path / "results.csv"
    # A cluster that runs already; each of its own would take seconds to begin.
    running = ("--scheduler", client.scheduler_info()["address"])
    fifo = roads / "6.csv"
    os.mkfifo(fifo)
    run = command(roads, "--to", to, "--workers", 1)
    with fifo.open("wb"):  # the last road is begun
        time.sleep(1.0)
        os.kill(run.pid, signal.SIGTERM)
        run.communicate(timeout=WAIT)
    assert run.returncode == 130
    assert pd.read_csv(to)["road"].nunique() == ROADS
    fifo.unlink()
    fifo.write_text("no road\n")
    status, words = told(roads, "--to", to, "--resume", *running)
    assert status == 1
    assert "1 roads, 6 from before, 1 without a result" in words
    assert list(pd.read_csv(tmp_path / "results.errors.csv")["road"]) == [str(fifo)]
    shutil.copy(roads / "0.csv", fifo)
    near = os.path.relpath(roads)  # the same roads under other names
    assert told(near, roads / "0.csv", "--to", to, "--resume", *running)[0] == 0
    assert not (tmp_path / "results.errors.csv").exists()
    fresh = tmp_path / "fresh.csv"
    assert told(near, "--to", fresh, *running)[0] == 0
    assert to.read_bytes() == fresh.read_bytes()
    words = told(fifo, "--to", to, "--resume", *running)[1]
    assert "0 roads, 7 from before (6 of them not among those named)" in words


def test_a_cluster_that_exists_is_used(roads: Path, tmp_path: Path) -> None:
    contact = tmp_path / "scheduler.json"
    to = tmp_path / "results.parquet"
    dask = [sys.executable, "-m", "distributed.cli."]
    scheduler = [*dask[:2], dask[2] + "dask_scheduler", "--no-dashboard", "--host", "127.0.0.1"]
    worker = [*dask[:2], dask[2] + "dask_worker", "--no-dashboard", "--nworkers", "2"]
    file = ["--scheduler-file", str(contact)]
    with (
        subprocess.Popen([*scheduler, "--port", "0", *file], stderr=subprocess.DEVNULL) as first,
        subprocess.Popen([*worker, *file], stderr=subprocess.DEVNULL, cwd=tmp_path) as second,
    ):
        try:
            while not contact.exists():
                assert first.poll() is None
                time.sleep(0.1)
            address = json.loads(contact.read_text())["address"]
            assert told(roads, "--to", to, "--scheduler", address)[0] == 0
        finally:
            second.terminate()
            first.terminate()
    assert pd.read_parquet(to)["road"].nunique() == ROADS


@pytest.mark.parametrize(
    ("arguments", "words"),
    [
        (["--to", "r.txt"], "r.txt: results are a .parquet or a .csv file"),
        (["--to", "missing/r.csv"], "missing is no directory"),
        (["--to", "r.csv", "--scheduler", "nonsense"], "no cluster answers at nonsense"),
        (["--to", "0.csv", "--resume"], "0.csv holds no results of a network"),
    ],
)
def test_what_cannot_be_begun_is_one_line(
    roads: Path, arguments: list[str], words: str, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(roads)
    status, line = told("1.parquet", *arguments)
    assert (status, line.count("\n")) == (2, 1)
    assert words in line
