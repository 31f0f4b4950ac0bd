"""Files that are roads, and files that are none."""

from pathlib import Path
from tempfile import TemporaryDirectory

import numpy as np
import pandas as pd
import pytest
from hypothesis import example, given
from hypothesis import strategies as st

import vialto
from roads import DISTANCE, INTERVAL, SAMPLES, SLAB, SLABS, rough_road
from vialto import GrindFlag, Road, RoadError, read_road

EVEN = "distance,left,right\n" + "".join(f"{k / 10},{k / 1000},{k / 500}\n" for k in range(10))


def written(directory: Path, text: str) -> Path:
    path = directory / "road.csv"
    path.write_text(text)
    return path


def test_road_of_a_file_is_what_was_measured(tmp_path: Path) -> None:
    left, right = rough_road(1), rough_road(2)
    table = pd.DataFrame({"station": 50.0 + DISTANCE, "right_m": right, "left (mm)": 1000.0 * left})
    table.to_csv(tmp_path / "a 7.csv", index=False)
    table.to_parquet(tmp_path / "a 7.parquet")
    for path in tmp_path.iterdir():
        road = read_road(path)
        assert (road.name, road.interval, road.start) == ("a 7", INTERVAL, 50.0)
        np.testing.assert_array_equal(road.distance, table["station"])
        np.testing.assert_array_equal(road.tracks["right"], right)
        np.testing.assert_allclose(road.tracks["left"], left, rtol=1e-15)
        assert not road.filled.any()


@pytest.mark.parametrize(
    ("text", "interval", "tracks"),
    [
        pytest.param("0,1\n.1,2\n", 0.1, {"left": [1, 2]}, id="no header"),
        pytest.param("# by\n#at\nx;right\n0;1\n\n.1;2\n\n", 0.1, {"right": [1, 2]}, id="comments"),
        pytest.param("x, m;z, mm\n0;1\n0,1;-2,5\n", 0.1, {"left": [0.001, -0.0025]}, id="comma"),
        pytest.param("0,0;1\n0,1;2\n", 0.1, {"left": [1, 2]}, id="comma without header"),
        pytest.param("s (ft)\tz_inches\n0\t0\n1\t1\n", 0.3048, {"left": [0, 0.0254]}, id="feet"),
        pytest.param(
            "z,distance,lat,right wheel,left wheel\n,0,9,1,2\n,.1,9,3,4\n",
            0.1,
            {"left": [2, 4], "right": [1, 3]},
            id="named columns",
        ),
        pytest.param(  # an interval of 25.4 mm in millimetres: steps of 25 and 26 mm
            "d,z\n0,0\n.025,0\n.051,0\n.076,0\n.102,0\n.127,0\n",
            0.0254,
            {"left": [0] * 6},
            id="rounded distances",
        ),
    ],
)
@pytest.mark.filterwarnings("ignore:.*is it in metres")
def test_files_that_are_roads(
    tmp_path: Path, text: str, interval: float, tracks: dict[str, list[float]]
) -> None:
    road = read_road(written(tmp_path, text))
    assert road.interval == pytest.approx(interval)
    assert {name: track.tolist() for name, track in road.tracks.items()} == tracks


@pytest.mark.parametrize(
    ("text", "words"),
    [
        ("", "the file is empty"),
        ("distance,z\n0,1\n", "at least two samples are needed"),
        ("d;z\n1+00.0;1\n1+00.1;1\n", r"line 2: '1\+00.0' in column d is not a number"),
        ("d;z\n0;1,5\n1;1.5\n", "line 2: '1,5' in column z is not a number"),
        ("Road: 7\nd;z\n0;1\n1;1\n", "the one column is Road: 7; commas"),
        ("distance,a,b,c\n0,1,1,1\n", "the columns are distance, a, b, c; name those to take"),
        ("d,z\n0,1\n.1,x\n.2,1\n.3,y\n", r"line 3: 'x' in column z is not a number \(and 1 more\)"),
        ("d,z\n0,1\n.1,1\nsum,2\n", "line 4: 'sum' in column d is not a number"),
        ("d,z\n0,1\n.1,\n.2,1\n", "line 3: samples missing in the left track: 1"),
        ("d,z\n0,1\n.1,1\n.2,1\n.5,1\n", "line 5: samples missing in the left track: 2"),
        ("d,z\n0,1\n.1,1\n.25,1\n.35,1\n", "line 4: a step of 0.15 m where 0.1 m is usual"),
        ("d,z\n0,1\n.1,1\n.1,1\n.2,1\n", "line 4: a step of 0 m where 0.1 m is usual"),
        ("d,z\n0,1\n.1,1\n.2,1\n0,1\n.1,1\n", "line 5: a step of -0.2 m .* another road may begin"),
        ("d,z\n.2,1\n.1,1\n0,1\n", "distances must ascend, and these descend"),
        ("d,z\n0,1\n25,1\n50,1\n", "interval 25 m lies outside"),
        ("d,z\n0,1\n.1,1,1\n", "Expected 2 fields in line 3, saw 3"),
        ("d,z\n0,1,1\n.1,1,1\n", "rows of 3 fields under a header of 2"),
    ],
)
def test_files_that_are_no_roads(tmp_path: Path, text: str, words: str) -> None:
    with pytest.raises(RoadError, match=f"road.csv: .*{words}"):
        read_road(written(tmp_path, text))


def test_units_that_names_lack_are_asked_for(tmp_path: Path) -> None:
    path = written(tmp_path, "Way,L\n0,1\n25,2\n50,3\n")
    road = read_road(path, columns=("Way (mm)", "L_cm"))
    assert (road.interval, road.tracks["left"].tolist()) == (0.025, [0.01, 0.02, 0.03])


def test_an_index_of_distances_needs_no_name(tmp_path: Path) -> None:
    frame = pd.DataFrame({"left": np.zeros(9), "right": np.ones(9)}, index=25.0 * np.arange(9))
    frame.to_parquet(tmp_path / "road.parquet")
    with pytest.raises(RoadError, match="interval 25 m lies outside"):
        read_road(tmp_path / "road.parquet")


def test_parquet_that_is_cut_off(tmp_path: Path) -> None:
    path = tmp_path / "road.parquet"
    pd.DataFrame({"x": DISTANCE, "z": DISTANCE}).to_parquet(path)
    path.write_bytes(path.read_bytes()[:1000])
    with pytest.raises(RoadError, match="no Parquet file that can be read"):
        read_road(path)


def test_everything_that_is_wrong_is_listed(tmp_path: Path) -> None:
    lines = EVEN.splitlines()
    lines[3] = "0.2,wet,0.004"
    lines[6] = "0.5,0.005,"
    lines[9] = "0.83,0.008,0.016"
    with pytest.raises(RoadError) as refused:
        read_road(written(tmp_path, "\n".join(lines)))
    quality = refused.value.quality
    assert quality is not None
    assert quality.cells.to_numpy().tolist() == [[4, "left", "wet"], [7, "right", ""]]
    assert quality.uneven["line"].tolist() == [10, 11]
    assert quality.gaps[["line", "track", "missing"]].to_numpy().tolist() == [
        [4, "left", 1],
        [7, "right", 1],
    ]


def test_short_gaps_are_filled_along_a_line_and_told(tmp_path: Path) -> None:
    lines = EVEN.splitlines()
    lines[1] = "0.0,,0.0"  # cut off
    lines[4] = "0.3,ice,0.006"
    del lines[6:8]
    path = written(tmp_path, "\n".join(lines))
    road = read_road(path, fill_gaps=0.2)
    np.testing.assert_allclose(road.tracks["left"], np.arange(1, 10) / 1000, rtol=1e-12)
    np.testing.assert_allclose(road.tracks["right"], np.arange(1, 10) / 500, rtol=1e-12)
    assert (road.start, np.flatnonzero(road.filled).tolist()) == (0.1, [2, 4, 5])
    assert str(road.quality) == (
        "2 cells without a number, 0 uneven steps, 4 gaps (5 elevations filled)"
    )
    with pytest.raises(RoadError, match="line 7: samples missing in the left track: 2"):
        read_road(path, fill_gaps=0.1)


def test_uneven_samples_are_brought_onto_an_even_step(tmp_path: Path) -> None:
    uneven = np.cumsum(np.random.default_rng(3).uniform(0.08, 0.12, 100)) - 0.1
    rows = "".join(f"{x},{0.002 * x}\n" for x in uneven)
    path = written(tmp_path, "d,z\n" + rows)
    road = read_road(path, resample=0.05)
    assert road.interval == 0.05
    np.testing.assert_allclose(road.tracks["left"], 0.002 * road.distance, atol=1e-12)
    assert not read_road(path, resample=True).filled.any()


def test_road_refuses_what_is_none() -> None:
    with pytest.raises(ValueError, match="right holds 1 of 2 values that are not finite"):
        Road("x", 0.1, {"left": np.zeros(2), "right": np.array([0.0, np.nan])})
    with pytest.raises(ValueError, match="2 and 3 samples"):
        Road("x", 0.1, {"left": np.zeros(2), "right": np.zeros(3)})


def test_sections_have_the_indices_of_the_road() -> None:
    left, right = rough_road(4), rough_road(5)
    road = Road("x", INTERVAL, {"left": left, "right": right}, start=1000.0)
    whole = vialto.roughness(road, 1000.0)
    assert whole["complete"].tolist() == [False]
    assert whole["iri_left"][0] == 1000.0 * vialto.ride_index(left, INTERVAL)
    assert whole["mri"][0] == 1000.0 * vialto.two_track_ride_index(left, right, INTERVAL)
    sections = vialto.roughness(road, 70.0)
    assert sections["begin"].tolist() == [1000.0, 1070.0, 1140.0, 1210.0, 1280.0]
    assert sections["end"].iloc[-1] == road.distance[-1]
    assert sections["complete"].tolist() == [True] * 4 + [False]


@pytest.mark.parametrize(("interval", "there"), [(0.5, True), (0.6, False)])
def test_ride_number_is_told_where_it_is_right(interval: float, there: bool) -> None:
    table = vialto.roughness(Road("x", interval, {"left": rough_road(6)}))
    assert table["iri_left"].notna().all()
    assert (table["ride_number"].notna() == there).all()


def test_rest_without_an_index_belongs_to_the_section_before() -> None:
    road = Road("x", INTERVAL, {"left": rough_road(6)})
    sections = vialto.roughness(road, (SAMPLES - 2) * INTERVAL)
    assert sections["end"].tolist() == [(SAMPLES - 1) * INTERVAL]
    assert sections[["iri_right", "mri", "hri"]].isna().all(axis=None)


def test_stretches_add_up_to_what_is_flagged() -> None:
    flags = np.array([1, 2, 3, 1, 1, 2])
    found = vialto.stretches(flags, 0.5, start=10.0)
    assert found[["begin", "end", "flag"]].to_numpy().tolist() == [
        [10.5, 11.5, GrindFlag.DEEPER],
        [12.5, 13.0, GrindFlag.WITHIN],
    ]
    assert vialto.stretches(flags > 2, 0.5)["first"].tolist() == [2]
    assert vialto.stretches(flags > 3, 0.5).empty
    with pytest.raises(ValueError, match="neither bool nor GrindFlag"):
        vialto.stretches([0, 1], 0.5)


def test_tables_are_in_metres_along_the_road() -> None:
    slabs = Road("x", INTERVAL, {"left": SLABS}, start=1000.0)
    joints = vialto.joint_table(
        slabs, spacing=SLAB, method=vialto.JointMethod.STEP, window_mm=200.0
    )
    np.testing.assert_allclose(joints["location"], 1000.0 + SLAB * np.arange(1, 60), atol=INTERVAL)
    np.testing.assert_allclose(joints["fault"], [-4.0, 4.0] * 29 + [-4.0], atol=1e-4)

    run = vialto.run_profilograph(0.01 * np.sin(DISTANCE), INTERVAL, lots_in_metres=[(0.0, 100.0)])
    lots = vialto.lot_table(run.index, INTERVAL, start=1000.0)
    assert lots["begin"].tolist() == [1000.0 + INTERVAL * run.trace.first]
    assert lots["end"].tolist() == [1100.0]
    assert lots["raw_index"][0] == 1000.0 * run.index.lots[0].raw_index
    defects = vialto.defect_table(run.index, start=1000.0)
    crests = defects[defects["kind"] == "above"].iloc[1:-1]
    np.testing.assert_allclose(np.diff(crests["begin"]), 2.0 * np.pi, atol=0.1)


@given(st.lists(st.booleans(), min_size=1, max_size=50))
def test_stretches_hold_what_is_flagged_and_nothing_else(flags: list[bool]) -> None:
    found = vialto.stretches(flags, 0.25)
    again = np.zeros(len(flags), bool)
    for first, last in zip(found["first"], found["last"], strict=True):
        again[first : last + 1] = True
    assert again.tolist() == flags
    assert found["length"].sum() == 0.25 * sum(flags)


@given(
    lost=st.sets(st.integers(1, 58), max_size=19),
    interval=st.sampled_from([0.01, 0.0254, 0.05, 0.1, 0.3048]),
    decimals=st.integers(3, 6),
)
@example(lost={1, 2, 5, 10, 20, 40, 45}, interval=0.0254, decimals=3)  # no step is 0.0254
def test_lost_rows_are_filled_and_told(lost: set[int], interval: float, decimals: int) -> None:
    height = np.round(np.random.default_rng(9).normal(0.0, interval / 100.0, 60), 6)
    rows = [f"{k * interval:.{decimals}f},{height[k]:.6f}\n" for k in range(60) if k not in lost]
    with TemporaryDirectory() as directory:
        path = written(Path(directory), "d,z\n" + "".join(rows))
        road = read_road(path, fill_gaps=100.0)
    kept = [k for k in range(60) if k not in lost]
    assert road.interval == pytest.approx(interval, rel=1e-3)
    assert np.flatnonzero(road.filled).tolist() == sorted(lost)
    np.testing.assert_array_equal(road.tracks["left"][kept], height[kept])
    np.testing.assert_allclose(
        road.tracks["left"], np.interp(np.arange(60), kept, height[kept]), atol=1e-12
    )


CELLS = ["0", "0.1", "0.2", "0.3", "1e308", "nan", "inf", "", "NA", "x", '"', "'", "\0", "9" * 400]


@given(
    head=st.sampled_from(["d,l,r", "distance;left", "", "# by\nx,y", "0,0,0", "a,a,a"]),
    lines=st.lists(st.lists(st.sampled_from(CELLS), max_size=4).map(",".join), max_size=8),
    resample=st.sampled_from([False, True, 0.05]),
    fill_gaps=st.sampled_from([0.0, 1.0]),
)
@pytest.mark.filterwarnings("ignore::pandas.errors.ParserWarning", "ignore:.*is it in metres")
def test_any_file_is_a_road_or_is_refused_in_a_line(
    head: str, lines: list[str], resample: float, fill_gaps: float
) -> None:
    with TemporaryDirectory() as directory:
        path = written(Path(directory), "\n".join([head, *lines]))
        try:
            road = read_road(path, resample=resample, fill_gaps=fill_gaps)
        except RoadError as error:
            refusal = str(error)
        else:
            refusal = ""
            assert all(np.isfinite(track).all() for track in road.tracks.values())
    assert "\n" not in refusal
