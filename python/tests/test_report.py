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
from roads import DISTANCE, INTERVAL, SAMPLES, SLAB, SLABS, rough_road
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
    marks = [shape for shape in figure.layout.shapes if shape.type == "rect"]
    assert marks[0].x0 == DISTANCE[np.argmax(moving > 2.0)]
    assert sum(mark.x1 - mark.x0 for mark in marks) == INTERVAL * (moving > 2.0).sum()


def test_what_is_cut_is_what_grinding_takes_away() -> None:
    whole = road("left", "right")
    assert "grinding" not in report.figures(whole, report.Settings(threshold=50.0))
    before, after, cut = report.figures(whole)["grinding"].data[:3]
    ground = np.isfinite(after.y)
    assert ground.any()
    assert np.array_equal(cut.y > 0.0, ground)
    assert cut.y[ground] == pytest.approx(1000.0 * (before.y - after.y)[ground], abs=1e-4)


def test_what_was_filled_is_marked() -> None:
    filled = np.isin(np.arange(SAMPLES), (7, 8))
    marked = vialto.Road("gap", INTERVAL, road("left").tracks, filled=filled)
    (mark,) = report.figures(marked)["elevation"].layout.shapes
    assert (mark.x0, mark.x1) == pytest.approx((7 * INTERVAL, 9 * INTERVAL))


def test_grade_is_not_ground() -> None:
    whole = road("left")
    uphill = {"left": whole.tracks["left"] + 200.0 + 0.06 * DISTANCE}
    cut, steep = (
        report.figures(each)["grinding"].data[2].y
        for each in (whole, vialto.Road("uphill", INTERVAL, uphill))
    )
    assert steep == pytest.approx(cut, abs=1e-3)


def test_reference_lies_over_the_road_where_they_agree() -> None:
    whole = road("left")
    reference = vialto.Road("later", INTERVAL, {"left": whole.tracks["left"][8:]})
    agreement, filtered = (
        report.figures(whole, report.Settings(reference=reference))[name]
        for name in ("agreement", "filtered")
    )
    assert agreement.data[0].x[np.argmax(agreement.data[0].y)] == pytest.approx(-8 * INTERVAL)
    assert filtered.data[0].x0 == pytest.approx(8 * INTERVAL)


def test_a_mile_of_two_tracks_weighs_at_most_12_mb() -> None:
    steps = np.random.default_rng(0).normal(0.0, 0.0001, (2, 64_374))
    left, right = np.cumsum(steps - steps.mean(axis=1, keepdims=True), axis=1)
    mile = vialto.Road("mile", 0.025, {"left": left, "right": right})
    page = report.page(mile, report.Settings(threshold=1.0, joints=5.0, reference=mile))
    assert "Left out" not in page
    assert len(page) < 12e6


def test_commands_load_nothing_until_they_run() -> None:
    code = "import sys, vialto.cli; sys.exit(bool({'pandas', 'plotly', 'dask'} & {*sys.modules}))"
    assert subprocess.run([sys.executable, "-c", code]).returncode == 0


def test_what_is_asked_for_is_drawn() -> None:
    whole = vialto.Road("slabs", INTERVAL, {"left": SLABS + rough_road(1)})
    settings = report.Settings(joints=SLAB, reference=road("left"))
    assert set(report.figures(whole, settings)) - set(report.figures(whole)) == {
        "joints",
        "agreement",
        "filtered",
    }


EVEN = "distance,left\n0,0\n0.1,0\n0.2,0\n"


@pytest.mark.parametrize(
    ("text", "option", "words"),
    [
        ("distance,left\n0,0\n0.1,x\n0.2,0\n", "", "line 3: 'x' in column left is not a number"),
        ("distance\n0\n0.1\n", "", "a distance and one or two elevations are needed"),
        (EVEN + "0.33,0\n0.43,0\n", "", "line 5: a step of 0.13 m"),
        (None, "", "No such file"),
        (EVEN, "--section=0", "section is 0, which is not above zero"),
        (EVEN, "--output=road.csv", "the page would take the place of the road"),
        (EVEN, "--output=missing/road.html", "No such file"),
    ],
)
def test_what_cannot_be_reported_is_one_line(
    tmp_path: Path, text: str | None, option: str, words: str
) -> None:
    if text is not None:
        (tmp_path / "road.csv").write_text(text)
    command = [sys.executable, "-m", "vialto", "report", "road.csv", *option.split()]
    run = subprocess.run(command, capture_output=True, text=True, cwd=tmp_path)
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


def drag(page: Page, picture: str, begin: float, end: float) -> None:
    """Zoom into a share of the axis of a picture."""
    plot = page.locator(f"{picture} .nsewdrag").first
    plot.scroll_into_view_if_needed()
    box = plot.bounding_box()
    assert box is not None
    height = box["y"] + box["height"] / 2.0
    page.mouse.move(box["x"] + begin * box["width"], height)
    page.mouse.down()
    page.mouse.move(box["x"] + end * box["width"], height, steps=4)
    page.mouse.up()


@pytest.mark.parametrize("sides", [("left",), ("left", "right")])
def test_page_in_a_browser(tmp_path: Path, browser: Browser, sides: tuple[str, ...]) -> None:
    source = tmp_path / "road.csv"
    pd.DataFrame({"distance": DISTANCE, **road(*sides).tracks}).to_csv(source, index=False)
    command = [sys.executable, "-m", "vialto", "report", str(source), "--joints", "5"]
    subprocess.run([*command, "--compare", str(source)], check=True, capture_output=True)
    for width in (1280, 390):
        page, faults = opened(browser, tmp_path / "road.html", width)
        drag(page, "#elevation", 0.25, 0.5)
        page.wait_for_function(
            """() => [...document.querySelectorAll('.by-distance .plotly-graph-div')].every(
                   (e) => Math.abs(e.layout.xaxis.range[0] - 75) < 5
                       && Math.abs(e.layout.xaxis.range[1] - 150) < 5)"""
        )
        assert page.evaluate("document.documentElement.scrollWidth") <= width
        assert page.screenshot(path=tmp_path / f"{width}.png")
        assert faults == []
        page.close()
