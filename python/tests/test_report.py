"""The report of one road: its numbers and pictures, the command, and the page in a browser."""

import shutil
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path

import numpy as np
import pandas as pd
import pytest
from playwright.sync_api import Browser, Page, sync_playwright

import vialto
from roads import DISTANCE, INTERVAL, SLAB, SLABS, rough_road
from vialto import report

CHROMIUM = shutil.which("chromium")


def road(*sides: str, samples: int | None = None) -> vialto.Road:
    tracks = {side: 3.0 * rough_road(number)[:samples] for number, side in enumerate(sides)}
    return vialto.Road("sample", INTERVAL, tracks)


def test_numbers_are_those_of_the_analyses() -> None:
    whole = road("left", "right")
    left, right = whole.tracks.values()
    numbers = {number.name: number for number in report.acceptance(whole)}
    assert numbers["IRI left"].value == pytest.approx(1000.0 * vialto.ride_index(left, INTERVAL))
    assert numbers["MRI"].value == pytest.approx(
        1000.0 * vialto.two_track_ride_index(left, right, INTERVAL)
    )
    deflections = [
        vialto.rolling_straightedge(track, INTERVAL).deflection for track in (left, right)
    ]
    assert numbers["Worst 3 m straightedge"].value == pytest.approx(
        1000.0 * np.abs(deflections).max()
    )
    assert [name for name in numbers if "index" in name] == [
        "Profile index left",
        "Profile index right",
    ]


def test_what_a_short_road_is_too_short_for_is_left_out_with_the_reason() -> None:
    short = road("left", samples=20)
    assert "profilograph" not in report.figures(short)
    assert "elevation" in report.figures(short)
    page = report.page(short)
    assert "Left out: nsamp &lt; 2*maxsampbegin" in page
    assert "the road is shorter than a straightedge of 3 m" in page


def test_marks_stand_where_the_moving_iri_exceeds_the_threshold() -> None:
    whole = road("left")
    figure = report.figures(whole, report.Settings(threshold=2.0))["moving_iri"]
    moving = 1000.0 * vialto.continuous_ride_index(whole.tracks["left"], INTERVAL)
    marked = np.asarray(figure.data[1].x)
    assert np.isfinite(marked).sum() == (moving > 2.0).sum() > 0
    assert marked[0] == DISTANCE[np.argmax(moving > 2.0)]


def test_what_is_asked_for_is_drawn() -> None:
    whole = vialto.Road("slabs", INTERVAL, {"left": SLABS + rough_road(1)})
    settings = report.Settings(joints=SLAB, reference=road("left"))
    assert set(report.figures(whole, settings)) - set(report.figures(whole)) == {
        "joints",
        "agreement",
        "filtered",
    }


@pytest.mark.parametrize(
    ("text", "words"),
    [
        ("distance,left\n0,0\n0.1,x\n0.2,0\n", "line 3: 'x' in column left is not a number"),
        ("distance\n0\n0.1\n", "a distance and one or two elevations are needed"),
        ("distance,left\n0,0\n0.1,0\n0.2,0\n0.33,0\n0.43,0\n", "line 5: a step of 0.13 m"),
        (None, "No such file"),
    ],
)
def test_a_file_that_is_no_road_is_one_line(tmp_path: Path, text: str | None, words: str) -> None:
    path = tmp_path / "road.csv"
    if text is not None:
        path.write_text(text)
    run = subprocess.run(
        [sys.executable, "-m", "vialto", "report", path], capture_output=True, text=True
    )
    assert (run.returncode, run.stderr.count("\n")) == (2, 1)
    assert words in run.stderr


@pytest.fixture(scope="module")
def browser() -> Iterator[Browser]:
    if CHROMIUM is None:
        pytest.skip("no browser here")
    with sync_playwright() as playwright:
        flags = ["--no-sandbox", "--disable-gpu", "--disable-background-networking"]
        yield playwright.chromium.launch(executable_path=CHROMIUM, args=flags)


def elsewhere(address: str) -> list[str]:
    return [] if address.startswith(("file:", "data:", "blob:")) else [address]


def opened(browser: Browser, path: Path, width: int) -> tuple[Page, list[str]]:
    page = browser.new_page(viewport={"width": width, "height": 900})
    faults: list[str] = []
    page.on("console", lambda said: faults.append(said.text) if said.type == "error" else None)
    page.on("pageerror", lambda fault: faults.append(str(fault)))
    page.on("request", lambda asked: faults.extend(elsewhere(asked.url)))
    page.goto(path.as_uri())
    page.wait_for_function(
        "[...document.querySelectorAll('.plotly-graph-div')].every(e => e.querySelector('.trace'))"
    )
    return page, faults


@pytest.mark.parametrize("sides", [("left",), ("left", "right")])
def test_page_in_a_browser(tmp_path: Path, browser: Browser, sides: tuple[str, ...]) -> None:
    source = tmp_path / "road.csv"
    pd.DataFrame({"distance": DISTANCE, **road(*sides).tracks}).to_csv(source, index=False)
    command = [sys.executable, "-m", "vialto", "report", str(source), "--joints", "5"]
    subprocess.run([*command, "--compare", str(source)], check=True, capture_output=True)
    for width in (1280, 390):
        page, faults = opened(browser, tmp_path / "road.html", width)
        page.evaluate("Plotly.relayout('elevation', {'xaxis.range': [50, 80]})")
        followed = "[...document.querySelectorAll('.by-distance .plotly-graph-div')]"
        page.wait_for_function(f"{followed}.every(e => Math.round(e.layout.xaxis.range[1]) === 80)")
        assert page.evaluate("document.documentElement.scrollWidth") <= width
        assert page.screenshot(path=tmp_path / f"{width}.png")
        assert faults == []
        page.close()
